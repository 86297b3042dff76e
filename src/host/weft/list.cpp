// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/list.h"

#include "weft/errors.h"

#include <algorithm>

namespace weft {

namespace internal {

Any object_value_list::clone() const
{
    auto* copy = new object_value_list(element);
    copy->items = items;
    return Any::adopt(copy);
}

bool object_value_list::equals(const object_value& other) const
{
    const auto* list = dynamic_cast<const object_value_list*>(&other);
    return list && list->items == items;
}

std::size_t object_value_list::hash() const
{
    std::size_t seed = items.size();
    for (const Any& item : items)
        seed = seed * 31 + item.hash();
    return seed;
}

Any object_value_map::clone() const
{
    auto* copy = new object_value_map;
    copy->entries = entries;
    copy->places = places;
    return Any::adopt(copy);
}

bool object_value_map::equals(const object_value& other) const
{
    const auto* map = dynamic_cast<const object_value_map*>(&other);
    return map && map->entries.size() == entries.size() &&
           std::all_of(entries.begin(), entries.end(), [&](const auto& entry) {
               const auto place = map->places.find(entry.first);
               return place != map->places.end() && map->entries[place->second].second == entry.second;
           });
}

} // namespace internal

List::List(const Type& element) : m_any(Any::adopt(new internal::object_value_list(element))) {}

List::List(const Type& element, std::vector<Any> items) : List(element)
{
    content().items = std::move(items);
}

std::optional<List> List::cast(const Any& any)
{
    return any.as<internal::object_value_list>() ? std::optional(List(taken(), any)) : std::nullopt;
}

void List::append(const Any& value) const
{
    if (!elementType().matches(value))
        throw internal::bad_argument(elementType(), value);
    content().items.push_back(value);
}

HashMap::HashMap() : m_any(Any::adopt(new internal::object_value_map)) {}

std::optional<HashMap> HashMap::cast(const Any& any)
{
    return any.as<internal::object_value_map>() ? std::optional(HashMap(any)) : std::nullopt;
}

Any HashMap::get(const Any& key) const
{
    const auto place = content().places.find(key);
    return place == content().places.end() ? Any() : content().entries[place->second].second;
}

void HashMap::set(const Any& key, const Any& value) const
{
    const auto [place, isNew] = content().places.try_emplace(key, content().entries.size());
    if (isNew)
        content().entries.emplace_back(key, value);
    else
        content().entries[place->second].second = value;
}

bool HashMap::remove(const Any& key) const
{
    auto& map = content();
    const auto place = map.places.find(key);
    if (place == map.places.end())
        return false;
    const std::size_t index = place->second;
    map.places.erase(place);
    map.entries.erase(map.entries.begin() + static_cast<std::ptrdiff_t>(index));
    for (auto& [other, position] : map.places)
        if (position > index)
            --position;
    return true;
}

} // namespace weft
