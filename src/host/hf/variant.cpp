// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/variant.h"

namespace HF {

LVariant::LVariant(const weft::String& value) : m_type(String), m_value(value.ToQString()) {}

LVariant LVariant::FromQVariant(const QVariant& value)
{
    LVariant result;
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return result;
    case QMetaType::Bool:
        result.m_type = Bool;
        break;
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::SChar:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::UInt:
        return LVariant(static_cast<long>(value.toLongLong()));
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return LVariant(static_cast<unsigned long>(value.toULongLong()));
    case QMetaType::QString:
        result.m_type = String;
        break;
    case QMetaType::QStringList:
        result.m_type = StringList;
        break;
    default:
        result.m_type = Any;
        break;
    }
    result.m_value = value;
    return result;
}

bool LVariant::ToBool() const
{
    if (m_type == StringList)
        return !m_value.toStringList().isEmpty();
    return m_value.toBool();
}

long LVariant::ToLong() const
{
    if (m_type == ULong)
        return static_cast<long>(m_value.toULongLong());
    return static_cast<long>(m_value.toLongLong());
}

QString LVariant::ToString() const
{
    if (m_type == StringList)
        return m_value.toStringList().join(QLatin1String(", "));
    return m_value.toString();
}

QStringList LVariant::ToStringList() const
{
    if (IsEmpty())
        return {};
    if (m_value.typeId() == QMetaType::QStringList || m_value.typeId() == QMetaType::QVariantList)
        return m_value.toStringList();
    return {m_value.toString()};
}

} // namespace HF
