// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/literal_column.h"

#include "nub/orbsql/literal_variant.h"
#include "nub/orbsql/query.h"
#include "nub/value_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nub::orbsql {
namespace {

text::Int128 Join(const duckdb_hugeint& value)
{
    return static_cast<text::Int128>(static_cast<text::UInt128>(static_cast<std::uint64_t>(value.upper)) << 64
                                     | value.lower);
}

void AppendInQuotes(std::string& out, const char* text, const char* end)
{
    out += '\'';
    out.append(text, end);
    out += '\'';
}

/// The engine keeps 2^53 exactly, and a power of ten up to 22: within these a
/// plain number is divided without a rounding error.
bool IsExactAsDecimal(const char* text, const char* end)
{
    int digits = 0;
    for (const char* p = text; p != end; ++p) {
        if (*p >= '0' && *p <= '9')
            ++digits;
        else if (*p != '.' && *p != '-')
            return false; // an exponent, inf or nan
    }
    return digits <= 15;
}

constexpr std::int64_t MicrosPerHour = 3600ll * 1000000;
constexpr std::int64_t LongestHours = 999999;
constexpr std::int64_t YearOne = -62135596800ll * 1000000;
constexpr std::int64_t YearTenThousand = 253402300800ll * 1000000;

} // namespace

LiteralColumn::LiteralColumn(duckdb_logical_type type, const CodePointTest& test, bool nested)
    : m_id(duckdb_get_type_id(type)), m_test(test), m_nested(nested)
{
    if (m_id == VariantType) {
        m_variant = std::make_unique<LiteralVariant>(type, m_test);
        return;
    }
    switch (m_id) {
    case DUCKDB_TYPE_DECIMAL:
        m_storage = duckdb_decimal_internal_type(type);
        m_width = duckdb_decimal_width(type);
        m_scale = duckdb_decimal_scale(type);
        break;
    case DUCKDB_TYPE_ENUM:
        m_storage = duckdb_enum_internal_type(type);
        ReadWords(type);
        break;
    default:
        MakeChildren(type);
    }
}

LiteralColumn::LiteralColumn(duckdb_type type, int width, int scale, const CodePointTest& test)
    : m_id(type), m_test(test), m_nested(true), m_width(width), m_scale(scale)
{
    if (m_id == DUCKDB_TYPE_DECIMAL)
        m_storage = width <= 4 ? DUCKDB_TYPE_SMALLINT : width <= 9 ? DUCKDB_TYPE_INTEGER
                  : width <= 18 ? DUCKDB_TYPE_BIGINT : DUCKDB_TYPE_HUGEINT;
}

LiteralColumn::LiteralColumn(LiteralColumn&&) noexcept = default;
LiteralColumn::~LiteralColumn() = default;

void LiteralColumn::AddChild(TypeHandle type, const char* name)
{
    const EngineMemory<const char> owned(name);
    std::string shown;
    if (name && m_id == DUCKDB_TYPE_STRUCT)
        AppendTextLiteral(shown, name, m_test, false);
    else if (name)
        shown = QuotedName(name);
    m_childNames.push_back(std::move(shown));
    m_children.emplace_back(type.get(), m_test, true);
    m_childTypes.push_back(std::move(type));
}

void LiteralColumn::MakeChildren(duckdb_logical_type type)
{
    switch (m_id) {
    case DUCKDB_TYPE_LIST:
        AddChild(TypeHandle(duckdb_list_type_child_type(type)), nullptr);
        break;
    case DUCKDB_TYPE_ARRAY:
        m_arraySize = duckdb_array_type_array_size(type);
        AddChild(TypeHandle(duckdb_array_type_child_type(type)), nullptr);
        break;
    case DUCKDB_TYPE_MAP:
        AddChild(TypeHandle(duckdb_map_type_key_type(type)), nullptr);
        AddChild(TypeHandle(duckdb_map_type_value_type(type)), nullptr);
        break;
    case DUCKDB_TYPE_STRUCT:
        for (idx_t i = 0, count = duckdb_struct_type_child_count(type); i < count; ++i)
            AddChild(TypeHandle(duckdb_struct_type_child_type(type, i)), duckdb_struct_type_child_name(type, i));
        break;
    case DUCKDB_TYPE_UNION:
        for (idx_t i = 0, count = duckdb_union_type_member_count(type); i < count; ++i)
            AddChild(TypeHandle(duckdb_union_type_member_type(type, i)), duckdb_union_type_member_name(type, i));
        break;
    default:
        break;
    }
}

