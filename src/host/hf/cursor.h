// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

#include <functional>

namespace HF {

/// Where a cursor reports what went wrong with edits.
class HF_EXPORT I_LLog : public rc::RefCounted
{
public:
    /// Level 4 is an error, 512 a note.
    virtual void Log(int level, const QString& text) = 0;
};

/// Rows with a position. Columns read the row at the position.
class HF_EXPORT I_LCursor : public I_LSchemaObject
{
public:
    virtual LLazy<int, false> get_FieldCount() const = 0;
    virtual rc::Ptr<I_LField> get_Field(int index) const = 0;
    virtual rc::Ptr<I_LField> get_Field(const QString& name) const = 0;
    virtual void Flush() = 0;
    virtual LLazy<int, false> get_ColumnCount() const = 0;
    virtual rc::Ptr<I_LField> get_Column(int index) const = 0;
    virtual rc::Ptr<I_LField> get_Column(const QString& name) const = 0;
    virtual unsigned long get_Position() const = 0;
    virtual LLazy<bool, true> put_Position(unsigned long position) = 0;
    virtual LLazy<bool, false> get_IsReadOnly() const = 0;
    virtual void put_IsReadOnly(bool readOnly) = 0;
    virtual LLazy<unsigned long, false> get_RecordCount() const = 0;
    virtual void DiscardChanges() = 0;
    /// Moving the position is not a change of the result, so a reader that holds
    /// a const cursor moves it too.
    virtual bool FirstRecord() const = 0;
    virtual bool NextRecord() const = 0;
    /// Writes the edits of the current row: an error text, empty on success.
    virtual QString UpdateRecord() = 0;
    virtual bool get_IsDirty() const = 0;
    virtual bool get_IsComplete() const = 0;
    virtual QString get_QueryText() const = 0;
    virtual void SetErrorLogger(const rc::Ptr<I_LLog>& log) = 0;
    virtual void SaveAllRecords() = 0;
    virtual void SetSourceDatabase(const rc::Ref<I_LDatabase>& database) = 0;
};

/// Base of cursors: the query text as name, columns by position and name, the
/// database from the parent object.
class HF_EXPORT LCursor : public LDatabaseObject<I_LCursor>
{
public:
    LCursor(const QString& queryText, const rc::Ptr<I_LConnection>& connection);
    ~LCursor() override;

    int get_ObjectType() const override { return TYPE_CURSOR; }
    rc::Ptr<I_LConnection> get_Connection() const override;
    rc::Ptr<I_LDatabase> get_Database() const override;
    LLazy<int, false> get_ColumnCount() const override { return get_FieldCount(); }
    rc::Ptr<I_LField> get_Column(int index) const override { return get_Field(index); }
    rc::Ptr<I_LField> get_Column(const QString& name) const override { return get_Field(name); }
    QString get_QueryText() const override { return get_Name(); }
    void SetErrorLogger(const rc::Ptr<I_LLog>& log) override { ErrorLogger = log; }
    /// Also makes the database the parent object.
    void SetSourceDatabase(const rc::Ref<I_LDatabase>& database) override;

protected:
    rc::Ptr<I_LConnection> Connection;
    rc::Ptr<I_LLog> ErrorLogger;

private:
    rc::Weak<I_LDatabase> m_database;
};

/// Base of columns.
class HF_EXPORT LField : public LDatabaseObject<I_LField>
{
public:
    /// `owner` becomes the parent object; held weakly when it is a cursor.
    LField(const rc::Ptr<I_LSchemaObject>& owner, const QString& name);
    int get_ObjectType() const override { return TYPE_FIELD; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
};

} // namespace HF
