// SPDX-License-Identifier: GPL-3.0-or-later
// Ties what lower folders have to make to the folders that stand above them.
#include "catalog/database.h"
#include "catalog/makers.h"
#include "connection/makers.h"
#include "data/structure_makers.h"
#include "dialogs/create_database_dialog.h"
#include "dialogs/create_function_dialog.h"
#include "dump/dump_options_widget.h"
#include "dump/load_dump_options_widget.h"
#include "dump/task_make_dump.h"
#include "hf/task_load_dump.h"
#include "model/interactive_changes.h"

namespace {

rc::Ref<HF::LDatabase> MakeDatabase(const rc::Ref<HF::I_LConnection>& connection,
                                    const orbDuckDB_Makers::Engine& engine,
                                    const HF::LLazy<orbDuckDB_Makers::Engine, false>& handle, int storageKind,
                                    const QString& path)
{
    return rc::make<orbDuckDB_Database>(connection, engine, handle, storageKind, path);
}

rc::Ptr<HF::I_LDatabase> RunCreateDatabaseDialog(const rc::Ref<HF::I_LConnection>& connection)
{
    orbDuckDB_DialogCreateDatabase dialog(connection);
    return dialog.exec() == QDialog::Accepted ? dialog.get_CreatedDatabase() : rc::Ptr<HF::I_LDatabase>();
}

RcList<HF::I_LSchemaObject> RunCreateFunctionDialog(const rc::Ref<HF::I_LSchema>& schema)
{
    const rc::Ptr<HF::I_LDatabase> database = schema->get_Database();
    if (!database)
        return {};
    orbDuckDB_DialogCreateFunction dialog(rc::Ref<HF::I_LDatabase>(database), schema->get_Name());
    return dialog.exec() == QDialog::Accepted ? dialog.get_Created() : RcList<HF::I_LSchemaObject>();
}

template <class Page>
QPointer<QWidget> MakePage()
{
    return new Page();
}

bool ReadDumpOptions(QWidget& page, HF::LSQLDumpOptions& options)
{
    const auto* const known = qobject_cast<orbDuckDB_DumpOptionsWidget*>(&page);
    if (known)
        options = known->get_Options();
    return known != nullptr;
}

bool ReadLoadOptions(QWidget& page, orbDuckDB_LoadOptions& options)
{
    const auto* const known = qobject_cast<orbDuckDB_LoadDumpOptionsWidget_SQL*>(&page);
    if (known)
        options = {known->get_MultipleStatements(), known->get_StopOnError()};
    return known != nullptr;
}

rc::Ptr<HF::LTask> MakeDumpTask(const orbDuckDB_DumpRequest& request)
{
    return rc::make<orbDuckDB_TaskMakeDump>(request);
}

rc::Ptr<HF::LTask> MakeLoadTask(const rc::Ref<HF::I_LDatabase>& database, const QString& path, const QString& encoding,
                                const orbDuckDB_LoadOptions& options, const HF::LLoadProgress& progress)
{
    return rc::make<HF::LTask_LoadDumpSQL>(database, path, encoding, options.multipleStatements, options.stopOnError,
                                           progress);
}

const bool Registered = [] {
    Makers().database = MakeDatabase;
    Makers().createDatabaseDialog = RunCreateDatabaseDialog;
    Makers().loadDumpOptions = MakePage<orbDuckDB_LoadDumpOptionsWidget_SQL>;
    CatalogMakers().dumpOptions = MakePage<orbDuckDB_DumpOptionsWidget>;
    CatalogMakers().readDumpOptions = ReadDumpOptions;
    CatalogMakers().readLoadOptions = ReadLoadOptions;
    CatalogMakers().dumpTask = MakeDumpTask;
    CatalogMakers().loadTask = MakeLoadTask;
    CatalogMakers().createFunctionDialog = RunCreateFunctionDialog;
    StructureMakers().uniqueScript = UniqueFieldScript;
    StructureMakers().dropFields = DropFields;
    return true;
}();

} // namespace
