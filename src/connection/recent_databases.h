// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection.h"
#include "hf/recents.h"
#include "hf/schema_item_list.h"

class orbDuckDB_LocalConnection;

/// Recently used DuckDB databases of a connection's workspace. An item's data is
/// its location; property 45 marks one that lives in the cloud. Main thread.
class orbDuckDB_RecentDatabases final : public HF::LRecentsListWithExamples
{
public:
    explicit orbDuckDB_RecentDatabases(const rc::Ref<orbDuckDB_LocalConnection>& connection);

    HF::LLazy<QString, false> get_Info() const override { return QString(); }
    HF::LLazy<QString, false> get_Tip() const override { return QString(); }
    QString GetItemIcon(const rc::Ref<const HF::LRecentItem>& item) const override;
    /// Opens the database of the item and shows it.
    void OpenItem(const rc::Ref<HF::LRecentItem>& item) override;
    void FromFile(const QString& path) override;

private:
    rc::Weak<orbDuckDB_LocalConnection> m_connection;
};
