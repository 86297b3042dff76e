// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/module.h"

#include <algorithm>
#include <map>
#include <memory>

namespace weft {

void Module::add(const String& name, const Any& value)
{
    std::lock_guard guard(m_mutex);
    const auto place =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const auto& entry) { return entry.first == name; });
    if (place == m_entries.end())
        m_entries.emplace_back(name, value);
    else
        place->second = value;
}

Any Module::get(const String& name) const
{
    std::lock_guard guard(m_mutex);
    for (const auto& [key, value] : m_entries)
        if (key == name)
            return value;
    return {};
}

std::vector<std::pair<String, Any>> Module::entries() const
{
    std::lock_guard guard(m_mutex);
    return m_entries;
}

Module& find_module(const String& name)
{
    static auto* mutex = new std::mutex;
    static auto* modules = new std::map<QString, std::unique_ptr<Module>>;
    std::lock_guard guard(*mutex);
    std::unique_ptr<Module>& module = (*modules)[name.ToQString()];
    if (!module)
        module = std::make_unique<Module>(name);
    return *module;
}

} // namespace weft
