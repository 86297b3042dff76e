// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/schema_object.h"

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/schema_item_list.h"
#include "hf/table_cursor.h"

namespace HF {

namespace {

/// Lists in which an object of a kind of identifier may stand.
QList<int> ListTypes(ELDbObjType type)
{
    switch (type) {
    case DBOBJ_SCHEMA:
        return {TYPE_SCHEMA};
    case DBOBJ_TABLE:
        return {TYPE_TABLE, TYPE_VIEW};
    case DBOBJ_VIEW:
        return {TYPE_VIEW, TYPE_TABLE};
    case DBOBJ_FIELD:
        return {TYPE_FIELD, TYPE_METHOD};
    case DBOBJ_FUNCTION:
        return {TYPE_FUNCTION};
    case DBOBJ_SEQUENCE:
        return {TYPE_SEQUENCE};
    case DBOBJ_INDEX:
        return {TYPE_INDEX};
    default:
        return {};
    }
}

/// The schemas of a database, those of the search path first.
RcList<I_LSchemaObject> SchemasInOrder(const rc::Ptr<I_LDatabase>& database, const rc::Ptr<LSchemaItemList>& schemas)
{
    RcList<I_LSchemaObject> ordered;
    const LDatabaseEngine* engine = database ? database->get_DatabaseEngine() : nullptr;
    if (engine)
        for (const QString& name : engine->GetSearchPath(database))
            if (const rc::Ptr<I_LSchemaObject> schema = schemas->get_ChildItem(name))
                ordered.append(rc::Ref(schema));
    for (const rc::Ref<I_LSchemaObject>& schema : schemas->get_Items().Force())
        if (!ordered.contains(schema))
            ordered.append(schema);
    return ordered;
}

} // namespace

void I_LSchemaObject::UpdateChildObjectsLater(int type)
{
    RunOnMainThreadLater([weak = rc::Weak<I_LSchemaObject>(this), type] {
        if (const rc::Ptr<I_LSchemaObject> object = weak.lock())
            object->UpdateChildObjects(type);
    });
}

LLazy<RcList<I_LSchemaObject>, true> I_LSchemaObject::CreateChildObjectDialog(ELObjectType)
{
    return RcList<I_LSchemaObject>();
}

rc::Ptr<I_LSchemaObject> I_LSchemaObject::ResolveIdent(const LIdent& ident) const
{
    if (ident.IsEmpty())
        return nullptr;
    const LIdent::Element first = ident.get_Elements().first();
    LIdent rest;
    for (const LIdent::Element& element : ident.get_Elements().mid(1))
        rest.Append(element.type, element.name);

    bool hasList = false;
    for (const int type : ListTypes(first.type)) {
        const rc::Ptr<LSchemaItemList> list = get_ChildList(type);
        if (!list)
            continue;
        hasList = true;
        if (const rc::Ptr<I_LSchemaObject> item = list->get_ChildItem(first.name))
            return rest.IsEmpty() ? item : item->ResolveIdent(rest);
    }
    // A name without its schema: the schemas are asked in the order of the search path.
    if (!hasList)
        if (const rc::Ptr<LSchemaItemList> schemas = get_ChildList(TYPE_SCHEMA))
            for (const rc::Ref<I_LSchemaObject>& schema : SchemasInOrder(get_Database(), schemas))
                if (const rc::Ptr<I_LSchemaObject> found = schema->ResolveIdent(ident))
                    return found;
    return nullptr;
}

rc::Ptr<I_LTableCursor> I_LSchemaObject::OpenCursor(int, bool, bool, bool)
{
    return nullptr;
}

LVariant I_LSchemaObject::Evaluate(int what) const
{
    switch (what) {
    case EVAL_MARKED_DROPPED:
    case EVAL_JUST_CREATED:
        return false;
    case EVAL_EXISTS:
        return true;
    default:
        return LVariant::Empty();
    }
}

rc::Ptr<I_LTable> I_LSchema::get_Table(const QString& name) const
{
    return rc::cast<I_LTable>(get_ChildObject(TYPE_TABLE, name).Force());
}

RcList<I_LTable> I_LSchema::get_Tables() const
{
    RcList<I_LTable> tables;
    const RcList<I_LSchemaObject> items = get_ChildObjects(TYPE_TABLE).Force();
    for (const rc::Ref<I_LSchemaObject>& item : items)
        if (const rc::Ptr<I_LTable> table = rc::cast<I_LTable>(item))
            tables.append(rc::Ref(table));
    return tables;
}

} // namespace HF
