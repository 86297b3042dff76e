// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/ident.h"

namespace HF {

void LIdent::Append(ELDbObjType type, const QString& name)
{
    if (!m_elements.isEmpty())
        m_fullName += QLatin1Char('.');
    m_fullName += name;
    m_elements.append(Element{type, name});
}

LIdent LIdent::FromElements(QList<Element> elements, QString fullName)
{
    LIdent ident;
    ident.m_elements = std::move(elements);
    ident.m_fullName = std::move(fullName);
    return ident;
}

} // namespace HF
