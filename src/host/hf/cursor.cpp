// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/cursor.h"

#include "hf/database.h"
#include "hf/schema_item_list.h"

namespace HF {

LCursor::LCursor(const QString& queryText, const rc::Ptr<I_LConnection>& connection) : Connection(connection)
{
    StoreName(queryText);
}

LCursor::~LCursor() = default;

rc::Ptr<I_LConnection> LCursor::get_Connection() const
{
    return Connection;
}

rc::Ptr<I_LDatabase> LCursor::get_Database() const
{
    return m_database.lock();
}

void LCursor::SetSourceDatabase(const rc::Ref<I_LDatabase>& database)
{
    m_database = database;
    put_ParentObject(database);
}

LField::LField(const rc::Ptr<I_LSchemaObject>& owner, const QString& name)
{
    // A cursor holds its columns and would never end if they held it.
    if (dynamic_cast<const I_LCursor*>(owner.get()))
        put_ParentObjectWeak(owner);
    else
        put_ParentObject(owner);
    AssignName(name);
}

QString LField::get_ObjectTypeName() const
{
    return QString::fromLatin1(OBJECT_FIELD);
}

LLazy<QString, false> LField::get_Icon() const
{
    return QStringLiteral(":/weft/icons/field.svg");
}

} // namespace HF
