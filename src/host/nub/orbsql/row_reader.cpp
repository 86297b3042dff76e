// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/row_reader.h"

#include "nub/exception.h"
#include "nub/orbsql/engine_text.h"
#include "nub/orbsql/type_name.h"
#include "nub/value_classes.h"

#include <algorithm>

namespace nub::orbsql {
namespace {

/// How a column's cells become values.
enum class Road : std::uint8_t {
    Boolean, UTinyInt, TinyInt, SmallInt, USmallInt, Integer, UInteger, BigInt, UBigInt, Float, Double,
    Date, Time, Text, Bytes,
    // Flat types by their text.
    Decimal16, Decimal32, Decimal64, Decimal128, HugeInt, UHugeInt, Timestamp, TimestampS, TimestampMs, TimestampNs,
    TimestampUtc, TimeTz, TimeNs, Interval, Uuid, Bits, Enum8, Enum16, Enum32,
    Engine,
    Elements, ///< LIST and MAP: the engine's text, but for those without elements
};

Road DecimalRoad(duckdb_logical_type type)
{
    switch (duckdb_decimal_internal_type(type)) {
    case DUCKDB_TYPE_SMALLINT: return Road::Decimal16;
    case DUCKDB_TYPE_INTEGER: return Road::Decimal32;
    case DUCKDB_TYPE_BIGINT: return Road::Decimal64;
    default: return Road::Decimal128;
    }
}

Road EnumRoad(duckdb_logical_type type)
{
    switch (duckdb_enum_internal_type(type)) {
    case DUCKDB_TYPE_UTINYINT: return Road::Enum8;
    case DUCKDB_TYPE_USMALLINT: return Road::Enum16;
    default: return Road::Enum32;
    }
}

bool IsPlainUtc(const SessionSettings& settings)
{
    return (settings.timeZone == "UTC" || settings.timeZone == "Etc/UTC") && settings.calendar == "gregorian";
}

Road RoadOf(duckdb_logical_type type, const SessionSettings& settings)
{
    switch (duckdb_get_type_id(type)) {
    case DUCKDB_TYPE_BOOLEAN: return Road::Boolean;
    case DUCKDB_TYPE_UTINYINT: return Road::UTinyInt;
    case DUCKDB_TYPE_TINYINT: return Road::TinyInt;
    case DUCKDB_TYPE_SMALLINT: return Road::SmallInt;
    case DUCKDB_TYPE_USMALLINT: return Road::USmallInt;
    case DUCKDB_TYPE_INTEGER: return Road::Integer;
    case DUCKDB_TYPE_UINTEGER: return Road::UInteger;
    case DUCKDB_TYPE_BIGINT: return Road::BigInt;
    case DUCKDB_TYPE_UBIGINT: return Road::UBigInt;
    case DUCKDB_TYPE_FLOAT: return Road::Float;
    case DUCKDB_TYPE_DOUBLE: return Road::Double;
    case DUCKDB_TYPE_DATE: return Road::Date;
    case DUCKDB_TYPE_TIME: return Road::Time;
    case DUCKDB_TYPE_VARCHAR: return Road::Text;
    case DUCKDB_TYPE_BLOB: return Road::Bytes;
    case DUCKDB_TYPE_DECIMAL: return DecimalRoad(type);
    case DUCKDB_TYPE_HUGEINT: return Road::HugeInt;
    case DUCKDB_TYPE_UHUGEINT: return Road::UHugeInt;
    case DUCKDB_TYPE_TIMESTAMP: return Road::Timestamp;
    case DUCKDB_TYPE_TIMESTAMP_S: return Road::TimestampS;
    case DUCKDB_TYPE_TIMESTAMP_MS: return Road::TimestampMs;
    case DUCKDB_TYPE_TIMESTAMP_NS: return Road::TimestampNs;
    case DUCKDB_TYPE_TIMESTAMP_TZ: return IsPlainUtc(settings) ? Road::TimestampUtc : Road::Engine;
    case DUCKDB_TYPE_TIME_TZ: return Road::TimeTz;
    case DUCKDB_TYPE_TIME_NS: return Road::TimeNs;
    case DUCKDB_TYPE_INTERVAL: return Road::Interval;
    case DUCKDB_TYPE_UUID: return Road::Uuid;
    case DUCKDB_TYPE_BIT: return Road::Bits;
    case DUCKDB_TYPE_ENUM: return EnumRoad(type);
    case DUCKDB_TYPE_LIST:
    case DUCKDB_TYPE_MAP: return Road::Elements;
    default: return Road::Engine;
    }
}

text::Int128 Join(const duckdb_hugeint& value)
{
    return static_cast<text::Int128>(static_cast<text::UInt128>(static_cast<std::uint64_t>(value.upper)) << 64
                                     | value.lower);
}

std::string_view View(const duckdb_string_t& string)
{
    const std::size_t length = string.value.inlined.length;
    const bool inlined = length <= sizeof string.value.inlined.inlined;
    return {inlined ? string.value.inlined.inlined : string.value.pointer.ptr, length};
}

/// References taken at once on a value object, to be handed out one by one.
constexpr std::int32_t Stock = 1 << 20;

} // namespace

struct RowReader::Column
{
    String name;
    String typeName;
    duckdb_logical_type type = nullptr; ///< one of m_types
    Road road = Road::Engine;
    int width = 0, scale = 0;
    std::vector<std::u16string> words; ///< of an ENUM
    std::size_t engineIndex = 0;

