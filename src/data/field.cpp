// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/field.h"

#include "data/default_text.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/services.h"

#include <QObject>

HF::LLazy<bool, true> orbDuckDB_Field::ReloadProperties()
{
    if (get_IsCursorMode())
        return true;
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database || database->get_IsClosing())
        return true;
    const rc::Ptr<HF::I_LTable> table = OwnerTable();
    if (table && table->get_IsClosing())
        return true;
    return orbDuckDB_FieldBase::ReloadProperties();
}

HF::LLazy<QString, false> orbDuckDB_Field::get_Icon() const
{
    const auto icon = [](bool isKey) {
        return isKey ? QStringLiteral(":/icons/field-pk.svg") : QStringLiteral(":/weft/icons/field.svg");
    };
    const HF::LLazy<bool, false> isKey = IsPK();
    return isKey.IsResolved() ? HF::LLazy<QString, false>(icon(isKey.Force())) : isKey.Map(icon);
}

HF::LLazy<bool, true> orbDuckDB_Field::Drop()
{
    const rc::Ptr<HF::I_LTable> table = OwnerTable();
    if (!table)
        return true;
    if (table->get_FieldCount().Force() > 1)
        return orbDuckDB_FieldBase::Drop();
    HF::Alert(QObject::tr("Cannot delete the last field from table!"));
    return true;
}

void orbDuckDB_Field::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    const rc::Ptr<HF::I_LField> engineDefault = cursor->get_Field(QStringLiteral("column_default"));
    AssignPropertyValueSilent(PROP_DEFAULT, DefaultFromCatalog(engineDefault ? engineDefault->get_String() : QString()));
    ReadProperty(cursor, PROP_NULLABLE, "is_nullable");
    orbDuckDB_FieldBase::FromQuery(cursor);
    get_DatabaseEngine()->UpdatePropertiesFlags(rc::self<HF::I_LSchemaObject>(this), get_Database());
}
