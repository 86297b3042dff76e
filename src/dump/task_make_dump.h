// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalog/database.h"
#include "catalog/makers.h"
#include "dump/dump_order.h"
#include "hf/task_dump_tables.h"
#include "model/sql_tokens.h"

/// Web page of this program, which the header of each dump names.
inline constexpr char DumpHomepage[] = "https://orbis-duckdb.example";

/// Writes a database, or what was picked of it, to one SQL text. All of it is one
/// state of the database: the task reads through a session and a transaction of
/// its own, unless temporary tables are asked for, which only their session sees.
class orbDuckDB_TaskMakeDump final : public HF::LTask_DumpTablesToSQL
{
public:
    explicit orbDuckDB_TaskMakeDump(const orbDuckDB_DumpRequest& request);
    ~orbDuckDB_TaskMakeDump() override;

    void Cancel() override;

protected:
    void Perform() override;
    QString FormatBlobValue(const rc::Ref<HF::LValue>& value) override;
    LiteralRows OpenRows(const QString& query, const std::function<bool(char32_t)>& canWrite) override;
    HF::LRowsQuery MakeRowsQuery(const rc::Ref<HF::I_LTable>& table, const QList<QString>& fields) override;
    HF::LInsertWords MakeInsertWords(const rc::Ref<HF::I_LTable>& table) override;

private:
    bool HasStructure() const { return Data == HF::DUMP_STRUCTURE || Data == HF::DUMP_BOTH; }
    bool HasRows() const { return Data == HF::DUMP_DATA || Data == HF::DUMP_BOTH; }
    bool OpenSource();
    void CloseSource();
    void WriteDump();
    bool GatherSchemas();
    bool GatherTables();
    void GatherObjects();
    void GatherNames();
    QString WithoutOwnName(const QString& text) const;
    QString WithColumnNames(QString text, HF::I_LSchemaObject& view) const;
    QString Cascade() const;
    /// Throws when a list cannot be read.
    void NeedLists(HF::I_LSchemaObject& object, std::initializer_list<HF::ELObjectType> types) const;
    void CountRows();
    void AddTable(const rc::Ref<HF::I_LTable>& table);
    void AddMacros(const rc::Ref<HF::I_LSchemaObject>& schema);
    void WriteHeader();
    void WriteDrops();
    void WriteSchemas();
    void WriteTypes(bool drop);
    void WriteSequences();
    void WriteObjects();
    void WriteColumnComments(const orbDuckDB_DumpObject& view);
    void WriteRows();
    void WriteIndexes();
    void Write(QString text);
    void Write(const rc::Ref<HF::I_LSchemaObject>& object, HF::ELQueryKind kind);
    void UsePath(const QString& schema, const QString& text);
    QString PlainPath();

    const rc::Ref<orbDuckDB_Database> m_database; ///< the one of the tree
    const int Scope;
    const RcList<HF::I_LSchemaObject> m_askedSchemas;
    QMap<QString, QStringList> SelectedNames; ///< tables by schema
    bool m_hasTemporary = false;

    std::mutex m_sourceMutex; ///< between Cancel and the end of the source
    rc::Ptr<orbDuckDB_Database> m_source; ///< what is read
    bool m_ownTransaction = false;
    RcList<HF::I_LSchemaObject> Schemas;
    QList<orbDuckDB_DumpObject> m_objects; ///< tables, views and macros in the order of their making
    SqlTokens::Objects m_names; ///< of all that the database holds
    QString m_ownName; ///< of the database, as a catalogue
    SqlTokens::OtherBearer m_otherBearer = SqlTokens::OtherBearer::None; ///< of that name
    QHash<QString, QString> m_texts; ///< of tables, by schema and name
    QString m_path;
};
