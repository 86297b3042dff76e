// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"

namespace HF {

/// Base of tables: type, icon, the actions of a table. Icons of temporary
/// objects carry a clock.
class HF_EXPORT LTable : public LDatabaseObject<I_LTable>
{
public:
    int get_ObjectType() const override { return TYPE_TABLE; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    LLazy<QString, false> get_Tip() const override;
    rc::Ptr<LAction> get_Action(const QString& id) const override;
    LVariant ShowPropertyEditor(int id, QPoint at, bool modal) override;

    static rc::Ref<LAction> ActionOpenDataEditor();
    static rc::Ref<LAction> ActionDesign();
    static rc::Ref<LAction> ActionDuplicate();
    static rc::Ref<LAction> ActionDeleteAllRecords();
    static rc::Ref<LAction> ActionDumpCreate();
};

/// Base of views.
class HF_EXPORT LView : public LDatabaseObject<I_LView>
{
public:
    int get_ObjectType() const override { return TYPE_VIEW; }
    QString get_ObjectTypeName() const override;
    int get_DefaultChildListType() const override { return TYPE_FIELD; }
    QList<rc::Ptr<LAction>> get_ActionsForMenu() const override;

    static rc::Ref<LAction> ActionExecute();
    static rc::Ref<LAction> ActionDesign();
};

/// Base of indexes.
class HF_EXPORT LIndex : public LDatabaseObject<I_LSchemaObject>
{
public:
    int get_ObjectType() const override { return TYPE_INDEX; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    LLazy<QString, false> get_Info() const override;
    QList<rc::Ptr<LAction>> get_ActionsForMenu() const override;

    static rc::Ref<LAction> ActionDesign();
};

/// Base of unique constraints.
class HF_EXPORT LUnique : public LDatabaseObject<I_LSchemaObject>
{
public:
    int get_ObjectType() const override { return TYPE_UNIQUE; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    LLazy<QString, false> get_Info() const override;
    QList<rc::Ptr<LAction>> get_ActionsForMenu() const override;

    static rc::Ref<LAction> ActionDesign();
};

/// Base of check constraints.
class HF_EXPORT LCheck : public LDatabaseObject<I_LSchemaObject>
{
public:
    int get_ObjectType() const override { return TYPE_CHECK; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    LLazy<QString, false> get_Info() const override;
};

/// Base of foreign keys.
class HF_EXPORT LLink : public LDatabaseObject<I_LLink>
{
public:
    int get_ObjectType() const override { return TYPE_LINK; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    LLazy<QString, false> get_Info() const override;

    static rc::Ref<LAction> ActionDesign();
};

/// Base of functions and macros.
class HF_EXPORT LFunction : public LDatabaseObject<I_LSchemaObject>
{
public:
    int get_ObjectType() const override { return TYPE_FUNCTION; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    QList<rc::Ptr<LAction>> get_ActionsForMenu() const override;

    static rc::Ref<LAction> ActionOpenQueryEditor();
};

/// Base of sequences.
class HF_EXPORT LSequence : public LDatabaseObject<I_LSchemaObject>
{
public:
    int get_ObjectType() const override { return TYPE_SEQUENCE; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    QList<rc::Ptr<LAction>> get_ActionsForMenu() const override;

    static rc::Ref<LAction> ActionDesign();
};

/// An action that hands the objects to the program's editor of that kind (a
/// DO_... identifier); hidden in programs without windows.
HF_EXPORT rc::Ref<LAction> MakeEditorAction(const char* id, const QString& text, const QString& icon);

/// Shows a text of SQL, read-only and highlighted, in a modal dialog. Main thread.
HF_EXPORT void ShowSqlViewer(const QString& sql, const rc::Ptr<I_LDatabase>& database);

} // namespace HF
