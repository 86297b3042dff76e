// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/cell_reader.h"

#include "hf/values.h"

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

inline HF::I_LSqlValue* CellReader::MakeValue(nub::I_Value& cell)
{
    if (cell.get_IsNull())
        return MakeNull();
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
    default: return MakeEmpty();
    }
}

void CellReader::Append(nub::I_Value& cell)
{
    // The list takes the first reference over: no count goes up and down.
    m_values.emplaceBack(MakeValue(cell), rc::impl::Adopt{});
}
