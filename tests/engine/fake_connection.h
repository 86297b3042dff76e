// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/engine.h"
#include "engine/engine_interfaces.h"

#include "hf/database.h"
#include "hf/recents.h"

/// A connection without databases that brings its own words.
class FakeConnection final : public HF::I_LConnection, public orb_I_EngineWords
{
public:
    HF::LLazy<HF::LDatabaseKeywords, false> keywords;
    HF::LLazy<HF::LSQLFunctions, false> functions;

    HF::LLazy<HF::LDatabaseKeywords, false> get_KeywordsLazy() const override { return keywords; }
    HF::LLazy<HF::LSQLFunctions, false> get_FunctionsLazy() const override { return functions; }

    const HF::LDatabaseEngine& get_Engine() const override { return orbDuckDB_Engine::Instance(); }
    HF::LLazy<bool, false> get_IsConnected() const override { return true; }
    int get_Capabilities() const override { return 0; }
    rc::Ref<HF::I_LConnectionHandler> get_ConnectionHandler() const override { throw std::logic_error("no handler"); }
    const HF::LConnectionParameters& get_ConnectionParameters() const override { return m_parameters; }
    QStringList get_FileExtensions() const override { return {}; }
    bool get_IsFileBased() const override { return true; }
    bool get_IsLocal() const override { return true; }
    QString get_LiteralQuote() const override { return QStringLiteral("'"); }
    rc::Ptr<HF::LRecentsList> get_RecentDatabases() const override { return nullptr; }
    HF::LLazy<int, false> get_Version() const override { return 0; }
    rc::Ptr<HF::I_LConnectionFactory> get_Factory() const override { return nullptr; }
    RcList<HF::I_LDatabase> get_Databases() const override { return {}; }
    rc::Ptr<HF::I_LDatabase> get_ActiveDatabase() const override { return nullptr; }
    void put_ActiveDatabase(const rc::Ptr<HF::I_LDatabase>&) override {}
    HF::LLazy<rc::Ptr<HF::I_LDatabase>, true> CreateDatabase(const QString&, const QHash<QString, QVariant>&) override
    {
        return {};
    }
    bool CanOpenPath(const QString&) const override { return false; }
    HF::LLazy<rc::Ptr<HF::I_LDatabase>, false> FindDatabase(const QString&) const override { return {}; }
    HF::LLazy<rc::Ptr<HF::I_LDatabase>, true> OpenDatabase(const QString&) override { return {}; }
    void Close() override {}

private:
    HF::LConnectionParameters m_parameters;
};