void LiteralColumn::ReadWords(duckdb_logical_type type)
{
    const std::uint32_t count = duckdb_enum_dictionary_size(type);
    m_words.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const EngineMemory<char> word(duckdb_enum_dictionary_value(type, i));
        AppendTextLiteral(m_words.emplace_back(), word.get(), m_test, m_nested);
    }
}

bool LiteralColumn::HoldsVariant() const noexcept
{
    return m_variant
        || std::any_of(m_children.begin(), m_children.end(), [](const LiteralColumn& c) { return c.HoldsVariant(); });
}

bool LiteralColumn::IsKnown() const noexcept
{
    // Alone, the engine's text of a geometry is as exact, and can be read.
    if (m_variant || (m_id == GeometryType && m_nested))
        return true;
    switch (m_id) {
    case DUCKDB_TYPE_BOOLEAN:
    case DUCKDB_TYPE_TINYINT:
    case DUCKDB_TYPE_SMALLINT:
    case DUCKDB_TYPE_INTEGER:
    case DUCKDB_TYPE_BIGINT:
    case DUCKDB_TYPE_UTINYINT:
    case DUCKDB_TYPE_USMALLINT:
    case DUCKDB_TYPE_UINTEGER:
    case DUCKDB_TYPE_UBIGINT:
    case DUCKDB_TYPE_FLOAT:
    case DUCKDB_TYPE_DOUBLE:
    case DUCKDB_TYPE_TIMESTAMP:
    case DUCKDB_TYPE_TIMESTAMP_S:
    case DUCKDB_TYPE_TIMESTAMP_MS:
    case DUCKDB_TYPE_TIMESTAMP_NS:
    case DUCKDB_TYPE_TIMESTAMP_TZ:
    case DUCKDB_TYPE_DATE:
    case DUCKDB_TYPE_TIME:
    case DUCKDB_TYPE_TIME_NS:
    case DUCKDB_TYPE_TIME_TZ:
    case DUCKDB_TYPE_INTERVAL:
    case DUCKDB_TYPE_HUGEINT:
    case DUCKDB_TYPE_UHUGEINT:
    case DUCKDB_TYPE_VARCHAR:
    case DUCKDB_TYPE_BLOB:
    case DUCKDB_TYPE_DECIMAL:
    case DUCKDB_TYPE_ENUM:
    case DUCKDB_TYPE_UUID:
    case DUCKDB_TYPE_BIT:
    case DUCKDB_TYPE_BIGNUM:
        return true;
    case DUCKDB_TYPE_LIST:
    case DUCKDB_TYPE_ARRAY:
    case DUCKDB_TYPE_MAP:
    case DUCKDB_TYPE_STRUCT:
    case DUCKDB_TYPE_UNION:
        return std::all_of(m_children.begin(), m_children.end(), [](const LiteralColumn& c) { return c.IsKnown(); });
    default:
        return false;
    }
}

