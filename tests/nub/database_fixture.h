// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/duckdb_database.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <stdlib.h>

namespace nub::test {

using orbsql::I_Cursor;
using orbsql::I_DuckDBDatabase;
using orbsql::I_Result;
using orbsql::I_Statement;
using DatabasePtr = smart_ptr<I_DuckDBDatabase>;
using ResultPtr = smart_ptr<I_Result>;
using CursorPtr = smart_ptr<I_Cursor>;

inline DatabasePtr MakeDatabase(const std::string& location)
{
    const String text = String::FromUtf8(location);
    return orbsql::CreateDuckDBDatabase(
        smart_ptr<I_Disk_Location>::adopt(CreateDiskLocation(reinterpret_cast<const unsigned short*>(text.c_str()))));
}

inline DatabasePtr OpenMemory()
{
    DatabasePtr database = MakeDatabase(":memory:");
    database->Open();
    return database;
}

/// The text of the exception that the call throws; fails when it throws none.
template <class F>
std::string Thrown(F&& call)
{
    try {
        call();
    } catch (const xException& failure) {
        EXPECT_EQ(failure.get_Message().ToUtf8(), failure.what());
        return failure.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

inline bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// The rows that are left of a cursor: cells joined by "|", rows by a space.
inline std::string Drain(I_Cursor& cursor)
{
    std::string text;
    while (cursor.NextRow()) {
        for (int i = 0; i < cursor.get_ColumnCount(); ++i) {
            const auto value = smart_ptr<I_Value>::adopt(cursor.get_Value(i));
            text += (i ? "|" : text.empty() ? "" : " ") + (value->get_IsNull() ? "NULL" : value->get_String().ToUtf8());
        }
    }
    return text;
}

/// All rows of a query, or the engine's text.
inline std::string Ask(I_DuckDBDatabase& database, const std::string& query, const ValueArray& binds = {})
{
    try {
        const auto cursor = CursorPtr::adopt(database.SqlSelect(String::FromUtf8(query), 1, binds));
        return cursor ? Drain(*cursor) : "no cursor";
    } catch (const xException& failure) {
        return failure.what();
    }
}

inline void Script(I_DuckDBDatabase& database, const std::string& script, const ValueArray& binds = {})
{
    database.SqlExecute(String::FromUtf8(script), binds);
}

inline ResultPtr Start(I_DuckDBDatabase& database, const std::string& text, const ValueArray* binds = nullptr)
{
    return ResultPtr::adopt(database.SqlExecute(String::FromUtf8(text), 1, binds));
}

inline bool Failed(const ResultPtr& result)
{
    return (result->get_Status() & orbsql::ResultStatus_Failed) != 0;
}

/// The whole chain of a text in short: "3" rows changed, "[1 2]" rows of a
/// cursor, "!text" the first line of a failure.
inline std::vector<std::string> Chain(I_DuckDBDatabase& database, const std::string& text, const ValueArray* binds = nullptr)
{
    std::vector<std::string> outline;
    for (ResultPtr result = Start(database, text, binds); result; result = ResultPtr::adopt(result->NextResult())) {
        if (Failed(result)) {
            const std::string error = result->get_ErrorMessage().ToUtf8();
            outline.push_back("!" + error.substr(0, error.find('\n')));
        } else if (const auto cursor = CursorPtr::adopt(result->get_Cursor())) {
            try {
                outline.push_back("[" + Drain(*cursor) + "]");
            } catch (const xException& failure) {
                outline.push_back("[!" + std::string(failure.what()) + "]");
            }
        } else {
            outline.push_back(std::to_string(result->get_AffectedRows()));
        }
    }
    return outline;
}

/// A folder of its own, gone at the end.
class Folder
{
public:
    Folder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "orb-nub-XXXXXX").string();
        m_path = ::mkdtemp(pattern.data());
    }
    ~Folder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }
    std::string path() const { return m_path.string(); }
    std::vector<std::string> Entries() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path m_path;
};

inline void WriteFile(const std::string& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

} // namespace nub::test
