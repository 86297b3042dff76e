// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "connection/connection_handler.h"
#include "engine/kernel_text.h"

#include "hf/database.h"
#include "hf/log.h"
#include "support/own_settings.h"

/// A settings store of the test's own, and database files beside it.
class Place : public support::OwnSettings
{
protected:
    /// An empty database file, closed.
    QString MakeDatabase(const QString& name) const
    {
        const auto engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(Path(name)));
        engine->Create();
        engine->SqlExecute(u"CREATE TABLE made(i INTEGER)", {});
        engine->Close();
        return Path(name);
    }
    QString WriteFile(const QString& name, const QByteArray& bytes) const
    {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return Path(name);
    }

    static HF::LConnectionParameters At(const QString& location, const QString& workspace = {})
    {
        HF::LConnectionParameters parameters;
        parameters.Location = location;
        parameters.WorkspaceId = workspace;
        return parameters;
    }
    /// A handler after an Open that is expected to go well.
    static rc::Ref<orbDuckDB_LocalConnectionHandler> Opened(const HF::LConnectionParameters& parameters)
    {
        const auto handler = rc::make<orbDuckDB_LocalConnectionHandler>();
        EXPECT_TRUE(handler->Open(parameters).Force()) << handler->GetLastError().toStdString();
        return handler;
    }
    /// First field of the first row, "" for a null.
    static QString Ask(const nub::smart_ptr<nub::orbsql::I_DuckDBDatabase>& engine, const char* query)
    {
        const auto cursor =
            nub::smart_ptr<nub::orbsql::I_Cursor>::adopt(engine->SqlSelect(nub::String::FromUtf8(query), 1, {}));
        if (!cursor || !cursor->First())
            return QStringLiteral("no row");
        const auto field = nub::smart_ptr<nub::orbsql::I_Field>::adopt(cursor->get_Field(0));
        return field ? KernelText::ToQString(field->get_String()) : QString();
    }
    /// Runs the test's function in the place of scripts, until the end of the scope.
    struct Scripts
    {
        explicit Scripts(HF::LScriptRunner runner) { HF::SetScriptRunner(std::move(runner)); }
        ~Scripts() { HF::SetScriptRunner({}); }
    };
    QString MakeScript() const
    {
        QFile file(Path("script"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }

    static bool IsOpenHere(const QString& path) { return nub::orbsql::IsFileOpen(KernelText::FromQString(path)); }
    static QString LastLoggedError()
    {
        const std::vector<QString> entries = HF::ErrorLogEntries();
        return entries.empty() ? QString() : entries.back();
    }
};
