// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/table_cursor.h"
#include "hf/table_cursor_base.h"
#include "support/database_place.h"

/// Tables of the real engine and cursors on them.
class TableCursorTest : public support::DatabasePlace
{
protected:
    using Cursor = rc::Ptr<orbDuckDB_TableCursor>;

    rc::Ptr<HF::I_LSchemaObject> Object(HF::I_LDatabase& database, const QString& name)
    {
        const auto schema =
            rc::cast<HF::I_LSchema>(database.get_ChildObject(HF::TYPE_SCHEMA, QStringLiteral("main")).Force());
        if (!schema)
            return nullptr;
        for (const int type : {HF::TYPE_TABLE, HF::TYPE_VIEW}) {
            schema->UpdateChildObjects(type);
            if (const auto object = schema->get_ChildObject(type, name).Force())
                return object;
        }
        return nullptr;
    }
    /// A cursor in the test's database, with a small window unless told otherwise.
    Cursor Open(const QString& name, unsigned long window = 1000, bool rowId = false)
    {
        return Open(Database(), name, window, rowId);
    }
    Cursor Open(HF::I_LDatabase& database, const QString& name, unsigned long window = 1000, bool rowId = false)
    {
        const auto object = Object(database, name);
        EXPECT_TRUE(object) << name.toStdString();
        const auto cursor = object ? rc::cast<orbDuckDB_TableCursor>(object->OpenCursor(0, rowId, true, false)) : Cursor();
        if (cursor) {
            cursor->put_WindowSize(window);
            cursor->ReloadRows();
        }
        return cursor;
    }
    static QString Text(const rc::Ptr<HF::I_LSqlValue>& value)
    {
        return !value ? QStringLiteral("-") : value->get_IsNull() ? QStringLiteral("NULL") : value->get_String();
    }
    /// The cells of a loaded row, joined by "|".
    static QString Row(const HF::I_LTableCursor& cursor, unsigned long row)
    {
        QStringList cells;
        for (int i = 0; i < cursor.get_FieldCount().Force(); ++i)
            cells << Text(cursor.ValueAt(row, i));
        return cells.join(u'|');
    }
    /// All rows of the window, joined by a blank.
    static QString Window(const HF::I_LTableCursor& cursor)
    {
        QStringList rows;
        for (int i = 0; i < cursor.GetBufferedRowCount(); ++i)
            rows << Row(cursor, cursor.get_FirstRow() + static_cast<unsigned long>(i));
        return rows.join(u' ');
    }
};
