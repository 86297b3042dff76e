// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/table_lookup.h"

#include "hf/catalog_warmer.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/schema_item_list.h"

namespace HF {

namespace {

rc::Ptr<I_LSchemaObject> FindPath(const rc::Ref<I_LDatabase>& database, const QStringList& names, bool views)
{
    LIdent ident;
    if (names.size() == 2)
        ident.Append(DBOBJ_SCHEMA, names.first());
    ident.Append(DBOBJ_TABLE, names.last());
    const rc::Ptr<I_LSchemaObject> found = database->ResolveIdent(ident);
    const bool fits = found && (found->get_ObjectType() == TYPE_TABLE || (views && found->get_ObjectType() == TYPE_VIEW));
    return fits ? found : nullptr;
}

} // namespace

rc::Ptr<I_LSchemaObject> FindTable(const rc::Ref<I_LDatabase>& database, const QString& name, bool views)
{
    const LDatabaseEngine* engine = database->get_DatabaseEngine();
    if (!engine || name.isEmpty())
        return nullptr;
    // Whoever looks for a table wants its columns next.
    if (auto* const warmer = dynamic_cast<I_LCatalogWarmer*>(database.get()))
        warmer->WarmCatalog();
    QStringList names;
    const LIdent ident = engine->ParseIdent(name, {DBOBJ_TABLE});
    for (const LIdent::Element& element : ident.get_Elements())
        names.append(element.name);
    if (names.size() == 3 && names.first().compare(database->get_Name(), Qt::CaseInsensitive) == 0)
        names.removeFirst();
    if (names.size() == 1 || names.size() == 2)
        if (const rc::Ptr<I_LSchemaObject> found = FindPath(database, names, views))
            return found;
    return names != QStringList{name} ? FindPath(database, {name}, views) : nullptr;
}

} // namespace HF
