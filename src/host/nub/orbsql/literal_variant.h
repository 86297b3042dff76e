// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/literal_column.h"

namespace nub::orbsql {

/// VARIANT values as expressions that build the very same value, with the type
/// of everything inside. One thread.
///
/// The engine stores such a value in four parts: the keys of all its objects;
/// for each member or item the index of its key and of its value; for each value
/// its type and where its bytes begin; and the bytes. The first value is the
/// outermost.
class LiteralVariant
{
public:
    /// The test has to outlive the object.
    LiteralVariant(duckdb_logical_type type, const CodePointTest& test);

    void SetVector(duckdb_vector vector);
    /// Appends the value, which is not null. Throws xException when it has a form
    /// that is not known or no expression gives it; nothing is guessed.
    void Append(std::string& out, idx_t row);

private:
    /// A list's entries and how far its items reach.
    struct List
    {
        const duckdb_list_entry* entries = nullptr;
        idx_t size = 0;
    };
    /// One value. The children of one stand side by side, behind all that come before.
    struct Node
    {
        std::uint8_t type = 0;
        std::uint8_t width = 0, scale = 0; ///< of a decimal
        bool isJson = false;       ///< a text of JSON reads back as the very same value
        bool prefersJson = false;  ///< and is the better way
        bool isExpression = false; ///< a struct or list gives it
        std::uint32_t first = 0, count = 0;
        std::uint32_t depth = 0; ///< of the expression
        std::string_view key, bytes;
    };

    void Read(idx_t row);
    void ReadValue(Node& node, std::uint32_t index) const;
    void ReadChildren(std::size_t parent);
    void Judge(Node& node) const;
    bool HasPlainKeys(const Node& object) const;
    void AppendValue(std::string& out, const Node& node);
    void AppendArray(std::string& out, const Node& array);
    const Node* FindAlike(const Node& array) const;
    static std::string TypeName(const Node& scalar);
    void AppendScalar(std::string& out, const Node& node, bool typed) const;
    void AppendJson(std::string& out, const Node& node) const;

    const CodePointTest& m_test;
    bool m_isKnown;
    List m_keys, m_children, m_values;
    const duckdb_string_t* m_keyTexts = nullptr;
    const std::uint32_t* m_keyIndexes = nullptr;
    const std::uint64_t* m_keyValidity = nullptr;
    const std::uint32_t* m_valueIndexes = nullptr;
    const std::uint8_t* m_types = nullptr;
    const std::uint32_t* m_offsets = nullptr;
    const duckdb_string_t* m_bytes = nullptr;

    // Of the row that is being written.
    duckdb_list_entry m_rowKeys{}, m_rowChildren{}, m_rowValues{};
    std::string_view m_rowBytes;
    std::vector<Node> m_nodes;
    std::string m_json;
};

} // namespace nub::orbsql
