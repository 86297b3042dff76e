// SPDX-License-Identifier: GPL-3.0-or-later
// Ties what connections have to make to the folders that stand above them.
#include "connection/makers.h"

#include "catalog/database.h"
#include "dialogs/create_database_dialog.h"
#include "dump/load_options_widget.h"

namespace {

rc::Ref<HF::LDatabase> MakeDatabase(const rc::Ref<HF::I_LConnection>& connection,
                                    const orbDuckDB_Makers::Engine& engine,
                                    const HF::LLazy<orbDuckDB_Makers::Engine, false>& handle, int storageKind,
                                    const QString& path)
{
    return rc::make<orbDuckDB_Database>(connection, engine, handle, storageKind, path);
}

const bool Registered = [] {
    Makers().database = MakeDatabase;
    return true;
}();

} // namespace
