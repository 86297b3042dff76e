// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/plugin.h"

#include "connection/connection_prefs_widget.h"
#include "connection/local_connection.h"

#include "hf/app_controller.h"
#include "hf/database.h"
#include "hf/services.h"

QString orbDuckDB_Plugin::get_Name() const
{
    return QObject::tr("DuckDB Files");
}

QPointer<QWidget> orbDuckDB_Plugin::CreatePreferencesWidget(QPointer<QWidget> parent)
{
    const rc::Ptr<HF::I_LSchemaObject> found =
        HF::AppCtrlInstance().FindConnection(HF::FACTORY_DUCKDB, HF::GetActiveWorkspaceID());
    const auto connection = rc::cast<orbDuckDB_LocalConnection>(found);
    if (!connection)
        return nullptr;
    return new orbDuckDB_LocalConnectionPrefsWidget(rc::Ref(connection), parent);
}

RcList<HF::I_LConnectionFactory> orbDuckDB_Plugin::GetConnectionFactories()
{
    return {ConnectionFactoryInstance()};
}
