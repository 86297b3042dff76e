// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/binds.h"

#include "hf/values.h"
#include "nub/value_classes.h"

namespace {

using nub::I_Value;
using Slot = nub::smart_ptr<I_Value>;

using NullableLong = nub::Value_Numeric_Nullable<8, 1, nub::policyInPlace<nub::type_traits<int>>>;
using NullableLLong = nub::Value_Numeric_Nullable<10, 1, nub::policyInPlace<nub::type_traits<long>>>;
using NullableDouble = nub::Value_Numeric_Nullable<13, 1, nub::policyInPlace<nub::type_traits<double>>>;
using NullableBytes = nub::Value_Raw_Null_T<nub::type_traits<unsigned char>, 21>;

template <class V, class... Args>
Slot Make(Args... args)
{
    return Slot::adopt(new V(args...));
}

Slot TextSlot(const QString& text)
{
    return nub::CreateValueString(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::uint32_t>(text.size()));
}

Slot BytesSlot(const QByteArray& bytes)
{
    const auto length = static_cast<std::uint32_t>(bytes.size());
    Slot slot = nub::CreateValueVarBinary(length);
    if (length)
        static_cast<nub::I_RawData*>(slot->QueryInterface(nub::InterfaceId_RawData))->CopyFrom(bytes.constData(), length);
    return slot;
}

/// The slot of a value that is a V, made by `create` of its number.
template <class V, class F>
bool Number(Slot& slot, const HF::I_LSqlValue& value, F create)
{
    const auto* number = dynamic_cast<const V*>(&value);
    if (number)
        slot = create(number->get_Value(), false);
    return number;
}

Slot ForTextOne(const HF::I_LSqlValue& value)
{
    if (value.get_IsNull())
        return nub::CreateValueBoolean(false, true);
    if (const auto* boolean = dynamic_cast<const HF::LValueBoolean*>(&value))
        return nub::CreateValueBoolean(boolean->get_Boolean());
    if (dynamic_cast<const HF::LValueByteArray*>(&value))
        return BytesSlot(value.get_Data());
    if (dynamic_cast<const HF::LValueString*>(&value))
        return TextSlot(value.get_String());
    Slot slot;
    Number<HF::LValueUInt8>(slot, value, nub::CreateValueByte)
        || Number<HF::LValueUInt16>(slot, value, nub::CreateValueUShort)
        || Number<HF::LValueUInt24>(slot, value, nub::CreateValueUMedium)
        || Number<HF::LValueUInt32>(slot, value, nub::CreateValueULong)
        || Number<HF::LValueUInt64>(slot, value, nub::CreateValueULLong)
        || Number<HF::LValueInt16>(slot, value, nub::CreateValueShort)
        || Number<HF::LValueInt24>(slot, value, nub::CreateValueMedium)
        || Number<HF::LValueInt32>(slot, value, nub::CreateValueLong)
        || Number<HF::LValueInt64>(slot, value, nub::CreateValueLLong)
        || Number<HF::LValueDouble>(slot, value, nub::CreateValueDouble)
        || Number<HF::LValueFloat>(slot, value, nub::CreateValueFloat);
    return slot;
}

Slot ForStatementOne(const HF::I_LSqlValue& value)
{
    if (dynamic_cast<const HF::LValueByteArray*>(&value)) {
        // A null keeps its class and arrives as an empty raw value.
        const QByteArray bytes = value.get_Data();
        return Make<NullableBytes>(static_cast<const void*>(bytes.constData()), static_cast<std::uint32_t>(bytes.size()),
                                   value.get_IsNull());
    }
    if (value.get_IsNull())
        return Make<NullableLong>();
    if (const auto* number = dynamic_cast<const HF::LValueDouble*>(&value))
        return Make<NullableDouble>(number->get_Value());
    if (const auto* number = dynamic_cast<const HF::LValueFloat*>(&value))
        return Make<NullableDouble>(double(number->get_Value()));
    if (const auto* number = dynamic_cast<const HF::LValueIntegral*>(&value))
        return Make<NullableLLong>(static_cast<long>(number->get_Int64()));
    return TextSlot(value.get_String());
}

template <class F>
nub::ValueArray Convert(const RcList<HF::I_LSqlValue>& values, F convert)
{
    nub::ValueArray array;
    for (const rc::Ref<HF::I_LSqlValue>& value : values)
        array.Append(convert(*value));
    return array;
}

} // namespace

namespace Binds {

nub::ValueArray ForText(const RcList<HF::I_LSqlValue>& values)
{
    return Convert(values, ForTextOne);
}

nub::ValueArray ForStatement(const RcList<HF::I_LSqlValue>& values)
{
    return Convert(values, ForStatementOne);
}

} // namespace Binds
