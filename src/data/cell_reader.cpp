// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/cell_reader.h"

#include "hf/values.h"

#include <QStringView>

namespace {

constexpr qsizetype FirstRows = 256;

/// Hands the first reference straight to the list: no count goes up and down.
template <class V, class... Args>
inline void Add(RcList<HF::I_LSqlValue>& values, Args&&... args)
{
    values.emplaceBack(static_cast<HF::I_LSqlValue*>(new V(std::forward<Args>(args)...)), rc::impl::Adopt{});
}

QStringView View(std::u16string_view text)
{
    return QStringView(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

CellReader::CellReader(orbDuckDB_Field& column) : m_column(column), m_values(column.Values())
{
    m_values.reserve(FirstRows);
}

void CellReader::AppendNull()
{
    if (!m_null)
        m_null = m_column.CreateEmptyValue(true);
    m_values.append(rc::Ref<HF::I_LSqlValue>(m_null));
}

void CellReader::AppendBytes(nub::I_Value& cell)
{
    QByteArray bytes;
    if (const std::uint32_t length = cell.get_ByteLength()) {
        bytes = QByteArray(static_cast<qsizetype>(length), '\0');
        if (auto* raw = static_cast<nub::I_RawData*>(cell.QueryInterface(nub::InterfaceId_RawData)))
            raw->CopyTo(bytes.data(), length);
    }
    Add<HF::LValueByteArray>(m_values, bytes);
}

// A day or time that Qt cannot hold still shows as the text it is.

void CellReader::AppendDate(std::u16string_view text)
{
    if (const std::optional<QDate> date = HF::LValueDate::ParseISO(View(text)))
        Add<HF::LValueDate>(m_values, *date, text);
    else
        Add<HF::LValueString>(m_values, text);
}

void CellReader::AppendTime(std::u16string_view text)
{
    if (const std::optional<QTime> time = HF::LValueTime::ParseISO(View(text)))
        Add<HF::LValueTime>(m_values, *time, text);
    else
        Add<HF::LValueString>(m_values, text);
}

void CellReader::AppendDateTime(const nub::String& text)
{
    const std::optional<QDateTime> value = HF::LValueDateTime::ParseISO(View(text.view()));
    Add<HF::LValueDateTime>(m_values, value.value_or(QDateTime()), text.view());
}

void CellReader::Append(nub::I_Value& cell)
{
    if (cell.get_IsNull()) {
        AppendNull();
        return;
    }
    switch (cell.get_Type()) {
    case nub::ValueType_Boolean: Add<HF::LValueBoolean>(m_values, cell.get_Boolean()); break;
    case nub::ValueType_Byte: Add<HF::LValueUInt8>(m_values, static_cast<std::uint8_t>(cell.get_LLong())); break;
    case nub::ValueType_Short: Add<HF::LValueInt16>(m_values, static_cast<std::int16_t>(cell.get_LLong())); break;
    case nub::ValueType_UShort: Add<HF::LValueUInt16>(m_values, static_cast<std::uint16_t>(cell.get_LLong())); break;
    case nub::ValueType_Long: Add<HF::LValueInt32>(m_values, static_cast<std::int32_t>(cell.get_LLong())); break;
    case nub::ValueType_ULong: Add<HF::LValueUInt32>(m_values, static_cast<std::uint32_t>(cell.get_LLong())); break;
    case nub::ValueType_LLong: Add<HF::LValueInt64>(m_values, cell.get_LLong()); break;
    case nub::ValueType_ULLong: Add<HF::LValueUInt64>(m_values, cell.get_ULLong()); break;
    case nub::ValueType_Float: Add<HF::LValueFloat>(m_values, static_cast<float>(cell.get_Double())); break;
    case nub::ValueType_Double: Add<HF::LValueDouble>(m_values, cell.get_Double()); break;
    case nub::ValueType_Date: AppendDate(cell.get_Chars()); break;
    case nub::ValueType_Time: AppendTime(cell.get_Chars()); break;
    case nub::ValueType_DateTime: AppendDateTime(cell.get_String()); break;
    case nub::ValueType_String: Add<HF::LValueString>(m_values, cell.get_Chars()); break;
    case nub::ValueType_VarBinary: AppendBytes(cell); break;
    default: m_values.append(m_column.CreateEmptyValue(false)); break;
    }
}