void LiteralColumn::SetVector(duckdb_vector vector)
{
    m_data = duckdb_vector_get_data(vector);
    m_validity = duckdb_vector_get_validity(vector);
    if (m_variant) {
        m_variant->SetVector(vector);
        return;
    }
    switch (m_id) {
    case DUCKDB_TYPE_LIST:
        m_children[0].SetVector(duckdb_list_vector_get_child(vector));
        break;
    case DUCKDB_TYPE_ARRAY:
        m_children[0].SetVector(duckdb_array_vector_get_child(vector));
        break;
    case DUCKDB_TYPE_MAP: {
        const duckdb_vector entries = duckdb_list_vector_get_child(vector);
        m_children[0].SetVector(duckdb_struct_vector_get_child(entries, 0));
        m_children[1].SetVector(duckdb_struct_vector_get_child(entries, 1));
        break;
    }
    case DUCKDB_TYPE_STRUCT:
        for (idx_t i = 0; i < m_children.size(); ++i)
            m_children[i].SetVector(duckdb_struct_vector_get_child(vector, i));
        break;
    case DUCKDB_TYPE_UNION:
        m_data = duckdb_vector_get_data(duckdb_struct_vector_get_child(vector, 0));
        for (idx_t i = 0; i < m_children.size(); ++i)
            m_children[i].SetVector(duckdb_struct_vector_get_child(vector, i + 1));
        break;
    default:
        break;
    }
}

std::string_view LiteralColumn::Bytes(idx_t row) const
{
    return ViewOf(At<duckdb_string_t>(row));
}

