// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/literal_variant.h"

#include "nub/exception.h"
#include "nub/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace nub::orbsql {
namespace {

/// The engine's numbers of what may stand in a VARIANT.
enum Inner : std::uint8_t {
    Inner_Null = 0,
    Inner_True = 1,
    Inner_False = 2,
    Inner_Int64 = 6,
    Inner_UInt64 = 11,
    Inner_Double = 14,
    Inner_Decimal = 15,
    Inner_Text = 16,
    Inner_Blob = 17,
    Inner_Object = 29,
    Inner_Array = 30,
    Inner_Geometry = 33,
};

/// Bytes of a value that begin with their own count.
constexpr std::uint8_t Counted = 0xFF;

struct Form
{
    const char* name; ///< of the type, null for what has none of its own
    duckdb_type type;
    std::uint8_t size;
};

constexpr Form Forms[] = {
    {nullptr, DUCKDB_TYPE_SQLNULL, 0},
    {"BOOLEAN", DUCKDB_TYPE_BOOLEAN, 0},
    {"BOOLEAN", DUCKDB_TYPE_BOOLEAN, 0},
    {"TINYINT", DUCKDB_TYPE_TINYINT, 1},
    {"SMALLINT", DUCKDB_TYPE_SMALLINT, 2},
    {"INTEGER", DUCKDB_TYPE_INTEGER, 4},
    {"BIGINT", DUCKDB_TYPE_BIGINT, 8},
    {"HUGEINT", DUCKDB_TYPE_HUGEINT, 16},
    {"UTINYINT", DUCKDB_TYPE_UTINYINT, 1},
    {"USMALLINT", DUCKDB_TYPE_USMALLINT, 2},
    {"UINTEGER", DUCKDB_TYPE_UINTEGER, 4},
    {"UBIGINT", DUCKDB_TYPE_UBIGINT, 8},
    {"UHUGEINT", DUCKDB_TYPE_UHUGEINT, 16},
    {"FLOAT", DUCKDB_TYPE_FLOAT, 4},
    {"DOUBLE", DUCKDB_TYPE_DOUBLE, 8},
    {"DECIMAL", DUCKDB_TYPE_DECIMAL, 0},
    {"VARCHAR", DUCKDB_TYPE_VARCHAR, Counted},
    {"BLOB", DUCKDB_TYPE_BLOB, Counted},
    {"UUID", DUCKDB_TYPE_UUID, 16},
    {"DATE", DUCKDB_TYPE_DATE, 4},
    {"TIME", DUCKDB_TYPE_TIME, 8},
    {"TIME_NS", DUCKDB_TYPE_TIME_NS, 8},
    {"TIMESTAMP_S", DUCKDB_TYPE_TIMESTAMP_S, 8},
    {"TIMESTAMP_MS", DUCKDB_TYPE_TIMESTAMP_MS, 8},
    {"TIMESTAMP", DUCKDB_TYPE_TIMESTAMP, 8},
    {"TIMESTAMP_NS", DUCKDB_TYPE_TIMESTAMP_NS, 8},
    {"TIMETZ", DUCKDB_TYPE_TIME_TZ, 8},
    {"TIMESTAMPTZ", DUCKDB_TYPE_TIMESTAMP_TZ, 8},
    {"INTERVAL", DUCKDB_TYPE_INTERVAL, 16},
    {nullptr, DUCKDB_TYPE_STRUCT, 0},
    {nullptr, DUCKDB_TYPE_LIST, 0},
    {"BIGNUM", DUCKDB_TYPE_BIGNUM, Counted},
    {"BIT", DUCKDB_TYPE_BIT, Counted},
    {"GEOMETRY", LiteralColumn::GeometryType, Counted},
};

/// The engine reads expressions of up to a thousand levels.
constexpr std::uint32_t DeepestExpression = 900;

[[noreturn]] void FailForm()
{
    throw xException("The engine keeps a VARIANT value in a form that is not known here");
}

bool Holds(duckdb_logical_type structure, std::initializer_list<std::pair<const char*, duckdb_type>> members)
{
    if (duckdb_struct_type_child_count(structure) != members.size())
        return false;
    idx_t i = 0;
    for (const auto& [name, type] : members) {
        const EngineMemory<char> found(duckdb_struct_type_child_name(structure, i));
        const TypeHandle child(duckdb_struct_type_child_type(structure, i));
        if (!found || std::strcmp(found.get(), name) != 0 || duckdb_get_type_id(child.get()) != type)
            return false;
        ++i;
    }
    return true;
}

/// The type of the items of a list that is a child of the structure.
TypeHandle ItemsOf(duckdb_logical_type structure, idx_t child)
{
    const TypeHandle list(duckdb_struct_type_child_type(structure, child));
    return TypeHandle(duckdb_list_type_child_type(list.get()));
}

bool IsKnownForm(duckdb_logical_type variant)
{
    if (!Holds(variant, {{"keys", DUCKDB_TYPE_LIST}, {"children", DUCKDB_TYPE_LIST}, {"values", DUCKDB_TYPE_LIST},
                         {"data", DUCKDB_TYPE_BLOB}}))
        return false;
    const TypeHandle key = ItemsOf(variant, 0), child = ItemsOf(variant, 1), value = ItemsOf(variant, 2);
    return duckdb_get_type_id(key.get()) == DUCKDB_TYPE_VARCHAR
        && Holds(child.get(), {{"keys_index", DUCKDB_TYPE_UINTEGER}, {"values_index", DUCKDB_TYPE_UINTEGER}})
        && Holds(value.get(), {{"type_id", DUCKDB_TYPE_UTINYINT}, {"byte_offset", DUCKDB_TYPE_UINTEGER}});
}

template <class T> const T* DataOf(duckdb_vector vector)
{
    return static_cast<const T*>(duckdb_vector_get_data(vector));
}

/// Seven bits a byte, the lowest first; the topmost bit says that more follow.
std::uint32_t TakeNumber(std::string_view& bytes)
{
    std::uint64_t number = 0;
    for (int shift = 0; shift < 35; shift += 7) {
        if (bytes.empty())
            FailForm();
        const auto byte = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        number |= std::uint64_t{byte & 0x7Fu} << shift;
        if (!(byte & 0x80)) {
            if (number > 0xFFFFFFFFu)
                FailForm();
            return static_cast<std::uint32_t>(number);
        }
    }
    FailForm();
}

std::uint8_t DecimalSize(unsigned width)
{
    return width <= 4 ? 2 : width <= 9 ? 4 : width <= 18 ? 8 : 16;
}

template <class T> T Load(std::string_view bytes)
{
    T value;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

LiteralVariant::LiteralVariant(duckdb_logical_type type, const CodePointTest& test)
    : m_test(test), m_isKnown(IsKnownForm(type))
{
}

void LiteralVariant::SetVector(duckdb_vector vector)
{
    if (!m_isKnown)
        return;
    const auto list = [vector](idx_t child, List& target) {
        const duckdb_vector found = duckdb_struct_vector_get_child(vector, child);
        target = {DataOf<duckdb_list_entry>(found), duckdb_list_vector_get_size(found)};
        return duckdb_list_vector_get_child(found);
    };
    m_keyTexts = DataOf<duckdb_string_t>(list(0, m_keys));
    const duckdb_vector children = list(1, m_children);
    const duckdb_vector keyIndexes = duckdb_struct_vector_get_child(children, 0);
    m_keyIndexes = DataOf<std::uint32_t>(keyIndexes);
    m_keyValidity = duckdb_vector_get_validity(keyIndexes);
    m_valueIndexes = DataOf<std::uint32_t>(duckdb_struct_vector_get_child(children, 1));
    const duckdb_vector values = list(2, m_values);
    m_types = DataOf<std::uint8_t>(duckdb_struct_vector_get_child(values, 0));
    m_offsets = DataOf<std::uint32_t>(duckdb_struct_vector_get_child(values, 1));
    m_bytes = DataOf<duckdb_string_t>(duckdb_struct_vector_get_child(vector, 3));
}

void LiteralVariant::Append(std::string& out, idx_t row)
{
    if (!m_isKnown)
        FailForm();
    Read(row);
    AppendValue(out, m_nodes.front());
    if (m_nodes.front().type != Inner_Null)
        out += "::VARIANT";
}

// What is there

void LiteralVariant::Read(idx_t row)
{
    const auto entry = [row](const List& list) {
        const duckdb_list_entry found = list.entries[row];
        if (found.offset > list.size || found.length > list.size - found.offset)
            FailForm();
        return found;
    };
    m_rowKeys = entry(m_keys);
    m_rowChildren = entry(m_children);
    m_rowValues = entry(m_values);
    m_rowBytes = ViewOf(m_bytes[row]);
    m_nodes.assign(1, {});
    ReadValue(m_nodes[0], 0);
    for (std::size_t i = 0; i < m_nodes.size(); ++i)
        ReadChildren(i);
    for (std::size_t i = m_nodes.size(); i-- > 0;)
        Judge(m_nodes[i]);
}

void LiteralVariant::ReadValue(Node& node, std::uint32_t index) const
{
    if (index >= m_rowValues.length)
        FailForm();
    const idx_t at = m_rowValues.offset + index;
    node.type = m_types[at];
    if (node.type >= std::size(Forms) || m_offsets[at] > m_rowBytes.size())
        FailForm();
    std::string_view bytes = m_rowBytes.substr(m_offsets[at]);
    std::size_t size = Forms[node.type].size;
    if (node.type == Inner_Object || node.type == Inner_Array) {
        node.count = TakeNumber(bytes);
        node.first = node.count ? TakeNumber(bytes) : 0;
        if (node.first > m_rowChildren.length || node.count > m_rowChildren.length - node.first)
            FailForm();
    } else if (node.type == Inner_Decimal) {
        const std::uint32_t width = TakeNumber(bytes), scale = TakeNumber(bytes);
        if (width < 1 || width > 38 || scale > width)
            FailForm();
        node.width = static_cast<std::uint8_t>(width);
        node.scale = static_cast<std::uint8_t>(scale);
        size = DecimalSize(width);
    } else if (size == Counted) {
        size = TakeNumber(bytes);
    }
    if (size > bytes.size())
        FailForm();
    node.bytes = bytes.substr(0, size);
}

void LiteralVariant::ReadChildren(std::size_t parent)
{
    const bool isObject = m_nodes[parent].type == Inner_Object;
    if (!isObject && m_nodes[parent].type != Inner_Array)
        return;
    const std::uint32_t first = m_nodes[parent].first, count = m_nodes[parent].count;
    // A value has one place; anything else might go round in circles.
    if (count > m_rowValues.length - m_nodes.size())
        FailForm();
    m_nodes[parent].first = static_cast<std::uint32_t>(m_nodes.size());
    for (std::uint32_t i = 0; i < count; ++i) {
        const idx_t at = m_rowChildren.offset + first + i;
        Node child;
        ReadValue(child, m_valueIndexes[at]);
        if (isObject) {
            const bool hasKey = !m_keyValidity || (m_keyValidity[at / 64] >> (at % 64) & 1);
            if (!hasKey || m_keyIndexes[at] >= m_rowKeys.length)
                FailForm();
            child.key = ViewOf(m_keyTexts[m_rowKeys.offset + m_keyIndexes[at]]);
        }
        m_nodes.push_back(child);
    }
}

/// Looks at how a value can be written; its children are judged already.
void LiteralVariant::Judge(Node& node) const
{
    switch (node.type) {
    case Inner_Null:
    case Inner_True:
    case Inner_False:
    case Inner_Text:
    case Inner_UInt64: node.isJson = node.prefersJson = true; break;
    case Inner_Int64:
        // A number of JSON is of this type when it has a sign, which a zero seldom has.
        node.isJson = Load<std::int64_t>(node.bytes) <= 0;
        node.prefersJson = Load<std::int64_t>(node.bytes) < 0;
        break;
    case Inner_Double: node.isJson = node.prefersJson = std::isfinite(Load<double>(node.bytes)); break;
    case Inner_Object:
    case Inner_Array:
        node.isJson = node.prefersJson = true;
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            node.isJson = node.isJson && m_nodes[i].isJson;
            node.prefersJson = node.prefersJson && m_nodes[i].prefersJson;
            node.depth = std::max(node.depth, m_nodes[i].depth);
        }
        if (node.prefersJson)
            break;
        node.isExpression = node.depth < DeepestExpression && (node.type == Inner_Array || HasPlainKeys(node));
        if (node.isJson && !node.isExpression)
            node.prefersJson = true;
        node.depth = node.prefersJson ? 0 : node.depth + 2;
        break;
    default: break;
    }
}

/// A struct's names are not empty and differ in more than case.
bool LiteralVariant::HasPlainKeys(const Node& object) const
{
    std::vector<std::string> names;
    for (std::uint32_t i = object.first; i < object.first + object.count; ++i) {
        std::string& name = names.emplace_back(m_nodes[i].key);
        if (name.empty() || !IsWritable(name, m_test))
            return false;
        std::transform(name.begin(), name.end(), name.begin(), Lower);
    }
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) == names.end();
}

