// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <QMap>
#include <QPointer>
#include <QWidget>

/// What a dump is asked to hold.
struct orbDuckDB_DumpRequest
{
    enum Scope { WholeDatabase = 0, GivenSchemas = 1, TablesOnly = 2 };

    rc::Ref<HF::I_LDatabase> database;
    QString path;
    HF::ELDumpData data;
    QString encoding;
    HF::LSQLDumpOptions options;
    HF::LDumpProgress progress;
    QString title;
    int scope = WholeDatabase;
    RcList<HF::I_LSchemaObject> schemas; ///< empty with TablesOnly
    RcList<HF::I_LTable> tables;         ///< all that are picked, sorted by schema and name
    QMap<QString, QStringList> names;    ///< the same by name of schema, sorted
};

/// The two check boxes of the page with the options of loading.
struct orbDuckDB_LoadOptions
{
    bool multipleStatements = true;
    bool stopOnError = false;
};

/// What the catalogue has to make of folders that stand above it. The plug-in
/// sets it while it loads; it does not change afterwards. A null pointer stands
/// for "there is none".
struct orbDuckDB_CatalogMakers
{
    /// The options page of making an SQL dump, owned by its later parent.
    QPointer<QWidget> (*dumpOptions)() = nullptr;
    /// Reads such a page; false when the widget is another.
    bool (*readDumpOptions)(QWidget& page, HF::LSQLDumpOptions& options) = nullptr;
    bool (*readLoadOptions)(QWidget& page, orbDuckDB_LoadOptions& options) = nullptr;
    rc::Ptr<HF::LTask> (*dumpTask)(const orbDuckDB_DumpRequest& request) = nullptr;
    rc::Ptr<HF::LTask> (*loadTask)(const rc::Ref<HF::I_LDatabase>& database, const QString& path,
                                   const QString& encoding, const orbDuckDB_LoadOptions& options,
                                   const HF::LLoadProgress& progress) = nullptr;
    /// Runs the dialog that creates functions; what it made. Main thread.
    RcList<HF::I_LSchemaObject> (*createFunctionDialog)(const rc::Ref<HF::I_LSchema>& schema) = nullptr;
};

orbDuckDB_CatalogMakers& CatalogMakers();