void LiteralColumn::Append(std::string& out, idx_t row) const
{
    if (IsNull(row)) {
        out += "NULL";
        return;
    }
    if (m_variant) {
        m_variant->Append(out, row);
        return;
    }
    if (m_id == GeometryType) {
        const std::string_view bytes = Bytes(row);
        out += "ST_GeomFromWKB(";
        AppendBytesLiteral(out, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
        out += ')';
        return;
    }
    switch (m_id) {
    case DUCKDB_TYPE_VARCHAR:
        AppendTextLiteral(out, ViewOf(At<duckdb_string_t>(row)), m_test, m_nested);
        break;
    case DUCKDB_TYPE_BLOB: {
        const std::string_view bytes = Bytes(row);
        AppendBytesLiteral(out, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
        break;
    }
    case DUCKDB_TYPE_BIT: {
        // A byte with the number of padding bits, then the bits.
        const std::string_view bits = ViewOf(At<duckdb_string_t>(row));
        out += '\'';
        for (std::size_t i = 8 + static_cast<unsigned char>(bits[0]); i < 8 * bits.size(); ++i)
            out += static_cast<unsigned char>(bits[i / 8]) >> (7 - i % 8) & 1 ? '1' : '0';
        out += '\'';
        break;
    }
    case DUCKDB_TYPE_BIGNUM: AppendBignum(out, Bytes(row)); break;
    case DUCKDB_TYPE_DECIMAL: AppendDecimal(out, row); break;
    case DUCKDB_TYPE_ENUM: AppendWord(out, row); break;
    case DUCKDB_TYPE_INTERVAL: AppendInterval(out, At<duckdb_interval>(row)); break;
    case DUCKDB_TYPE_TIMESTAMP_TZ: AppendZoned(out, At<std::int64_t>(row)); break;
    case DUCKDB_TYPE_LIST: {
        const auto& entry = At<duckdb_list_entry>(row);
        AppendItems(out, entry.offset, entry.length);
        break;
    }
    case DUCKDB_TYPE_ARRAY: AppendItems(out, row * m_arraySize, m_arraySize); break;
    case DUCKDB_TYPE_MAP: AppendMap(out, row); break;
    case DUCKDB_TYPE_STRUCT: AppendStruct(out, row); break;
    case DUCKDB_TYPE_UNION: AppendUnion(out, row); break;
    default: AppendFlat(out, row);
    }
}

/// Numbers stand bare, everything else between quotes.
void LiteralColumn::AppendFlat(std::string& out, idx_t row) const
{
    char buffer[text::BufferSize];
    char* end = buffer;
    bool quoted = true;
    const auto number = [&](char* last) {
        end = last;
        quoted = false;
    };
    switch (m_id) {
    case DUCKDB_TYPE_BOOLEAN:
        out += At<bool>(row) ? "true" : "false";
        return;
    case DUCKDB_TYPE_TINYINT: number(text::WriteInteger(buffer, At<std::int8_t>(row))); break;
    case DUCKDB_TYPE_SMALLINT: number(text::WriteInteger(buffer, At<std::int16_t>(row))); break;
    case DUCKDB_TYPE_INTEGER: number(text::WriteInteger(buffer, At<std::int32_t>(row))); break;
    case DUCKDB_TYPE_BIGINT: number(text::WriteInteger(buffer, At<std::int64_t>(row))); break;
    case DUCKDB_TYPE_UTINYINT: number(text::WriteUnsigned(buffer, At<std::uint8_t>(row))); break;
    case DUCKDB_TYPE_USMALLINT: number(text::WriteUnsigned(buffer, At<std::uint16_t>(row))); break;
    case DUCKDB_TYPE_UINTEGER: number(text::WriteUnsigned(buffer, At<std::uint32_t>(row))); break;
    case DUCKDB_TYPE_UBIGINT: number(text::WriteUnsigned(buffer, At<std::uint64_t>(row))); break;
    case DUCKDB_TYPE_FLOAT: end = text::WriteFloat(buffer, At<float>(row)); break;
    case DUCKDB_TYPE_DOUBLE:
        end = text::WriteDouble(buffer, At<double>(row));
        quoted = m_nested || !IsExactAsDecimal(buffer, end) || (At<double>(row) == 0 && std::signbit(At<double>(row)));
        break;
    case DUCKDB_TYPE_HUGEINT: end = text::WriteInteger128(buffer, Join(At<duckdb_hugeint>(row))); break;
    case DUCKDB_TYPE_UHUGEINT:
        end = text::WriteUnsigned128(buffer, static_cast<text::UInt128>(Join(At<duckdb_hugeint>(row))));
        break;
    case DUCKDB_TYPE_DATE: end = text::WriteDate(buffer, At<std::int32_t>(row)); break;
    case DUCKDB_TYPE_TIME: end = text::WriteTime(buffer, At<std::int64_t>(row), 6); break;
    case DUCKDB_TYPE_TIME_NS: end = text::WriteTime(buffer, At<std::int64_t>(row), 9); break;
    case DUCKDB_TYPE_TIME_TZ: end = text::WriteTimeTz(buffer, At<std::uint64_t>(row)); break;
    case DUCKDB_TYPE_TIMESTAMP: end = text::WriteTimestamp(buffer, At<std::int64_t>(row), 6); break;
    case DUCKDB_TYPE_TIMESTAMP_S: end = text::WriteTimestamp(buffer, At<std::int64_t>(row), 0); break;
    case DUCKDB_TYPE_TIMESTAMP_MS: end = text::WriteTimestamp(buffer, At<std::int64_t>(row), 3); break;
    case DUCKDB_TYPE_TIMESTAMP_NS: end = text::WriteTimestamp(buffer, At<std::int64_t>(row), 9); break;
    case DUCKDB_TYPE_UUID: {
        const auto& uuid = At<duckdb_hugeint>(row);
        end = text::WriteUuid(buffer, static_cast<std::uint64_t>(uuid.upper), uuid.lower);
        break;
    }
    default: break;
    }
    if (quoted)
        AppendInQuotes(out, buffer, end);
    else
        out.append(buffer, end);
}

void LiteralColumn::AppendDecimal(std::string& out, idx_t row) const
{
    text::Int128 value = 0;
    switch (m_storage) {
    case DUCKDB_TYPE_SMALLINT: value = At<std::int16_t>(row); break;
    case DUCKDB_TYPE_INTEGER: value = At<std::int32_t>(row); break;
    case DUCKDB_TYPE_BIGINT: value = At<std::int64_t>(row); break;
    default: value = Join(At<duckdb_hugeint>(row)); break;
    }
    char buffer[text::BufferSize];
    char* const end = text::WriteDecimal(buffer, value, m_width, m_scale);
    // A literal of many digits may become a double.
    if (m_width > 18 || m_nested)
        AppendInQuotes(out, buffer, end);
    else
        out.append(buffer, end);
}

/// Three bytes of sign and length, then the number, the highest byte first; a
/// negative one with every bit turned round.
void LiteralColumn::AppendBignum(std::string& out, std::string_view bytes) const
{
    constexpr std::size_t header = 3;
    constexpr std::uint32_t base = 1000000000;
    const bool isNegative = bytes.empty() || !(bytes.front() & 0x80);
    std::vector<std::uint32_t> groups{0}; // of nine digits, the lowest first
    for (std::size_t i = header; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(isNegative ? ~bytes[i] : bytes[i]);
        std::uint64_t carry = byte;
        for (std::uint32_t& group : groups) {
            carry += std::uint64_t{group} << 8;
            group = static_cast<std::uint32_t>(carry % base);
            carry /= base;
        }
        if (carry)
            groups.push_back(static_cast<std::uint32_t>(carry));
    }
    out += isNegative ? "'-" : "'";
    out += std::to_string(groups.back());
    for (std::size_t i = groups.size() - 1; i-- > 0;) {
        const std::string digits = std::to_string(groups[i]);
        out.append(9 - digits.size(), '0');
        out += digits;
    }
    out += '\'';
}

void LiteralColumn::AppendWord(std::string& out, idx_t row) const
{
    switch (m_storage) {
    case DUCKDB_TYPE_UTINYINT: out += m_words[At<std::uint8_t>(row)]; break;
    case DUCKDB_TYPE_USMALLINT: out += m_words[At<std::uint16_t>(row)]; break;
    default: out += m_words[At<std::uint32_t>(row)]; break;
    }
}

/// The engine does not read back every text of an interval that it writes.
void LiteralColumn::AppendInterval(std::string& out, const duckdb_interval& interval) const
{
    if (interval.micros / MicrosPerHour <= LongestHours && interval.micros / MicrosPerHour >= -LongestHours) {
        char buffer[text::BufferSize];
        AppendInQuotes(out, buffer, text::WriteInterval(buffer, interval.months, interval.days, interval.micros));
        return;
    }
    out += "(to_months(" + std::to_string(interval.months) + ") + to_days(" + std::to_string(interval.days)
        + ") + to_microseconds(" + std::to_string(interval.micros) + "))";
}

/// Far from today the engine's calendar arithmetic loses digits.
void LiteralColumn::AppendZoned(std::string& out, std::int64_t micros) const
{
    const bool isFinite = micros != std::numeric_limits<std::int64_t>::max()
        && micros != -std::numeric_limits<std::int64_t>::max();
    if (isFinite && (micros < YearOne || micros >= YearTenThousand)) {
        out += "make_timestamptz(" + std::to_string(micros) + ')';
        return;
    }
    char buffer[text::BufferSize + 4];
    char* end = text::WriteTimestamp(buffer, micros, 6);
    if (isFinite)
        for (const char c : {'+', '0', '0'})
            *end++ = c;
    AppendInQuotes(out, buffer, end);
}

void LiteralColumn::AppendItems(std::string& out, idx_t first, idx_t count) const
{
    out += '[';
    for (idx_t i = 0; i < count; ++i) {
        if (i)
            out += ", ";
        m_children[0].Append(out, first + i);
    }
    out += ']';
}

void LiteralColumn::AppendMap(std::string& out, idx_t row) const
{
    const auto& entry = At<duckdb_list_entry>(row);
    out += "MAP {";
    for (idx_t i = entry.offset; i < entry.offset + entry.length; ++i) {
        if (i != entry.offset)
            out += ", ";
        m_children[0].Append(out, i);
        out += ": ";
        m_children[1].Append(out, i);
    }
    out += '}';
}

void LiteralColumn::AppendStruct(std::string& out, idx_t row) const
{
    // A struct without names is a row.
    const bool named = std::none_of(m_childNames.begin(), m_childNames.end(), [](const auto& n) { return n == "''"; });
    out += named ? "{" : "row(";
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        if (i)
            out += ", ";
        if (named)
            out += m_childNames[i] + ": ";
        m_children[i].Append(out, row);
    }
    out += named ? '}' : ')';
}

void LiteralColumn::AppendUnion(std::string& out, idx_t row) const
{
    const std::uint8_t tag = At<std::uint8_t>(row);
    out += "union_value(" + m_childNames[tag] + " := ";
    m_children[tag].Append(out, row);
    out += ')';
}

} // namespace nub::orbsql