    const void* data = nullptr;
    const std::uint64_t* validity = nullptr;

    CountedValue* value = nullptr; ///< the object to fill again
    std::int32_t owned = 0;        ///< references to it that are this reader's

    Column() = default;
    Column(Column&& other) noexcept
        : name(std::move(other.name)), typeName(std::move(other.typeName)), type(other.type),
          road(other.road), width(other.width), scale(other.scale), words(std::move(other.words)),
          engineIndex(other.engineIndex), data(other.data), validity(other.validity),
          value(std::exchange(other.value, nullptr)), owned(std::exchange(other.owned, 0)) {}
    ~Column()
    {
        if (value)
            value->ReleaseRefs(owned);
    }
    bool IsNull(idx_t row) const { return validity && !(validity[row / 64] >> (row % 64) & 1); }
    template <class T> const T& At(idx_t row) const { return static_cast<const T*>(data)[row]; }
    char* Write(char* out, idx_t row) const;
    std::size_t WordIndex(idx_t row) const;
};

/// The text of a flat type that has no further memory.
char* RowReader::Column::Write(char* out, idx_t row) const
{
    switch (road) {
    case Road::Date: return text::WriteDate(out, At<std::int32_t>(row));
    case Road::Time: return text::WriteTime(out, At<std::int64_t>(row), 6);
    case Road::Decimal16: return text::WriteDecimal(out, At<std::int16_t>(row), width, scale);
    case Road::Decimal32: return text::WriteDecimal(out, At<std::int32_t>(row), width, scale);
    case Road::Decimal64: return text::WriteDecimal(out, At<std::int64_t>(row), width, scale);
    case Road::Decimal128: return text::WriteDecimal(out, Join(At<duckdb_hugeint>(row)), width, scale);
    case Road::HugeInt: return text::WriteInteger128(out, Join(At<duckdb_hugeint>(row)));
    case Road::UHugeInt: return text::WriteUnsigned128(out, static_cast<text::UInt128>(Join(At<duckdb_hugeint>(row))));
    case Road::Timestamp: return text::WriteTimestamp(out, At<std::int64_t>(row), 6);
    case Road::TimestampS: return text::WriteTimestamp(out, At<std::int64_t>(row), 0);
    case Road::TimestampMs: return text::WriteTimestamp(out, At<std::int64_t>(row), 3);
    case Road::TimestampNs: return text::WriteTimestamp(out, At<std::int64_t>(row), 9);
    case Road::TimestampUtc: return text::WriteTimestampUtc(out, At<std::int64_t>(row));
    case Road::TimeTz: return text::WriteTimeTz(out, At<std::uint64_t>(row));
    case Road::TimeNs: return text::WriteTime(out, At<std::int64_t>(row), 9);
    case Road::Interval: {
        const auto& interval = At<duckdb_interval>(row);
        return text::WriteInterval(out, interval.months, interval.days, interval.micros);
    }
    case Road::Uuid: {
        const auto& uuid = At<duckdb_hugeint>(row);
        return text::WriteUuid(out, static_cast<std::uint64_t>(uuid.upper), uuid.lower);
    }
    default: return out;
    }
}

std::size_t RowReader::Column::WordIndex(idx_t row) const
{
    switch (road) {
    case Road::Enum8: return At<std::uint8_t>(row);
    case Road::Enum16: return At<std::uint16_t>(row);
    default: return At<std::uint32_t>(row);
    }
}

RowReader::RowReader(duckdb_result& result, SessionSettings settings)
    : m_settings(std::move(settings)), m_types(std::make_shared<TypeList>())
{
    const idx_t count = duckdb_column_count(&result);
    m_columns.reserve(count);
    for (idx_t i = 0; i < count; ++i) {
        Column& column = m_columns.emplace_back();
        const char* name = duckdb_column_name(&result, i);
        column.name = String::FromUtf8(name ? name : "");
        column.type = m_types->emplace_back(duckdb_column_logical_type(&result, i)).get();
        column.road = RoadOf(column.type, m_settings);
        if (duckdb_get_type_id(column.type) == DUCKDB_TYPE_DECIMAL) {
            column.width = duckdb_decimal_width(column.type);
            column.scale = duckdb_decimal_scale(column.type);
        }
        if (column.road == Road::Engine || column.road == Road::Elements) {
            column.engineIndex = m_engineColumns.size();
            m_engineColumns.push_back(static_cast<int>(i));
        }
    }
}

RowReader::~RowReader() = default;

int RowReader::ColumnCount() const noexcept
{
    return static_cast<int>(m_columns.size());
}

const String& RowReader::Name(int column) const
{
    return m_columns[static_cast<std::size_t>(column)].name;
}

const String& RowReader::TypeName(int column)
{
    if (!m_typeNamesKnown) {
        bool known = true;
        std::string name;
        for (Column& each : m_columns) {
            name.clear();
            if (AppendTypeName(name, each.type))
                each.typeName = String::FromUtf8(name);
            else
                known = false;
        }
        if (!known) {
            const std::vector<std::string> names = Engine().TypeNames();
            for (std::size_t i = 0; i < names.size(); ++i)
                m_columns[i].typeName = String::FromUtf8(names[i]);
        }
        m_typeNamesKnown = true;
    }
    return m_columns[static_cast<std::size_t>(column)].typeName;
}

void RowReader::SetChunk(duckdb_data_chunk chunk)
{
    m_chunk = chunk;
    m_formatted = false;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        Column& column = m_columns[i];
        column.data = nullptr;
        column.validity = nullptr;
        // Most nested vectors have no plain data; the engine sees to those.
        if (!chunk || column.road == Road::Engine)
            continue;
        const duckdb_vector vector = duckdb_data_chunk_get_vector(chunk, i);
        column.data = duckdb_vector_get_data(vector);
        column.validity = duckdb_vector_get_validity(vector);
    }
}

