// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/engine.h"

#include "engine/engine_interfaces.h"
#include "engine/field_types.h"
#include "engine/model_registry.h"
#include "engine/sql_templates.h"
#include "engine/word_lists.h"

#include "hf/connection.h"
#include "hf/database.h"
#include "hf/property_id.h"

namespace {

/// The name holds nothing that DuckDB would not take in a bare word.
bool IsBareWord(const QString& name)
{
    for (const QChar unit : name) {
        const char16_t code = unit.unicode();
        const bool good = code < 128 ? (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z')
                                           || (code >= u'0' && code <= u'9') || code == u'#' || code == u'$'
                                           || code == u'.' || code == u'_'
                                     : unit.isLetter() || unit.isNumber();
        if (!good)
            return false;
    }
    return true;
}

const orb_I_EngineWords* WordsOf(const rc::Ptr<HF::I_LConnection>& connection)
{
    return dynamic_cast<const orb_I_EngineWords*>(connection.get());
}

} // namespace

orbDuckDB_Engine::orbDuckDB_Engine()
{
    RegisterFieldTypes(DuckDBFieldTypes());
}

const orbDuckDB_Engine& orbDuckDB_Engine::Instance()
{
    static const orbDuckDB_Engine engine;
    return engine;
}

QStringList orbDuckDB_Engine::GetAggregateFunctions() const
{
    return DuckDBAggregateFunctions();
}

QString orbDuckDB_Engine::GetBindPlaceholder(int index) const
{
    return u'$' + QString::number(index + 1);
}

QStringList orbDuckDB_Engine::GetSearchPath(const rc::Ptr<HF::I_LDatabase>& database) const
{
    auto* const cache = dynamic_cast<orb_I_SearchPathCache*>(database.get());
    if (!cache)
        return {};
    if (const std::optional<QStringList> known = cache->get_SearchPathCache())
        return *known;
    QStringList names = database->GetStringList(PROP_SEARCH_PATH);
    for (const char* always : {"main", "pg_catalog"})
        if (!names.contains(QLatin1String(always)))
            names.append(QLatin1String(always));
    cache->put_SearchPathCache(names);
    return names;
}

HF::LLazy<HF::LSQLFunctions, false> orbDuckDB_Engine::GetFunctions(const rc::Ptr<HF::I_LConnection>& connection) const
{
    const orb_I_EngineWords* words = WordsOf(connection);
    return words ? words->get_FunctionsLazy() : HF::LLazy<HF::LSQLFunctions, false>();
}

HF::LLazy<HF::LDatabaseKeywords, false>
orbDuckDB_Engine::GetKeywords(const rc::Ptr<HF::I_LConnection>& connection) const
{
    const orb_I_EngineWords* words = WordsOf(connection);
    return words ? words->get_KeywordsLazy() : HF::LLazy<HF::LDatabaseKeywords, false>();
}

QStringList orbDuckDB_Engine::GetStatementKeywords(bool sorted) const
{
    return DuckDBStatementKeywords(sorted);
}

QStringList orbDuckDB_Engine::GetFollowingKeywords(int keyword) const
{
    return DuckDBFollowingKeywords(keyword);
}

QList<HF::LSqlTemplate> orbDuckDB_Engine::GetSqlTemplates() const
{
    return DuckDBSqlTemplates();
}

HF::LLazy<bool, false> orbDuckDB_Engine::IsNeedQuote(const QString& name,
                                                     const rc::Ptr<HF::I_LConnection>& connection) const
{
    if (!IsBareWord(name) || !connection)
        return true;
    const HF::LLazy<HF::LDatabaseKeywords, false> keywords = GetKeywords(connection);
    if (keywords.IsResolved())
        return keywords.Force().Contains(name);
    return keywords.Map([name](const HF::LDatabaseKeywords& words) { return words.Contains(name); });
}

HF::I_LDatabaseModel* orbDuckDB_Engine::GetModel(HF::ELObjectType type) const
{
    HF::I_LDatabaseModel* const model = RegisteredModel(type);
    return model ? model : DummyModel();
}
