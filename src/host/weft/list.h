// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"
#include "weft/type.h"

#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace weft {

namespace internal {

/// The content of a list, shared by all who refer to it.
class ORB_SHARED object_value_list final : public object_value
{
public:
    explicit object_value_list(const Type& element) : element(element) {}
    Type type() const override { return Type::list(element); }
    Any clone() const override;
    bool equals(const object_value& other) const override;
    std::size_t hash() const override;

    const Type element;
    std::vector<Any> items;
};

/// The content of a map; entries keep the order in which they came.
class ORB_SHARED object_value_map final : public object_value
{
public:
    Type type() const override { return Type::basic(Type::Kind::HashMap); }
    Any clone() const override;
    bool equals(const object_value& other) const override;
    std::size_t hash() const override { return entries.size(); }

    struct hasher
    {
        std::size_t operator()(const Any& key) const { return key.hash(); }
    };
    std::vector<std::pair<Any, Any>> entries;
    std::unordered_map<Any, std::size_t, hasher> places;
};

} // namespace internal

/// A list with an element type. Copies share the content.
class ORB_SHARED List
{
public:
    explicit List(const Type& element = Type());
    List(const Type& element, std::vector<Any> items);
    /// Nothing when the value is no list.
    static std::optional<List> cast(const Any& any);

    operator Any() const { return m_any; }
    Type elementType() const { return content().element; }
    std::span<const Any> items() const { return content().items; }
    std::size_t length() const { return content().items.size(); }
    const Any& at(std::size_t index) const { return content().items.at(index); }
    /// Throws bad_argument for a value of another type than the elements.
    void append(const Any& value) const;

private:
    struct taken {};
    List(taken, const Any& any) : m_any(any) {}
    internal::object_value_list& content() const { return *static_cast<internal::object_value_list*>(m_any.object()); }

    Any m_any;
};

/// A map from values to values. Copies share the content.
class ORB_SHARED HashMap
{
public:
    HashMap();
    /// Nothing when the value is no map.
    static std::optional<HashMap> cast(const Any& any);

    operator Any() const { return m_any; }
    std::span<const std::pair<Any, Any>> entries() const { return content().entries; }
    std::size_t length() const { return content().entries.size(); }
    bool contains(const Any& key) const { return content().places.contains(key); }
    /// None when there is no such key.
    Any get(const Any& key) const;
    void set(const Any& key, const Any& value) const;
    bool remove(const Any& key) const;

private:
    explicit HashMap(const Any& any) : m_any(any) {}
    internal::object_value_map& content() const { return *static_cast<internal::object_value_map*>(m_any.object()); }

    Any m_any;
};

} // namespace weft