/// The column's object for the next cell, with a reference to spare for the caller.
template <class V>
V* RowReader::Vacant(Column& column)
{
    CountedValue*& value = column.value;
    if (!value || value->RefCount() != column.owned) {
        CountedValue* const fresh = new V;
        fresh->AddRefs(Stock - 1);
        if (value)
            value->ReleaseRefs(column.owned);
        value = fresh;
        column.owned = Stock;
    } else if (column.owned < 2) {
        value->AddRefs(Stock);
        column.owned += Stock;
    }
    return static_cast<V*>(value);
}

template <class V, class T>
I_Value* RowReader::ReadNumber(Column& column, idx_t row)
{
    V* const value = Vacant<V>(column);
    if (column.IsNull(row))
        value->AssignNull();
    else
        value->Assign(column.At<T>(row));
    return value;
}

template <class V>
I_Value* RowReader::ReadFormatted(Column& column, idx_t row)
{
    V* const value = Vacant<V>(column);
    if (column.IsNull(row)) {
        value->AssignNull();
        return value;
    }
    char buffer[text::BufferSize];
    text::AssignAscii(value->Renew(), buffer, column.Write(buffer, row));
    return value;
}

I_Value* RowReader::ReadText(Column& column, idx_t row)
{
    Value_String* const value = Vacant<Value_String>(column);
    if (column.IsNull(row)) {
        value->AssignNull();
        return value;
    }
    std::u16string& text = value->Renew();
    if (column.road == Road::Text) {
        const std::string_view utf8 = View(column.At<duckdb_string_t>(row));
        AppendUtf8(text, utf8.data(), utf8.size());
    } else if (column.road == Road::Bits) {
        const std::string_view bits = View(column.At<duckdb_string_t>(row));
        text::AppendBits(text, reinterpret_cast<const unsigned char*>(bits.data()), bits.size());
    } else {
        if (column.words.empty())
            ReadWords(column);
        text = column.words[column.WordIndex(row)];
    }
    return value;
}

