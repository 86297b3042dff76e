// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/duckdb_database.h"

#include <QString>

#include <stdexcept>

namespace HF::test {

/// The real engine in memory, to compare with.
class EnginePlace
{
public:
    EnginePlace()
        : m_database(nub::orbsql::CreateDuckDBDatabase(
            nub::smart_ptr<nub::I_Disk_Location>::adopt(nub::CreateDiskLocation(QStringLiteral(":memory:").utf16()))))
    {
        m_database->Create();
    }

    /// The last cell of the first column of the last statement that gives rows,
    /// as text. An error throws with the engine's words.
    QString Ask(const QString& sql)
    {
        using namespace nub;
        QString answer;
        auto result = smart_ptr<orbsql::I_Result>::adopt(m_database->SqlExecute(Text(sql), 1, nullptr));
        while (result) {
            if (result->get_Status() & orbsql::ResultStatus_Failed)
                throw std::runtime_error(sql.toStdString() + ": " + result->get_ErrorMessage().ToUtf8());
            if (const auto cursor = smart_ptr<orbsql::I_Cursor>::adopt(result->get_Cursor()))
                while (cursor->NextRow()) {
                    const auto value = smart_ptr<I_Value>::adopt(cursor->get_Value(0));
                    const String text = value->get_String();
                    answer = QString::fromUtf16(text.c_str(), static_cast<qsizetype>(text.length()));
                }
            result = smart_ptr<orbsql::I_Result>::adopt(result->NextResult());
        }
        return answer;
    }

private:
    static nub::String Text(const QString& text)
    {
        return nub::String(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()));
    }

    nub::smart_ptr<nub::orbsql::I_DuckDBDatabase> m_database;
};

} // namespace HF::test
