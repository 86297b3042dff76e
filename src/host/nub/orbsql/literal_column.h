// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/handle.h"
#include "nub/orbsql/literal_text.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace nub::orbsql {

class LiteralVariant;

/// The text or bytes of a cell; valid as long as the cell.
inline std::string_view ViewOf(const duckdb_string_t& string)
{
    const std::size_t length = string.value.inlined.length;
    const bool inlined = length <= sizeof string.value.inlined.inlined;
    return {inlined ? string.value.inlined.inlined : string.value.pointer.ptr, length};
}

/// A column, or what is nested in one, as literals that the engine reads back
/// as the very same value when it casts them to the column's type. One thread.
class LiteralColumn
{
public:
    // Types that are newer than the C API's header.
    static constexpr auto GeometryType = static_cast<duckdb_type>(40);
    static constexpr auto VariantType = static_cast<duckdb_type>(41);

    /// The types and the test have to outlive the column.
    LiteralColumn(duckdb_logical_type type, const CodePointTest& test, bool nested = false);
    /// For single values of a type without children, nested.
    LiteralColumn(duckdb_type type, int width, int scale, const CodePointTest& test);
    ~LiteralColumn();
    LiteralColumn(LiteralColumn&&) noexcept;

    /// False for types that the C API does not open; the engine's text has to do.
    bool IsKnown() const noexcept;
    /// A VARIANT, whose types the engine's text does not tell, or one within.
    bool HoldsVariant() const noexcept;
    bool IsBytes() const noexcept { return m_id == DUCKDB_TYPE_BLOB && !m_nested; }
    void SetVector(duckdb_vector vector);
    /// One value as a vector's data holds it, row 0.
    void SetValue(const void* value) { m_data = value; }
    void Append(std::string& out, idx_t row) const;
    bool IsNull(idx_t row) const { return m_validity && !(m_validity[row / 64] >> (row % 64) & 1); }
    /// The bytes of a BLOB that is not null; valid as long as the vector.
    std::string_view Bytes(idx_t row) const;

private:
    template <class T> const T& At(idx_t row) const { return static_cast<const T*>(m_data)[row]; }
    void MakeChildren(duckdb_logical_type type);
    void AddChild(TypeHandle type, const char* name);
    void ReadWords(duckdb_logical_type type);
    void AppendFlat(std::string& out, idx_t row) const;
    void AppendDecimal(std::string& out, idx_t row) const;
    void AppendBignum(std::string& out, std::string_view bytes) const;
    void AppendWord(std::string& out, idx_t row) const;
    void AppendInterval(std::string& out, const duckdb_interval& interval) const;
    void AppendZoned(std::string& out, std::int64_t micros) const;
    void AppendItems(std::string& out, idx_t first, idx_t count) const;
    void AppendMap(std::string& out, idx_t row) const;
    void AppendStruct(std::string& out, idx_t row) const;
    void AppendUnion(std::string& out, idx_t row) const;

    duckdb_type m_id;
    duckdb_type m_storage = DUCKDB_TYPE_INVALID; ///< of decimals and enums
    const CodePointTest& m_test;
    bool m_nested;
    int m_width = 0, m_scale = 0;
    idx_t m_arraySize = 0;
    std::vector<std::string> m_words; ///< of an ENUM, as literals
    std::vector<TypeHandle> m_childTypes;
    std::vector<std::string> m_childNames; ///< as literals; names of a union as identifiers
    std::vector<LiteralColumn> m_children;
    std::unique_ptr<LiteralVariant> m_variant;
    const void* m_data = nullptr;
    const std::uint64_t* m_validity = nullptr;
};

} // namespace nub::orbsql
