// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/string.h"

#include <string>

namespace nub::orbsql {

/// What a location text means to the engine.
struct Location
{
    enum class Kind {
        File,       ///< a path of this machine
        Memory,     ///< ":memory:" or "file:...?...mode=memory..."
        MotherDuck, ///< "md:..."
        Other,      ///< some other scheme, which only the engine can judge
    };

    static Location Parse(const String& text);

    Kind kind = Kind::File;
    std::string path; ///< what the engine gets, UTF-8

    /// The last part of the path; for other kinds a name to call a file by.
    std::string FileName() const;
};

/// The path with all links, "." and ".." resolved, as far as it exists.
std::string CanonicalPath(const std::string& path);

} // namespace nub::orbsql
