// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/value_classes.h"

namespace nub {
namespace {

template <class V, class T>
smart_ptr<I_Value> Make(T value, bool isNull)
{
    return smart_ptr<I_Value>::adopt(new V(value, isNull));
}

} // namespace

smart_ptr<I_Value> CreateValueBoolean(bool value, bool isNull)
{
    return Make<Value_Boolean>(value, isNull);
}

smart_ptr<I_Value> CreateValueByte(std::uint8_t value, bool isNull)
{
    return Make<Value_Byte>(value, isNull);
}

smart_ptr<I_Value> CreateValueShort(std::int16_t value, bool isNull)
{
    return Make<Value_Short>(value, isNull);
}

smart_ptr<I_Value> CreateValueUShort(std::uint16_t value, bool isNull)
{
    return Make<Value_UShort>(value, isNull);
}

smart_ptr<I_Value> CreateValueMedium(std::int32_t value, bool isNull)
{
    return Make<Value_Medium>(value, isNull);
}

smart_ptr<I_Value> CreateValueUMedium(std::uint32_t value, bool isNull)
{
    return Make<Value_UMedium>(value, isNull);
}

smart_ptr<I_Value> CreateValueLong(std::int32_t value, bool isNull)
{
    return Make<Value_Long>(value, isNull);
}

smart_ptr<I_Value> CreateValueULong(std::uint32_t value, bool isNull)
{
    return Make<Value_ULong>(value, isNull);
}

smart_ptr<I_Value> CreateValueLLong(std::int64_t value, bool isNull)
{
    return Make<Value_LLong>(value, isNull);
}

smart_ptr<I_Value> CreateValueULLong(std::uint64_t value, bool isNull)
{
    return Make<Value_ULLong>(value, isNull);
}

smart_ptr<I_Value> CreateValueFloat(float value, bool isNull)
{
    return Make<Value_Float>(value, isNull);
}

smart_ptr<I_Value> CreateValueDouble(double value, bool isNull)
{
    return Make<Value_Double>(value, isNull);
}

smart_ptr<I_Value> CreateValueString(const char16_t* text, std::uint32_t length, bool isNull)
{
    return smart_ptr<I_Value>::adopt(
        new Value_String(isNull || !length ? std::u16string() : std::u16string(text, length), isNull));
}

smart_ptr<I_Value> CreateValueVarBinary(std::uint32_t length, bool isNull)
{
    return Make<Value_VarBinary>(length, isNull);
}

} // namespace nub
