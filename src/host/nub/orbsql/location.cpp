// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/location.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>

namespace nub::orbsql {

namespace {

bool exists(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0;
}

/// A word of two or more letters before a colon: "s3://...", "sqlite:...".
bool has_scheme(const std::string& path)
{
    const std::size_t colon = path.find(':');
    return colon != std::string::npos && colon >= 2
        && std::all_of(path.begin(), path.begin() + colon, [](unsigned char c) { return std::isalnum(c) || c == '_'; });
}

/// The path of a "file:" location: the engine itself knows only some spellings.
std::string path_of_file_uri(std::string text)
{
    text.erase(0, 5);
    text.erase(std::min(text.find('?'), text.size()));
    if (text.starts_with("//")) {
        const std::size_t slash = text.find('/', 2);
        const std::string host = text.substr(2, slash == std::string::npos ? slash : slash - 2);
        if (host.empty() || host == "localhost")
            text.erase(0, 2 + host.size());
    }
    return text;
}

} // namespace

Location Location::Parse(const String& text)
{
    Location result;
    result.path = text.ToUtf8();
    std::string& path = result.path;
    if (path == ":memory:") {
        result.kind = Kind::Memory;
    } else if (path.starts_with("md:") || path.starts_with("motherduck:")) {
        result.kind = Kind::MotherDuck;
    } else if (path.starts_with("file:")) {
        const std::size_t query = path.find('?', 5);
        if (query != std::string::npos && path.find("mode=memory", query) != std::string::npos) {
            result.kind = Kind::Memory;
            path = ":memory:";
        } else if (!exists(path)) {
            path = path_of_file_uri(std::move(path));
        }
    } else if (has_scheme(path) && !exists(path)) {
        result.kind = Kind::Other;
    }
    return result;
}

std::string Location::FileName() const
{
    switch (kind) {
    case Kind::Memory:
        return "memory.duckdb";
    case Kind::File:
        return std::filesystem::path(path).filename().string();
    default:
        break;
    }
    std::string name = path.substr(path.find(':') + 1);
    name.erase(std::min(name.find('?'), name.size()));
    name = std::filesystem::path(name).filename().string();
    return (name.empty() ? "remote" : name) + ".duckdb";
}

std::string CanonicalPath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error)
        return path;
    const std::filesystem::path result = std::filesystem::weakly_canonical(absolute, error);
    return error ? absolute.lexically_normal().string() : result.string();
}

} // namespace nub::orbsql
