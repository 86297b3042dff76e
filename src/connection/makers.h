// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "nub/orbsql/duckdb_database.h"

#include <QPointer>
#include <QWidget>

/// What a connection has to make of folders that stand above it. The plug-in
/// sets it while it loads; it does not change afterwards.
struct orbDuckDB_Makers
{
    using Engine = nub::smart_ptr<nub::orbsql::I_DuckDBDatabase>;

    /// The database of an engine. Storage kind: 0 on disk, 1 in memory, 2 any
    /// other that is not kept after closing.
    rc::Ref<HF::LDatabase> (*database)(const rc::Ref<HF::I_LConnection>& connection, const Engine& engine,
                                       const HF::LLazy<Engine, false>& handle, int storageKind,
                                       const QString& path) = nullptr;
    /// Runs the dialog that creates a database; null when it was cancelled. Main thread.
    rc::Ptr<HF::I_LDatabase> (*createDatabaseDialog)(const rc::Ref<HF::I_LConnection>& connection) = nullptr;
    /// The options page of loading an SQL dump, owned by its later parent.
    QPointer<QWidget> (*loadDumpOptions)() = nullptr;
};

orbDuckDB_Makers& Makers();
