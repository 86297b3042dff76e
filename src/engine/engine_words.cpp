// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/engine_words.h"

#include "engine/engine_version.h"
#include "engine/kernel_text.h"
#include "engine/queries.h"

#include "nub/orbsql/duckdb_database.h"

namespace {

using nub::orbsql::I_Cursor;
using nub::orbsql::I_DuckDBDatabase;

/// A private engine and the rows of one query on it.
class PrivateQuery
{
public:
    explicit PrivateQuery(const char* query)
    {
        m_engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(QStringLiteral(":memory:")));
        m_engine->Create();
        m_cursor = nub::smart_ptr<I_Cursor>::adopt(
            m_engine->SqlSelect(nub::String::FromUtf8(query), 1, nub::ValueArray()));
    }

    /// Calls `read` for each row.
    template <class F> void ForEachRow(F read)
    {
        if (!m_cursor || !m_cursor->First())
            return;
        do
            read();
        while (m_cursor->Next());
    }

    /// Leaves the text alone when the row has no such field.
    void Read(int column, QString& text) const
    {
        const auto field = nub::smart_ptr<nub::orbsql::I_Field>::adopt(m_cursor->get_Field(column));
        if (!field)
            return;
        text = KernelText::ToQString(field->get_String());
    }

private:
    nub::smart_ptr<I_DuckDBDatabase> m_engine;
    nub::smart_ptr<I_Cursor> m_cursor;
};

} // namespace

HF::LDatabaseKeywords FetchEngineKeywords()
{
    QStringList words;
    PrivateQuery query(EngineQueries::Keywords);
    query.ForEachRow([&] {
        QString word;
        query.Read(0, word);
        words.append(word);
    });
    return HF::LDatabaseKeywords(words);
}

HF::LSQLFunctions FetchEngineFunctions()
{
    HF::LSQLFunctions functions;
    PrivateQuery query(EngineVersionNumber() >= EngineQueries::FunctionExamplesSince
                           ? EngineQueries::FunctionsWithExamples
                           : EngineQueries::Functions);
    query.ForEachRow([&] {
        HF::LSQLFunction function;
        function.Parameters = QStringLiteral("args");
        query.Read(0, function.Name);
        query.Read(1, function.Parameters);
        query.Read(2, function.ReturnType);
        query.Read(3, function.Category);
        query.Read(4, function.Description);
        query.Read(5, function.Example);
        if (!function.Category.isEmpty())
            function.Category[0] = function.Category[0].toUpper();
        functions.Functions.insert(function.Name.toLower(), function);
    });
    functions.Keys.reserve(functions.Functions.size());
    for (auto it = functions.Functions.cbegin(); it != functions.Functions.cend(); ++it)
        functions.Keys.append(it.key());
    return functions;
}
