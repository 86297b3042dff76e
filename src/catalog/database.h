// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalog/dumpable_database.h"
#include "engine/engine_interfaces.h"
#include "hf/catalog_warmer.h"
#include "hf/database.h"
#include "nub/orbsql/duckdb_database.h"

#include <thread>

/// One open DuckDB database: owner of the engine handle, root of the catalogue.
/// The engine may still be opening in the background; a handle that resolves to
/// null means that the open failed.
class orbDuckDB_Database : public HF::LDatabase,
                           public orb_I_DumpableDatabase,
                           public orb_I_SearchPathCache,
                           public HF::I_LCatalogWarmer
{
public:
    using Engine = nub::smart_ptr<nub::orbsql::I_DuckDBDatabase>;
    using EngineLazy = HF::LLazy<Engine, false>;
    enum StorageKind { OnDisk = 0, InMemory = 1, Transient = 2 };

    /// `engine` may be null while the handle is not resolved. A path in memory makes the
    /// storage kind InMemory whatever is given.
    orbDuckDB_Database(const rc::Ref<HF::I_LConnection>& connection, const Engine& engine, const EngineLazy& handle,
                       int storageKind, const QString& path);
    ~orbDuckDB_Database() override;

    void NotifyPropertyChanged(int id) override;
    HF::LLazy<bool, true> ApplyPropertyValue(int id, const HF::LVariant& value) override;
    HF::LLazy<bool, true> UpdatePropertyImpl(int id) override;
    /// The backup action takes the folder as its argument and asks for one when that is empty.
    rc::Ptr<HF::LAction> get_Action(const QString& id) const override;
    QList<rc::Ptr<HF::LAction>> get_ActionsForMenu() const override;
    HF::LLazy<QString, false> get_Icon() const override;
    HF::LLazy<RcList<HF::I_LSchemaObject>, true> CreateChildObjectDialog(HF::ELObjectType type) override;
    bool get_IsLocal() const override { return true; }
    HF::LLazy<bool, true> get_IsReadOnly() const override;
    HF::LLazy<bool, true> Open() override;
    HF::LLazy<bool, true> Close() override;
    HF::LLazy<void, true> Flush() override;
    HF::LLazy<bool, true> ThrowOut() override;
    rc::Ref<HF::I_LSqlQuery> MakeSqlQuery() override;
    rc::Ptr<HF::LTask> LoadDump(const QString& path, const QString& encoding, QPointer<QWidget> page,
                                HF::LLoadProgress progress) override;
    rc::Ptr<HF::LTask> MakeDump(const QString& path, int kind, HF::ELDumpData data, const QString& encoding,
                                QPointer<QWidget> page, const RcList<HF::LTreeItem>& selection,
                                HF::LDumpProgress progress) override;
    void UpdateDefaultSchemasAction(QAction& action) override;
    QPointer<QWidget> CreateDumpOptionsWidget(int kind) override;
    QPointer<QWidget> CreateMakeDumpPage(int kind) override { return CreateDumpOptionsWidget(kind); }
    QPointer<QWidget> CreateLoadDumpPage(int kind) override;
    std::optional<QStringList> get_SearchPathCache() const override;
    void put_SearchPathCache(const std::optional<QStringList>& names) override;
    /// The engine binds its system views when the columns are first asked for.
    void WarmCatalog() override;

    bool CanBeOpenedAgain() const override;
    /// Once more along all schemas, when the engine lists no constraint at all because the check of
    /// one names a type or macro of its own schema.
    rc::Ptr<HF::I_LCursor> SelectCatalog(const QString& text) override;
    QString get_CatalogName() const override;

    int get_StorageKind() const { return m_storageKind; }
    /// The same database on a session of its own, apart from the tree, with default
    /// settings, names looked up where this session looks. Null when it is not open;
    /// throws the engine's exception. Ends with EndFurther.
    rc::Ptr<orbDuckDB_Database> OpenFurther();
    void EndFurther();
    /// The rows of a query as literals; throws the engine's exception.
    nub::smart_ptr<nub::orbsql::I_LiteralRows> SelectLiterals(const QString& query,
                                                              const std::function<bool(char32_t)>& canWrite);
    /// Ends the statement that runs on the session.
    void InterruptSession();
    /// Copies the database into the folder; a failure goes to the error log.
    bool Backup(const QString& folder);

protected:
    HF::LLazy<QList<HF::LIdent>, false> FetchIdents() override;
    HF::LLazy<QList<HF::LIdent>, false> FetchSystemIdents() override;

private:
    bool CloseNow();
    bool ThrowOutNow();
    RcList<HF::I_LSchemaObject> CreateSchema();
    void ApplyDefaultSchemas(const QStringList& names);
    void LeaveParent();
    void EndWarming();

    EngineLazy m_engine; ///< first member: released last
    HF::LLazy<void, true> m_flushTask;
    std::mutex m_flushMutex;
    int m_storageKind;
    std::mutex m_warmerMutex;
    std::thread m_warmer;
    bool m_isWarm = false;
    mutable std::mutex m_catalogMutex;
    mutable QString m_catalogName; ///< empty: not read yet
    mutable std::mutex m_searchPathMutex;
    std::optional<QStringList> m_searchPathCache;
};
