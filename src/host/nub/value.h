// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/smart_ptr.h"
#include "nub/string.h"

#include <cstdint>
#include <vector>

namespace nub {

/// Kernel types of values, by number. Others than these never come from a
/// cursor: every further type of the engine is a String with the engine's own
/// text of the value.
enum ValueType : int {
    ValueType_None = 0,
    ValueType_Boolean = 2,
    ValueType_Byte = 3,    ///< 8-bit unsigned
    ValueType_Short = 4,   ///< 16-bit signed
    ValueType_UShort = 5,
    ValueType_Medium = 6,  ///< 24-bit signed; only from CreateValueMedium
    ValueType_UMedium = 7,
    ValueType_Long = 8,    ///< 32-bit signed
    ValueType_ULong = 9,
    ValueType_LLong = 10,  ///< 64-bit signed
    ValueType_ULLong = 11,
    ValueType_Float = 12,
    ValueType_Double = 13,
    ValueType_Date = 16,
    ValueType_Time = 17,
    ValueType_DateTime = 18,
    ValueType_String = 19,
    ValueType_VarBinary = 21,
};

/// Number of the raw access interface (I_RawData) of byte values.
constexpr int InterfaceId_RawData = 2202;

/// Bytes of a value.
class I_RawData
{
public:
    virtual std::uint32_t get_Length() const = 0;
    /// Copies at most `length` bytes from the start.
    virtual void CopyTo(void* buffer, std::uint32_t length) const = 0;
    /// Sets the bytes.
    virtual void CopyFrom(const void* buffer, std::uint32_t length) = 0;

protected:
    ~I_RawData() = default;
};

/// One value with its null flag. Typed getters convert between numbers and
/// answer 0 where that makes no sense; get_String gives the engine's text.
/// Not for use by two threads at once.
class I_Value : public I_Counted
{
public:
    virtual bool get_IsNull() const = 0;
    virtual int get_Type() const = 0;
    virtual std::uint32_t get_ByteLength() const = 0;
    virtual bool get_Boolean() const = 0;
    virtual std::int64_t get_LLong() const = 0;
    virtual std::uint64_t get_ULLong() const = 0;
    virtual double get_Double() const = 0;
    virtual String get_String() const = 0;
    /// The text of a String, Date or Time value without a copy; valid until the
    /// value changes. Empty for other types.
    virtual std::u16string_view get_Chars() const = 0;
    /// Another interface of the value (InterfaceId_...), or null. Not counted.
    virtual void* QueryInterface(int id) = 0;

protected:
    ~I_Value() = default;
};

/// Growing array of values for binding: first capacity 10, doubled when full.
/// An empty slot is a null pointer.
template <class P>
class ArrayOfSmartPtrs
{
public:
    void Append(P value)
    {
        if (m_items.size() == m_items.capacity())
            m_items.reserve(m_items.empty() ? 10 : m_items.capacity() * 2);
        m_items.push_back(std::move(value));
    }
    std::size_t get_Count() const noexcept { return m_items.size(); }
    const P& get_Item(std::size_t index) const { return m_items[index]; }
    bool empty() const noexcept { return m_items.empty(); }

private:
    std::vector<P> m_items;
};

using ValueArray = ArrayOfSmartPtrs<smart_ptr<I_Value>>;

/// Value factories. With isNull the value keeps its class and is null.
ORB_KERNEL smart_ptr<I_Value> CreateValueBoolean(bool value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueByte(std::uint8_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueShort(std::int16_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueUShort(std::uint16_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueMedium(std::int32_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueUMedium(std::uint32_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueLong(std::int32_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueULong(std::uint32_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueLLong(std::int64_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueULLong(std::uint64_t value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueFloat(float value, bool isNull = false);
ORB_KERNEL smart_ptr<I_Value> CreateValueDouble(double value, bool isNull = false);
/// `length` in UTF-16 units.
ORB_KERNEL smart_ptr<I_Value> CreateValueString(const char16_t* text, std::uint32_t length, bool isNull = false);
/// `length` zero bytes, to be filled through I_RawData.
ORB_KERNEL smart_ptr<I_Value> CreateValueVarBinary(std::uint32_t length, bool isNull = false);

} // namespace nub
