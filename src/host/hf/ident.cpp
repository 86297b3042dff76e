// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/ident.h"

namespace HF {

void LIdent::Append(ELDbObjType type, const QString& name)
{
    if (!m_parts.isEmpty())
        m_fullName += QLatin1Char('.');
    m_fullName += name;
    m_parts.append(Part{type, m_fullName.size()});
}

LIdent LIdent::FromParts(QString fullName, std::initializer_list<Part> parts)
{
    LIdent ident;
    ident.m_parts = parts;
    ident.m_fullName = std::move(fullName);
    return ident;
}

QStringView LIdent::get_NameAt(qsizetype index) const
{
    const qsizetype start = index == 0 ? 0 : m_parts[index - 1].end + 1;
    return QStringView(m_fullName).mid(start, m_parts[index].end - start);
}

QList<LIdent::Element> LIdent::get_Elements() const
{
    QList<Element> elements;
    elements.reserve(m_parts.size());
    for (qsizetype i = 0; i < m_parts.size(); ++i)
        elements.append(Element{m_parts[i].type, get_NameAt(i).toString()});
    return elements;
}

} // namespace HF