// What is written

void LiteralVariant::AppendValue(std::string& out, const Node& node)
{
    const bool isEmptyArray = node.type == Inner_Array && !node.count;
    if (node.type != Inner_Object && node.type != Inner_Array) {
        AppendScalar(out, node, true);
    } else if (node.prefersJson && !isEmptyArray) {
        static const CodePointTest all;
        m_json.clear();
        AppendJson(m_json, node);
        AppendTextLiteral(out, m_json, all, true);
        out += "::JSON";
    } else if (node.type == Inner_Array) {
        AppendArray(out, node);
    } else if (!node.isExpression) {
        throw xException("A VARIANT value has keys that no struct can have, or is too deeply nested");
    } else {
        out += '{';
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            if (i != node.first)
                out += ", ";
            AppendTextLiteral(out, m_nodes[i].key, m_test, false);
            out += ": ";
            AppendValue(out, m_nodes[i]);
        }
        out += '}';
    }
}

/// Items of different types are variants, others share the type.
void LiteralVariant::AppendArray(std::string& out, const Node& array)
{
    const Node* const alike = FindAlike(array);
    out += '[';
    for (std::uint32_t i = array.first; i < array.first + array.count; ++i) {
        const Node& item = m_nodes[i];
        if (i != array.first)
            out += ", ";
        if (alike) {
            AppendScalar(out, item, false);
        } else {
            AppendValue(out, item);
            if (item.type != Inner_Null)
                out += "::VARIANT";
        }
    }
    out += ']';
    if (alike)
        out += "::" + TypeName(*alike) + "[]";
}

