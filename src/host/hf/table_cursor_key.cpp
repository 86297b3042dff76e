// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/table_cursor_key.h"

#include "hf/values.h"

#include <typeinfo>

namespace HF {

namespace {

int Sign(auto a, auto b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

int CompareValues(const I_LSqlValue& a, const I_LSqlValue& b)
{
    if (a.get_IsNull() || b.get_IsNull())
        return int(b.get_IsNull()) - int(a.get_IsNull());
    if (const auto* number = dynamic_cast<const LValueIntegral*>(&a); number && typeid(a) == typeid(b)) {
        const auto& other = static_cast<const LValueIntegral&>(b);
        return number->get_IsSigned() ? Sign(number->get_Int64(), other.get_Int64())
                                      : Sign(number->get_UInt64(), other.get_UInt64());
    }
    if (dynamic_cast<const LValueByteArray*>(&a) && dynamic_cast<const LValueByteArray*>(&b))
        return Sign(a.get_Data(), b.get_Data());
    return Sign(a.get_String(), b.get_String());
}

} // namespace

bool orbTableCursorKey::IsInvalid() const
{
    for (const rc::Ref<I_LSqlValue>& value : m_values)
        if (dynamic_cast<const LValueInvalid*>(value.get()))
            return true;
    return false;
}

int orbTableCursorKey::Compare(const orbTableCursorKey& other) const
{
    for (qsizetype i = 0; i < m_values.size() && i < other.m_values.size(); ++i)
        if (const int order = CompareValues(*m_values[i], *other.m_values[i]))
            return order;
    if (const int order = Sign(m_values.size(), other.m_values.size()))
        return order;
    return Sign(m_rowNumber, other.m_rowNumber);
}

} // namespace HF