void RowReader::ReadWords(Column& column)
{
    const std::uint32_t count = duckdb_enum_dictionary_size(column.type);
    column.words.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const EngineMemory<char> word(duckdb_enum_dictionary_value(column.type, i));
        AppendUtf8(column.words.emplace_back(), word.get(), std::char_traits<char>::length(word.get()));
    }
}

I_Value* RowReader::ReadBytes(Column& column, idx_t row)
{
    Value_VarBinary* const value = Vacant<Value_VarBinary>(column);
    if (column.IsNull(row)) {
        value->AssignNull();
    } else {
        const std::string_view bytes = View(column.At<duckdb_string_t>(row));
        value->CopyFrom(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }
    return value;
}

EngineText& RowReader::Engine()
{
    if (!m_engineText)
        m_engineText = std::make_unique<EngineText>(m_types, m_settings);
    return *m_engineText;
}

I_Value* RowReader::ReadEngineText(Column& column, idx_t row)
{
    if (!m_formatted) {
        Engine().Format(m_chunk, m_engineColumns);
        m_formatted = true;
    }
    std::string_view utf8;
    const bool isNull = !m_engineText->Text(column.engineIndex, row, utf8);
    Value_String* const value = Vacant<Value_String>(column);
    if (isNull)
        value->AssignNull();
    else
        AppendUtf8(value->Renew(), utf8.data(), utf8.size());
    return value;
}

/// The engine's catalogue has columns of lists and maps that hold nothing in most
/// files; their texts are not worth the engine's service.
I_Value* RowReader::ReadElements(Column& column, idx_t row)
{
    const bool isNull = column.IsNull(row);
    if (!isNull && column.At<duckdb_list_entry>(row).length > 0)
        return ReadEngineText(column, row);
    Value_String* const value = Vacant<Value_String>(column);
    if (isNull)
        value->AssignNull();
    else
        value->Renew() = duckdb_get_type_id(column.type) == DUCKDB_TYPE_MAP ? u"{}" : u"[]";
    return value;
}

I_Value* RowReader::Read(int index, idx_t row)
{
    I_Value* const value = Peek(index, row);
    --m_columns[static_cast<std::size_t>(index)].owned;
    return value;
}

I_Value* RowReader::Peek(int index, idx_t row)
{
    Column& column = m_columns[static_cast<std::size_t>(index)];
    switch (column.road) {
    case Road::Boolean: return ReadNumber<Value_Boolean, bool>(column, row);
    case Road::UTinyInt: return ReadNumber<Value_Byte, std::uint8_t>(column, row);
    case Road::TinyInt: return ReadNumber<Value_Short, std::int8_t>(column, row);
    case Road::SmallInt: return ReadNumber<Value_Short, std::int16_t>(column, row);
    case Road::USmallInt: return ReadNumber<Value_UShort, std::uint16_t>(column, row);
    case Road::Integer: return ReadNumber<Value_Long, std::int32_t>(column, row);
    case Road::UInteger: return ReadNumber<Value_ULong, std::uint32_t>(column, row);
    case Road::BigInt: return ReadNumber<Value_LLong, std::int64_t>(column, row);
    case Road::UBigInt: return ReadNumber<Value_ULLong, std::uint64_t>(column, row);
    case Road::Float: return ReadNumber<Value_Float, float>(column, row);
    case Road::Double: return ReadNumber<Value_Double, double>(column, row);
    case Road::Date: return ReadFormatted<Value_Date>(column, row);
    case Road::Time: return ReadFormatted<Value_Time>(column, row);
    case Road::Bytes: return ReadBytes(column, row);
    case Road::Text:
    case Road::Bits:
    case Road::Enum8:
    case Road::Enum16:
    case Road::Enum32: return ReadText(column, row);
    case Road::Engine: return ReadEngineText(column, row);
    case Road::Elements: return ReadElements(column, row);
    default: return ReadFormatted<Value_String>(column, row);
    }
}

} // namespace nub::orbsql