/// An item whose type is that of all the others but for nulls, or null.
const LiteralVariant::Node* LiteralVariant::FindAlike(const Node& array) const
{
    const Node* found = nullptr;
    for (std::uint32_t i = array.first; i < array.first + array.count; ++i) {
        const Node& item = m_nodes[i];
        if (item.type == Inner_Null)
            continue;
        if (!Forms[item.type].name)
            return nullptr;
        if (found && (Forms[item.type].type != Forms[found->type].type || item.width != found->width || item.scale != found->scale))
            return nullptr;
        found = &item;
    }
    return found;
}

std::string LiteralVariant::TypeName(const Node& scalar)
{
    std::string name = Forms[scalar.type].name;
    if (scalar.type == Inner_Decimal)
        name += '(' + std::to_string(scalar.width) + ',' + std::to_string(scalar.scale) + ')';
    return name;
}

void LiteralVariant::AppendScalar(std::string& out, const Node& node, bool typed) const
{
    if (node.type == Inner_Null) {
        out += "NULL";
        return;
    }
    const Form& form = Forms[node.type];
    LiteralColumn literal(form.type, node.width, node.scale, m_test);
    alignas(16) char value[16] = {};
    static_assert(sizeof(duckdb_string_t) <= sizeof value);
    if (form.size == Counted) {
        duckdb_string_t string{};
        string.value.inlined.length = static_cast<std::uint32_t>(node.bytes.size());
        if (node.bytes.size() <= sizeof string.value.inlined.inlined)
            std::copy(node.bytes.begin(), node.bytes.end(), string.value.inlined.inlined);
        else
            string.value.pointer.ptr = const_cast<char*>(node.bytes.data());
        std::memcpy(value, &string, sizeof string);
    } else {
        value[0] = node.type == Inner_True;
        std::copy(node.bytes.begin(), node.bytes.end(), value);
    }
    literal.SetValue(value);
    const std::size_t start = out.size();
    literal.Append(out, 0);
    switch (node.type) {
    case Inner_True:
    case Inner_False:
    case Inner_Text:
    case Inner_Blob:
    case Inner_Geometry: break; // their literals have the type
    default:
        if (typed) {
            // A cast binds closer than a sign.
            if (out[start] == '-') {
                out.insert(start, 1, '\'');
                out += '\'';
            }
            out += "::" + TypeName(node);
        }
    }
}

void LiteralVariant::AppendJson(std::string& out, const Node& node) const
{
    char buffer[text::BufferSize];
    switch (node.type) {
    case Inner_Null: out += "null"; break;
    case Inner_True: out += "true"; break;
    case Inner_False: out += "false"; break;
    case Inner_Text: AppendJsonString(out, node.bytes, m_test); break;
    case Inner_UInt64: out.append(buffer, text::WriteUnsigned(buffer, Load<std::uint64_t>(node.bytes))); break;
    case Inner_Double: out.append(buffer, text::WriteDouble(buffer, Load<double>(node.bytes))); break;
    case Inner_Int64: {
        const auto number = Load<std::int64_t>(node.bytes);
        if (!number)
            out += '-';
        out.append(buffer, text::WriteInteger(buffer, number));
        break;
    }
    default: {
        const bool isObject = node.type == Inner_Object;
        out += isObject ? '{' : '[';
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            if (i != node.first)
                out += ',';
            if (isObject) {
                AppendJsonString(out, m_nodes[i].key, m_test);
                out += ':';
            }
            AppendJson(out, m_nodes[i]);
        }
        out += isObject ? '}' : ']';
    }
    }
}

} // namespace nub::orbsql
