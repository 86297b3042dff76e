// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/cell_reader.h"

#include "hf/values.h"
#include "nub/value_classes.h"

#include <QStringView>

namespace {

constexpr qsizetype FirstRows = 256;

// Each of these hands over the new value's first reference.

QStringView View(std::u16string_view text)
{
    return QStringView(text.data(), static_cast<qsizetype>(text.size()));
}

HF::I_LSqlValue* MakeBytes(nub::I_Value& cell)
{
    QByteArray bytes;
    if (const std::uint32_t length = cell.get_ByteLength()) {
        bytes = QByteArray(static_cast<qsizetype>(length), '\0');
        if (auto* raw = static_cast<nub::I_RawData*>(cell.QueryInterface(nub::InterfaceId_RawData)))
            raw->CopyTo(bytes.data(), length);
    }
    return new HF::LValueByteArray(bytes);
}

// A day or time that Qt cannot hold still shows as the text it is.

HF::I_LSqlValue* MakeDate(std::u16string_view text)
{
    if (const std::optional<QDate> date = HF::LValueDate::ParseISO(View(text)))
        return new HF::LValueDate(*date, text);
    return new HF::LValueString(text);
}

HF::I_LSqlValue* MakeTime(std::u16string_view text)
{
    if (const std::optional<QTime> time = HF::LValueTime::ParseISO(View(text)))
        return new HF::LValueTime(*time, text);
    return new HF::LValueString(text);
}

HF::I_LSqlValue* MakeDateTime(std::u16string_view text)
{
    return new HF::LValueDateTime(HF::LValueDateTime::ParseISO(View(text)).value_or(QDateTime()), text);
}

} // namespace

CellReader::CellReader(orbDuckDB_Field& column) : m_column(column), m_values(column.Values())
{
    m_values.reserve(FirstRows);
}

HF::I_LSqlValue* CellReader::MakeNull()
{
    if (!m_null)
        m_null = m_column.CreateEmptyValue(true);
    return rc::Ptr<HF::I_LSqlValue>(m_null).release();
}

HF::I_LSqlValue* CellReader::MakeEmpty()
{
    return rc::Ptr<HF::I_LSqlValue>(m_column.CreateEmptyValue(false)).release();
}

namespace {

HF::I_LSqlValue* MakeAny(CellReader& reader, nub::I_Value& cell)
{
    if (cell.get_IsNull())
        return reader.MakeNull();
    switch (cell.get_Type()) {
    case nub::ValueType_Boolean: return new HF::LValueBoolean(cell.get_Boolean());
    case nub::ValueType_Byte: return new HF::LValueUInt8(static_cast<std::uint8_t>(cell.get_LLong()));
    case nub::ValueType_Short: return new HF::LValueInt16(static_cast<std::int16_t>(cell.get_LLong()));
    case nub::ValueType_UShort: return new HF::LValueUInt16(static_cast<std::uint16_t>(cell.get_LLong()));
    case nub::ValueType_Long: return new HF::LValueInt32(static_cast<std::int32_t>(cell.get_LLong()));
    case nub::ValueType_ULong: return new HF::LValueUInt32(static_cast<std::uint32_t>(cell.get_LLong()));
    case nub::ValueType_LLong: return new HF::LValueInt64(cell.get_LLong());
    case nub::ValueType_ULLong: return new HF::LValueUInt64(cell.get_ULLong());
    case nub::ValueType_Float: return new HF::LValueFloat(static_cast<float>(cell.get_Double()));
    case nub::ValueType_Double: return new HF::LValueDouble(cell.get_Double());
    case nub::ValueType_Date: return MakeDate(cell.get_Chars());
    case nub::ValueType_Time: return MakeTime(cell.get_Chars());
    case nub::ValueType_DateTime: return MakeDateTime(cell.get_Chars());
    case nub::ValueType_String: return new HF::LValueString(cell.get_Chars());
    case nub::ValueType_VarBinary: return MakeBytes(cell);
    default: return reader.MakeEmpty();
    }
}

/// The common classes of the kernel without its virtual calls: three a cell are
/// a tenth of the time that a large result takes.
template <class Kernel, class Host>
HF::I_LSqlValue* MakeNumber(CellReader& reader, nub::I_Value& cell)
{
    const auto& number = static_cast<const Kernel&>(cell);
    return number.Kernel::get_IsNull() ? reader.MakeNull() : new Host(number.get_Number());
}

template <int Type>
HF::I_LSqlValue* MakeText(CellReader& reader, nub::I_Value& cell)
{
    using Kernel = nub::Value_Text<Type>;
    const auto& text = static_cast<const Kernel&>(cell);
    if (text.Kernel::get_IsNull())
        return reader.MakeNull();
    if constexpr (Type == nub::ValueType_Date)
        return MakeDate(text.Kernel::get_Chars());
    else
        return new HF::LValueString(text.Kernel::get_Chars());
}

} // namespace

CellReader::Maker CellReader::MakerFor(const nub::I_Value& cell)
{
    if (dynamic_cast<const nub::Value_Long*>(&cell))
        return MakeNumber<nub::Value_Long, HF::LValueInt32>;
    if (dynamic_cast<const nub::Value_LLong*>(&cell))
        return MakeNumber<nub::Value_LLong, HF::LValueInt64>;
    if (dynamic_cast<const nub::Value_Short*>(&cell))
        return MakeNumber<nub::Value_Short, HF::LValueInt16>;
    if (dynamic_cast<const nub::Value_Double*>(&cell))
        return MakeNumber<nub::Value_Double, HF::LValueDouble>;
    if (dynamic_cast<const nub::Value_Boolean*>(&cell))
        return MakeNumber<nub::Value_Boolean, HF::LValueBoolean>;
    if (dynamic_cast<const nub::Value_Text<nub::ValueType_Date>*>(&cell))
        return MakeText<nub::ValueType_Date>;
    if (dynamic_cast<const nub::Value_Text<nub::ValueType_String>*>(&cell))
        return MakeText<nub::ValueType_String>;
    return MakeAny;
}

void CellReader::Append(nub::I_Value& cell)
{
    if (&cell != m_cell) [[unlikely]] {
        m_cell = &cell;
        m_make = MakerFor(cell);
    }
    // The list takes the first reference over: no count goes up and down.
    m_values.emplaceBack(m_make(*this, cell), rc::impl::Adopt{});
}
