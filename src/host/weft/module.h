// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"

#include <mutex>
#include <utility>
#include <vector>

namespace weft {

/// A named set of classes and functions, such as "qt". Lives as long as the
/// process. Any thread.
class ORB_SHARED Module
{
public:
    explicit Module(const String& name) : m_name(name) {}
    Module(const Module&) = delete;

    const String& name() const { return m_name; }
    /// In place of what had the name before.
    void add(const String& name, const Any& value);
    /// None when there is no such thing.
    Any get(const String& name) const;
    /// In the order they came.
    std::vector<std::pair<String, Any>> entries() const;

private:
    const String m_name;
    mutable std::mutex m_mutex;
    std::vector<std::pair<String, Any>> m_entries;
};

/// The module of that name; made when it is asked for the first time.
ORB_SHARED Module& find_module(const String& name);

} // namespace weft
