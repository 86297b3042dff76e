// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database_object.h"
#include "hf/ident.h"
#include "hf/sql_value.h"

namespace HF {

class I_LTableCursor;

/// Pseudo-properties answered by I_LSchemaObject::Evaluate.
enum ELEvaluate : int { EVAL_MARKED_DROPPED = 301, EVAL_JUST_CREATED = 302, EVAL_EXISTS = 303 };

/// An object of a database's catalogue.
class HF_EXPORT I_LSchemaObject : public LDatabaseObject_Impl
{
public:
    /// Rebuilds a child list from the main loop.
    void UpdateChildObjectsLater(int type);
    virtual LLazy<RcList<I_LSchemaObject>, true> CreateChildObjectDialog(ELObjectType type);
    /// The object that an identifier below this one names.
    virtual rc::Ptr<I_LSchemaObject> ResolveIdent(const LIdent& ident) const;
    /// State in a pending edit; an object of the catalogue exists and nothing else.
    virtual LVariant Evaluate(int what) const;
    virtual bool get_IsSystem() const { return false; }
    /// A cursor over the rows of a table or view, with its keys, columns and, unless
    /// `lazy`, its first window read. `mode` is kept for whoever asks. Main thread.
    /// Null for objects without rows.
    virtual rc::Ptr<I_LTableCursor> OpenCursor(int mode, bool rowIdWanted, bool lazy, bool readOnly);
};

class I_LTable;

/// A schema, or a database seen as one.
class HF_EXPORT I_LSchema : public I_LSchemaObject
{
public:
    virtual rc::Ptr<I_LTable> get_Table(const QString& name) const;
    virtual RcList<I_LTable> get_Tables() const;
};

/// Objects whose children may belong to another parent.
class HF_EXPORT I_LObjectWithForeignChildren
{
public:
    virtual ~I_LObjectWithForeignChildren() = default;
    virtual bool IsForeignChild(const rc::Ref<const LTreeItem>& child) const = 0;
};

/// A column, of a table, view or cursor.
class HF_EXPORT I_LField : public I_LSchemaObject
{
public:
    virtual rc::Ptr<I_LSqlValue> get_DefaultValue() const = 0;
    virtual LLazy<ELFieldType, false> get_Type() const = 0;
    virtual LLazy<bool, false> IsPK() const = 0;
    virtual LLazy<bool, false> get_IsEncrypted() const = 0;

    // The value at the position of the owner.
    virtual bool get_IsDirty() const = 0;
    virtual bool get_IsNull() const = 0;
    virtual void SetNull() = 0;
    virtual bool get_IsReadOnly() const = 0;
    /// At most `maxLength` UTF-16 units; -1 for all.
    virtual QString get_String(long maxLength = -1) const = 0;
    virtual void SetString(const QString& text) = 0;
    virtual int Compare(const I_LField& other) const = 0;
    virtual rc::Ptr<I_LSqlValue> get_Value(long maxLength = -1) const = 0;
    virtual void SetValue(const rc::Ptr<I_LSqlValue>& value) = 0;
    virtual long get_Length() const = 0;
    virtual QByteArray get_Data(long maxLength = -1) const = 0;
    virtual void SetData(const QByteArray& data) = 0;
    virtual void Revert() = 0;
    virtual rc::Ptr<I_LSchemaObject> get_Owner() const = 0;
};

/// A table; also the face of views and cursors as sources of rows.
class HF_EXPORT I_LTable : public I_LSchemaObject
{
public:
    /// Fields and generated columns.
    virtual LLazy<int, false> get_FieldCount() const = 0;
    virtual rc::Ptr<I_LField> get_Field(int index) const = 0;
    virtual rc::Ptr<I_LField> get_Field(const QString& name) const = 0;
    virtual rc::Ptr<I_LSchema> get_Schema() const = 0;
};

class HF_EXPORT I_LView : public I_LSchemaObject
{
};

/// A foreign key.
class HF_EXPORT I_LLink : public I_LSchemaObject
{
public:
    virtual int get_DeleteRule() const = 0;
    virtual int get_UpdateRule() const = 0;
    virtual rc::Ptr<I_LSchema> get_Schema() const = 0;
    /// Side 1 is the referenced table, any other the referencing one.
    virtual rc::Ptr<I_LTable> get_Table(int side) const = 0;
};

/// Ties an interface to the implementation in LDatabaseObject_Impl.
template <class I>
class LDatabaseObject : public I
{
};

} // namespace HF
