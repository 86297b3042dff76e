// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"
#include "hf/export.h"

#include <QList>
#include <QString>

namespace HF {

/// Names one object by a path of (kind, name) pairs, outermost first.
class HF_EXPORT LIdent
{
public:
    struct Element
    {
        ELDbObjType type;
        QString name;
        bool operator==(const Element&) const = default;
    };

    void Append(ELDbObjType type, const QString& name);
    /// A whole path at once; `fullName` is its names joined by ".".
    static LIdent FromElements(QList<Element> elements, QString fullName);
    const QList<Element>& get_Elements() const { return m_elements; }
    bool IsEmpty() const { return m_elements.isEmpty(); }
    ELDbObjType get_Type() const { return m_elements.isEmpty() ? DBOBJ_UNKNOWN : m_elements.last().type; }
    /// The last name.
    QString get_Name() const { return m_elements.isEmpty() ? QString() : m_elements.last().name; }
    /// All names joined by "."; lists of idents are sorted by it.
    const QString& get_FullName() const { return m_fullName; }
    bool operator==(const LIdent&) const = default;

private:
    QList<Element> m_elements;
    QString m_fullName;
};

} // namespace HF
