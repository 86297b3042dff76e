// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace HF {

/// Reserved words of an engine.
class HF_EXPORT LDatabaseKeywords
{
public:
    LDatabaseKeywords() = default;
    explicit LDatabaseKeywords(const QList<QString>& words);

    const QList<QString>& get_Words() const { return m_words; }
    /// Ignores case.
    bool Contains(const QString& word) const;

private:
    QList<QString> m_words;
    QSet<QString> m_lower;
};

/// One function that the engine knows.
struct HF_EXPORT LSQLFunction
{
    QString Parameters;
    QString Description;
    QString Example;
    QString Category;
    int Number = -1;
    QString Name;
    bool Flag = true;
    QString ReturnType;
};

/// Functions by lower-case name, and the names in map order.
struct HF_EXPORT LSQLFunctions
{
    QMap<QString, LSQLFunction> Functions;
    QStringList Keys;
};

} // namespace HF
