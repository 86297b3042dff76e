// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/view.h"

#include "catalog/list_infos.h"
#include "data/table_cursor.h"

rc::Ref<HF::I_LSchemaObject> MakeView(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    const auto view = rc::make<orbDuckDB_View>(owner, name);
    view->AddChildList(rc::make<HF::LSchemaItemList>(ListInfos::FieldsOfView, rc::Ref<HF::I_LSchemaObject>(view)));
    return view;
}

orbDuckDB_View::orbDuckDB_View(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

HF::LLazy<bool, true> orbDuckDB_View::ApplyPropertyValue(int id, const HF::LVariant& value)
{
    const HF::LLazy<bool, true> applied = LDatabaseObject_Impl::ApplyPropertyValue(id, value);
    if (id != PROP_DEFINITION && id != PROP_NAME)
        return applied;
    // A changed text or name may have changed the columns.
    auto rebuild = [weak = rc::Weak<orbDuckDB_View>(this)](bool done) {
        if (done)
            if (const auto view = weak.lock())
                view->UpdateChildObjects(HF::TYPE_FIELD);
        return done;
    };
    if (applied.IsResolved())
        return rebuild(applied.Force());
    return applied.Map(rebuild);
}

rc::Ptr<HF::LAction> orbDuckDB_View::get_DefaultAction() const
{
    return ActionExecute();
}

HF::LLazy<QString, false> orbDuckDB_View::get_Icon() const
{
    return GetBool(PROP_TEMPORARY) ? QStringLiteral(":/weft/icons/view.svg\n:/icons/sign-clock.svg")
                                   : QStringLiteral(":/weft/icons/view.svg");
}

void orbDuckDB_View::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    ReadProperty(cursor, PROP_OBJECT_ID, "view_oid");
    ReadProperty(cursor, PROP_SCHEMA_NAME, "schema_name");
    ReadProperty(cursor, PROP_DEFINITION, "sql");
    ReadProperty(cursor, PROP_COMMENT, "comment");
    ReadProperty(cursor, PROP_TEMPORARY, "temporary");
}

rc::Ptr<HF::I_LTableCursor> orbDuckDB_View::OpenCursor(int mode, bool, bool lazy, bool)
{
    return orbDuckDB_TableCursor::Make(rc::self<HF::I_LSchemaObject>(this), mode, false, lazy, true);
}
