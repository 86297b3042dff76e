// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/field.h"
#include "nub/orbsql/duckdb_database.h"

#include <functional>

/// Rows of one result, all in memory: the constructor reads them to the end, and
/// from then on the cursor is an index into the values of its columns. Made on
/// the thread that ran the query; afterwards used by one thread at a time.
class orbDuckDB_Cursor : public HF::LCursor
{
public:
    /// Takes over the kernel's cursor; null gives no columns and no rows. A
    /// failure while reading goes to the error log, keeps the rows so far and
    /// leaves the cursor without a connection.
    static rc::Ref<orbDuckDB_Cursor> Make(const QString& queryText, const rc::Ptr<HF::I_LConnection>& connection,
                                          nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor);
    /// The same with the database as parent object. Main thread.
    static rc::Ref<orbDuckDB_Cursor> Make(const QString& queryText, const rc::Ptr<HF::I_LConnection>& connection,
                                          const rc::Ref<HF::I_LDatabase>& source,
                                          nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor);
    ~orbDuckDB_Cursor() override;

    HF::LLazy<int, false> get_FieldCount() const override { return static_cast<int>(m_columns.size()); }
    rc::Ptr<HF::I_LField> get_Field(int index) const override;
    /// The first of that name, as the engine compares names.
    rc::Ptr<HF::I_LField> get_Field(const QString& name) const override;
    void Flush() override {}
    unsigned long get_Position() const override { return *m_position; }
    /// Unchecked: past the end the columns read as empty.
    HF::LLazy<bool, true> put_Position(unsigned long position) override;
    HF::LLazy<bool, false> get_IsReadOnly() const override { return m_readOnly; }
    void put_IsReadOnly(bool readOnly) override { m_readOnly = m_readOnlyDefault = readOnly; }
    HF::LLazy<unsigned long, false> get_RecordCount() const override { return m_recordCount; }
    void DiscardChanges() override;
    bool FirstRecord() const override;
    bool NextRecord() const override;
    QString UpdateRecord() override;
    bool get_IsDirty() const override;
    bool get_IsComplete() const override { return true; }
    void SaveAllRecords() override;

    const RcList<orbDuckDB_Field>& get_Columns() const { return m_columns; }

protected:
    orbDuckDB_Cursor(const QString& queryText, const rc::Ptr<HF::I_LConnection>& connection,
                     nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor);
    orbDuckDB_Cursor(const QString& queryText, const rc::Ptr<HF::I_LConnection>& connection,
                     const rc::Ref<HF::I_LDatabase>& source, nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor);

private:
    using Columns = QList<orbDuckDB_Field*>;
    struct Update;

    void Read();
    void BuildColumns();
    void ReadRows();
    rc::Ptr<HF::I_LTable> SourceTable(const rc::Ptr<HF::I_LDatabase>& database, const QString& name) const;
    void StartUpdate(Update& update, const HF::I_LTable& table, const Columns& columns, unsigned long row) const;
    void AddCondition(Update& update, const HF::I_LTable& table, const Columns& columns, unsigned long row) const;
    void FinishRow(const HF::I_LTable& table, const Columns& columns, unsigned long row);
    QString Diagnostic(const Update& update, const QString& errors) const;

    nub::smart_ptr<nub::orbsql::I_Cursor> m_kernelCursor;
    std::shared_ptr<unsigned long> m_position = std::make_shared<unsigned long>(0);
    unsigned long m_recordCount = 0;
    RcList<orbDuckDB_Field> m_columns;
    bool m_readOnly = true;
    bool m_readOnlyDefault = true;
};
