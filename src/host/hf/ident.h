// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"
#include "hf/export.h"

#include <QList>
#include <QString>
#include <QVarLengthArray>

namespace HF {

/// Names one object by a path of (kind, name) pairs, outermost first.
///
/// Only the joined text is kept, with the places where names end: a catalogue
/// has hundreds of thousands of idents.
class HF_EXPORT LIdent
{
public:
    struct Element
    {
        ELDbObjType type;
        QString name;
        bool operator==(const Element&) const = default;
    };
    /// An element by where its name ends in the full name. The next one begins
    /// behind one character.
    struct Part
    {
        ELDbObjType type;
        qsizetype end;
        bool operator==(const Part&) const = default;
    };

    void Append(ELDbObjType type, const QString& name);
    /// A whole path at once; `fullName` is its names joined by ".", the last of
    /// `parts` ends it.
    static LIdent FromParts(QString fullName, std::initializer_list<Part> parts);
    /// A copy of the path.
    QList<Element> get_Elements() const;
    qsizetype get_Depth() const { return m_parts.size(); }
    bool IsEmpty() const { return m_parts.isEmpty(); }
    ELDbObjType get_Type() const { return m_parts.isEmpty() ? DBOBJ_UNKNOWN : m_parts.last().type; }
    /// The last name.
    QString get_Name() const { return IsEmpty() ? QString() : get_NameAt(m_parts.size() - 1).toString(); }
    /// The name of one element, 0 for the outermost; valid as long as the ident is.
    QStringView get_NameAt(qsizetype index) const;
    /// All names joined by "."; lists of idents are sorted by it.
    const QString& get_FullName() const { return m_fullName; }
    bool operator==(const LIdent&) const = default;

private:
    QVarLengthArray<Part, 3> m_parts;
    QString m_fullName;
};

} // namespace HF
