// SPDX-License-Identifier: GPL-3.0-or-later
// What a table cursor shows: window, order, filter, count, columns, texts.
#include "data/table_cursor_place.h"

#include "hf/schema_item_list.h"

namespace {

using namespace Qt::StringLiterals;

TEST_F(TableCursorTest, WindowsAtTheEdges)
{
    Run(u"CREATE TABLE key(id INTEGER PRIMARY KEY, s VARCHAR); INSERT INTO key SELECT 99 - i, 'r' || i FROM range(100) r(i);"
        "CREATE TABLE bare AS SELECT i::INTEGER AS id, 'r' || (99 - i) AS s FROM range(100) r(i);"
        "CREATE VIEW seen AS FROM bare; CREATE TABLE none(id INTEGER, s VARCHAR)"_s);
    for (const QString& name : {u"key"_s, u"bare"_s, u"seen"_s}) {
        SCOPED_TRACE(name.toStdString());
        const Cursor cursor = Open(name, 10);
        EXPECT_EQ(cursor->GetBufferedRowCount(), 10);
        EXPECT_EQ(Row(*cursor, 0), u"0|r99"_s);
        EXPECT_EQ(Row(*cursor, 10), u"-|-"_s);
        // All rows by their position, forward and backward, each from its window.
        int seen = 0;
        for (bool more = cursor->FirstRecord(); more; more = cursor->NextRecord(), ++seen)
            EXPECT_EQ(cursor->get_Field(0)->get_String(), QString::number(seen));
        EXPECT_EQ(seen, 100);
        for (unsigned long row = 100; row-- > 0;) {
            cursor->put_Position(row).Force();
            EXPECT_EQ(cursor->get_Field(1)->get_String(), u"r%1"_s.arg(99 - row));
        }
        for (const unsigned long row : {0ul, 4ul, 5ul, 6ul, 50ul, 94ul, 95ul, 99ul}) {
            const auto request = cursor->RequestWindow(row);
            request->Run();
            ASSERT_TRUE(cursor->ShowWindow(rc::Ref<HF::LWindowRequest>(request))) << row;
            EXPECT_EQ(Row(*cursor, row), u"%1|r%2"_s.arg(row).arg(99 - row));
        }
        ASSERT_TRUE(cursor->UpdateRecordCount());
        EXPECT_EQ(cursor->get_RecordCount().Force(), 100u);
        // A place far behind the end shows nothing, and the way back is open.
        cursor->put_Position(5000).Force();
        EXPECT_TRUE(cursor->get_Field(0)->get_IsNull());
        cursor->put_Position(42).Force();
        EXPECT_EQ(cursor->get_Field(0)->get_String(), u"42"_s);
    }
    const Cursor empty = Open(u"none"_s);
    EXPECT_FALSE(empty->FirstRecord());
    EXPECT_EQ(empty->get_RecordCount().Force(), 0u);
    EXPECT_EQ(empty->GetRecordCountText(), QString());
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

TEST_F(TableCursorTest, OrderAndFilter)
{
    Run(u"CREATE TABLE t(a INTEGER, b VARCHAR, c BLOB); INSERT INTO t VALUES (3,'x',NULL),(1,'y','\\x01'),(2,'x','\\x00'),"
        "(1,'x',''),(NULL,'z',NULL)"_s);
    const Cursor cursor = Open(u"t"_s);
    struct Case
    {
        QList<HF::LSortField> sorting;
        QString filter;
        const char* rows; ///< null: refused
    };
    const Case cases[] = {
        {{}, {}, "3|x|NULL 1|y|\\x01 2|x|\\x00 1|x| NULL|z|NULL"},
        {{{u"a"_s, false}}, {}, "1|y|\\x01 1|x| 2|x|\\x00 3|x|NULL NULL|z|NULL"},
        {{{u"b"_s, true}, {u"a"_s, false}}, {}, "NULL|z|NULL 1|y|\\x01 1|x| 2|x|\\x00 3|x|NULL"},
        {{{u"c"_s, false}}, u"c IS NOT NULL"_s, "1|x| 2|x|\\x00 1|y|\\x01"},
        {{}, u"b = 'x' AND a > 1 -- the rest"_s, "3|x|NULL 2|x|\\x00"},
        {{}, u"b = ';'"_s, ""},
        {{}, u"true); DELETE FROM t; --"_s, nullptr},
        {{}, u"(a > 1"_s, nullptr},
        {{}, u"b = 'x"_s, nullptr},
        {{}, u"a > 'word'"_s, nullptr},
        {{{u"nothing"_s, false}}, {}, nullptr},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.filter.toStdString());
        cursor->SortByFields({});
        ASSERT_TRUE(cursor->put_Filter(QString()));
        const bool shown = cursor->put_Filter(each.filter) && cursor->SortByFields(each.sorting);
        EXPECT_EQ(shown, each.rows != nullptr);
        if (each.rows)
            EXPECT_EQ(Window(*cursor), QString::fromUtf8(each.rows));
        else
            EXPECT_FALSE(cursor->get_LastError().isEmpty());
    }
    EXPECT_EQ(Column(u"SELECT count(*) FROM t"_s), u"5"_s);
    ASSERT_TRUE(cursor->put_Filter(u"a < $1 AND b = $2"_s, {rc::make<HF::LValueInt32>(3), rc::make<HF::LValueString>(u"x"_s)}));
    EXPECT_EQ(Window(*cursor), u"2|x|\\x00 1|x|"_s);
    EXPECT_TRUE(cursor->UpdateRecordCount());
    EXPECT_EQ(cursor->get_RecordCount().Force(), 2u);
}

TEST_F(TableCursorTest, StaleWindowsAreNotShown)
{
    Run(u"CREATE TABLE t AS SELECT i::INTEGER AS a FROM range(50) r(i)"_s);
    const Cursor cursor = Open(u"t"_s, 5);
    const auto early = cursor->RequestWindow(20);
    early->Run();
    cursor->SetSorting({{u"a"_s, true}});
    EXPECT_FALSE(cursor->ShowWindow(rc::Ref<HF::LWindowRequest>(early)));
    EXPECT_EQ(Row(*cursor, 0), u"0"_s);
    const auto late = cursor->RequestWindow(0);
    late->Run();
    EXPECT_TRUE(cursor->ShowWindow(rc::Ref<HF::LWindowRequest>(late)));
    EXPECT_EQ(Row(*cursor, 0), u"49"_s);
    const auto cancelled = cursor->RequestWindow(30);
    cancelled->Cancel();
    cancelled->Run();
    EXPECT_FALSE(cursor->ShowWindow(rc::Ref<HF::LWindowRequest>(cancelled)));
    Run(u"DROP TABLE t"_s);
    EXPECT_FALSE(cursor->RefreshWindow());
    EXPECT_EQ(Row(*cursor, 0), u"49"_s) << "a failed reading leaves the window";
}

TEST_F(TableCursorTest, ColumnsThatComeAndGo)
{
    Run(u"CREATE TABLE t(a INTEGER, b BLOB, g INTEGER GENERATED ALWAYS AS (a + 1)); INSERT INTO t VALUES (1, 'x'),(2, 'y');"
        "CREATE TABLE odd(\"rowid\" INTEGER, x INTEGER); INSERT INTO odd VALUES (7, 1), (7, 1);"
        "CREATE TABLE k(\"i d\" INTEGER PRIMARY KEY, b BLOB, \"%2\" BLOB); INSERT INTO k VALUES (1, 'b', 'c'); CREATE VIEW v AS FROM k"_s);
    const Cursor cursor = Open(u"t"_s);
    EXPECT_EQ(cursor->get_FieldCount().Force(), 2);
    EXPECT_EQ(cursor->get_KeyNames().join(u','), u"a,b"_s);
    EXPECT_FALSE(cursor->get_HasKey());
    cursor->put_ShowRowId(true);
    EXPECT_EQ(Row(*cursor, 1), u"1|2|y"_s);
    EXPECT_EQ(cursor->FieldNamesList(), u"a, b"_s);
    cursor->put_ShowMethods(true);
    EXPECT_EQ(Row(*cursor, 1), u"1|2|y|3"_s);
    cursor->put_ShowRecordNumber(true);
    EXPECT_EQ(Row(*cursor, 1), u"2|1|2|y|3"_s);
    EXPECT_EQ(cursor->get_Field(0), cursor->get_Field(0));
    EXPECT_EQ(cursor->get_Field(1)->get_Name(), u"RowID"_s);
    EXPECT_FALSE(cursor->get_Field(-1));
    EXPECT_FALSE(cursor->get_Field(5));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(cursor->IsColumnEditable(i), i == 2 || i == 3) << i;
    cursor->put_ShowMethods(false);
    cursor->put_ShowRecordNumber(false);
    cursor->put_ShowRowId(false);
    EXPECT_EQ(Row(*cursor, 1), u"2|y"_s);

    EXPECT_EQ(Row(*Open(u"odd"_s), 1), u"7|1"_s);
    const Cursor keyed = Open(u"k"_s);
    const rc::Ref<HF::I_LSchemaObject> table(Object(Database(), u"k"_s));
    EXPECT_EQ(keyed->SelectList(table, false, false, QString()),
              u"\"i d\", unhex( substring( to_hex( b ), 1, 256 ) ) AS b, "
              "unhex( substring( to_hex( \"%2\" ), 1, 256 ) ) AS \"%2\""_s);
    EXPECT_EQ(keyed->SelectList(table, true, true, u"p"_s), u"p.\"i d\", p.b, p.\"%2\""_s);
    EXPECT_EQ(keyed->PreviewExpression(u"b"_s, true, 128), u"unhex( substring( to_hex( b ), 1, 256 ) )"_s);
    EXPECT_EQ(Row(*keyed, 0), u"1|b|c"_s);
    EXPECT_TRUE(keyed->get_HasKey());
    const Cursor view = Open(u"v"_s, 1000, true);
    EXPECT_FALSE(view->get_ShowRowId());
    EXPECT_TRUE(view->get_IsReadOnly().Force());
    EXPECT_FALSE(view->SetTextAt(0, 1, u"no"_s));
    EXPECT_EQ(view->SelectList(rc::Ref<HF::I_LSchemaObject>(view->get_Source()), false, false, QString()), u"\"i d\", b, \"%2\""_s)
        << "all columns of a view are its key";
}

TEST_F(TableCursorTest, SetOperations)
{
    Run(u"CREATE TABLE t(a INTEGER, b INTEGER)"_s);
    const Cursor cursor = Open(u"t"_s);
    const rc::Ref<HF::I_LSchemaObject> table(Object(Database(), u"t"_s));
    unsigned counter = 5;
    const QString one = u"SELECT a, b FROM (VALUES (1,1),(2,2)) v(a,b)"_s;
    const QString two = u"SELECT a, b FROM (VALUES (2,2),(3,3)) v(a,b)"_s;
    const auto text = [&](int operation) {
        return cursor->OperationQuery(table, HF::ELSetOperation(operation), u"a, b"_s, one, two, counter);
    };
    const std::pair<int, const char*> cases[] = {{0, "2"}, {1, "1 2 3"}, {2, "1"}, {3, "1 3"}};
    for (const auto& [operation, rows] : cases)
        EXPECT_EQ(Column(u"SELECT a FROM ( "_s + text(operation) + u" ) ORDER BY a"_s), QString::fromUtf8(rows));
    EXPECT_EQ(counter, 8u);
    counter = 5;
    EXPECT_EQ(cursor->OperationDifference(table, u"A"_s, u"%1"_s, u"B"_s, counter),
              u"SELECT DISTINCT %1 FROM ( A UNION B ) AS subQuery_6 EXCEPT SELECT DISTINCT %1 FROM ( A ) AS "
              "subQuery_7 INNER JOIN ( B ) AS subQuery_8 USING ( %1 )"_s);
    EXPECT_EQ(text(0), one + u" INTERSECT "_s + two);
    EXPECT_EQ(text(7), QString());
    EXPECT_EQ(counter, 8u);
}

TEST_F(TableCursorTest, CountsAndTheirWords)
{
    Run(u"CREATE TABLE small AS SELECT i FROM range(3) r(i); CREATE TABLE large AS SELECT i FROM range(5000) r(i)"_s);
    const Cursor small = Open(u"small"_s, 10);
    EXPECT_EQ(small->GetRecordCountText(), u"~2"_s);
    EXPECT_EQ(small->get_RecordCount().Force(), 3u);
    const Cursor large = Open(u"large"_s, 10);
    EXPECT_EQ(large->GetRecordCountText(), u"~5000"_s);
    EXPECT_EQ(large->get_RecordCount().Force(), 5000u);
    EXPECT_TRUE(large->get_IsRecordCountEstimated());
    Run(u"DELETE FROM large WHERE i % 2 = 0"_s);
    EXPECT_TRUE(large->UpdateRecordCount());
    EXPECT_EQ(large->get_RecordCount().Force(), 2500u);
    EXPECT_FALSE(large->get_IsRecordCountEstimated());
    EXPECT_EQ(large->GetRecordCountText(), u"~2500"_s);
}

TEST_F(TableCursorTest, MarksFollowTheirRows)
{
    Run(u"CREATE TABLE k(id INTEGER PRIMARY KEY, s VARCHAR); INSERT INTO k SELECT i, 's' || i FROM range(40) r(i);"
        "CREATE TABLE b(x INTEGER); INSERT INTO b VALUES (1),(1),(2),(NULL)"_s);
    const Cursor keyed = Open(u"k"_s, 10);
    for (const unsigned long row : {3ul, 17ul, 30ul}) {
        keyed->put_Position(row).Force();
        EXPECT_TRUE(keyed->MarkRecord());
    }
    EXPECT_EQ(keyed->get_MarkedCount(), 3u);
    Run(u"DELETE FROM k WHERE id = 17"_s);
    keyed->ReloadRows();
    EXPECT_EQ(keyed->get_MarkedCount(), 2u);
    keyed->put_Position(29).Force(); // of 30 before the deletion
    EXPECT_TRUE(keyed->get_IsRecordMarked());
    const auto marked = rc::cast<orbDuckDB_TableCursor>(keyed->get_MarkedRecords());
    ASSERT_TRUE(marked);
    marked->RefreshWindow();
    EXPECT_EQ(Window(*marked), u"3|s3 30|s30"_s);
    EXPECT_TRUE(keyed->DeleteMarked().saved);
    EXPECT_EQ(keyed->get_MarkedCount(), 0u);
    EXPECT_EQ(Column(u"SELECT count(*) FROM k"_s), u"37"_s);

    const Cursor bare = Open(u"b"_s);
    bare->put_Position(1).Force();
    EXPECT_TRUE(bare->MarkRecord());
    bare->put_Position(3).Force();
    EXPECT_TRUE(bare->MarkRecord());
    bare->put_Position(0).Force();
    EXPECT_FALSE(bare->get_IsRecordMarked()) << "its twin is";
    EXPECT_EQ(bare->DeleteMarked().rows, 2);
    EXPECT_EQ(Column(u"SELECT x FROM b ORDER BY ALL"_s), u"1 2"_s);
    bare->SetAllToMarked();
    EXPECT_TRUE(bare->DeleteMarked().saved);
    EXPECT_EQ(Column(u"SELECT count(*) FROM b"_s), u"0"_s);
}

TEST_F(TableCursorTest, LinkedRows)
{
    Run(u"CREATE TABLE p(id INTEGER PRIMARY KEY, s VARCHAR); INSERT INTO p VALUES (1,'a'),(2,'b'),(3,'c');"
        "CREATE TABLE c(n INTEGER PRIMARY KEY, pid INTEGER REFERENCES p(id)); INSERT INTO c VALUES (10,1),(11,1),(12,2),(13,NULL)"_s);
    const Cursor parents = Open(u"p"_s);
    const Cursor children = Open(u"c"_s);
    const rc::Ref<HF::I_LSchemaObject> parentTable(Object(Database(), u"p"_s));
    const rc::Ref<HF::I_LSchemaObject> childTable(Object(Database(), u"c"_s));
    const auto links = childTable->get_ChildObjects(HF::TYPE_LINK).Force();
    ASSERT_EQ(links.size(), 1);
    const rc::Ref<HF::I_LLink> link(rc::cast<HF::I_LLink>(links[0]));
    parents->put_Position(1).Force();
    parents->MarkRecord();
    const auto shown = [&](const Cursor& from, const rc::Ref<HF::I_LSchemaObject>& table, int mode) {
        const auto linked =
            rc::cast<orbDuckDB_TableCursor>(from->get_LinkedRecords(table, mode, HF::SET_UNION, link));
        if (!linked)
            return u"none"_s;
        linked->RefreshWindow();
        return Window(*linked) + u" marked %1"_s.arg(linked->get_MarkedCount());
    };
    EXPECT_EQ(shown(parents, childTable, HF::LINKED_TO_MARKED), u"12|2 marked 1"_s);
    EXPECT_EQ(shown(parents, childTable, HF::LINKED_TO_ANY), u"10|1 11|1 12|2 marked 3"_s);
    EXPECT_EQ(shown(parents, childTable, HF::LINKED_TO_NONE), u"13|NULL marked 1"_s);
    EXPECT_EQ(shown(children, parentTable, HF::LINKED_TO_ANY), u"1|a 2|b marked 2"_s);
    EXPECT_EQ(shown(children, parentTable, HF::LINKED_TO_NONE), u"3|c marked 1"_s);
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
    const auto whole = children->CreateCursorFromQuery(u"*"_s, {}, parentTable, {}, {});
    ASSERT_TRUE(whole);
    whole->RefreshWindow();
    EXPECT_EQ(whole->get_MarkedCount(), 3u);
}

TEST_F(TableCursorTest, WhatSeveralMarksAreLinkedTo)
{
    Run(u"CREATE TABLE tag(id INTEGER PRIMARY KEY, s VARCHAR); INSERT INTO tag VALUES (1,'a'),(2,'b'),(3,'c');"
        "CREATE TABLE note(n INTEGER PRIMARY KEY, x INTEGER, y INTEGER, FOREIGN KEY (x) REFERENCES tag(id));"
        "INSERT INTO note VALUES (10,1,0),(11,2,0),(12,2,0),(13,3,0)"_s);
    const rc::Ref<HF::I_LSchemaObject> tags(Object(Database(), u"tag"_s)), notes(Object(Database(), u"note"_s));
    const rc::Ref<HF::I_LLink> link(rc::cast<HF::I_LLink>(notes->get_ChildObjects(HF::TYPE_LINK).Force().at(0)));
    const auto shown = [&](const QString& table, const rc::Ref<HF::I_LSchemaObject>& other, QList<int> marks,
                           HF::ELSetOperation operation) {
        const Cursor from = Open(table);
        for (const int row : marks) {
            from->put_Position(static_cast<unsigned long>(row)).Force();
            EXPECT_TRUE(from->MarkRecord());
        }
        const auto linked =
            rc::cast<orbDuckDB_TableCursor>(from->get_LinkedRecords(other, HF::LINKED_TO_MARKED, operation, link));
        if (!linked)
            return u"none"_s;
        linked->RefreshWindow();
        return Window(*linked);
    };
    EXPECT_EQ(shown(u"tag"_s, notes, {0, 1}, HF::SET_UNION), u"10|1|0 11|2|0 12|2|0"_s);
    EXPECT_EQ(shown(u"tag"_s, notes, {0, 1}, HF::SET_INTERSECTION), QString()) << "a note has one tag";
    EXPECT_EQ(shown(u"tag"_s, notes, {1, 2}, HF::SET_EXCEPT), u"11|2|0 12|2|0"_s);
    EXPECT_EQ(shown(u"tag"_s, notes, {0, 2}, HF::SET_DIFFERENCE), u"10|1|0 13|3|0"_s);
    EXPECT_EQ(shown(u"note"_s, tags, {1, 2}, HF::SET_INTERSECTION), u"2|b"_s);
    EXPECT_EQ(shown(u"note"_s, tags, {1, 2}, HF::SET_DIFFERENCE), QString());
    EXPECT_EQ(shown(u"note"_s, tags, {0, 1, 3}, HF::SET_DIFFERENCE), u"1|a 2|b 3|c"_s);
    EXPECT_EQ(shown(u"note"_s, tags, {0, 1, 2}, HF::SET_INTERSECTION), QString());
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

TEST_F(TableCursorTest, RowsAreTiedAndUntied)
{
    Run(u"CREATE TABLE p(a INTEGER, \"b c\" VARCHAR, PRIMARY KEY (a, \"b c\"));"
        "INSERT INTO p VALUES (1,'x'),(1,'y'),(2,'x');"
        "CREATE TABLE c(n INTEGER, \"p a\" INTEGER, pb VARCHAR, FOREIGN KEY (\"p a\", pb) REFERENCES p(a, \"b c\"));"
        "INSERT INTO c VALUES (10,1,'x'),(10,1,'x'),(11,NULL,NULL);"
        "CREATE TABLE tree(id INTEGER PRIMARY KEY, up INTEGER REFERENCES tree(id)); INSERT INTO tree VALUES (1,NULL),(2,NULL)"_s);
    ASSERT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
    const rc::Ref<HF::I_LSchemaObject> childTable(Object(Database(), u"c"_s));
    const rc::Ref<HF::I_LLink> link(rc::cast<HF::I_LLink>(childTable->get_ChildObjects(HF::TYPE_LINK).Force().at(0)));
    const rc::Ref<HF::I_LTableCursor> parents(Open(u"p"_s)), children(Open(u"c"_s));
    // By what they show: the engine moves a row whose foreign key it changes.
    const auto mark = [](const rc::Ref<HF::I_LTableCursor>& cursor, const QString& beginning, int most = 9) {
        cursor->SetAllToNonMarked();
        for (unsigned long row = 0; cursor->IsRowLoaded(row) && most > 0; ++row)
            if (Row(*cursor, row).startsWith(beginning)) {
                cursor->put_Position(row).Force();
                EXPECT_TRUE(cursor->MarkRecord());
                --most;
            }
    };
    const auto stored = [&] {
        return Column(u"SELECT string_agg(n || '=' || coalesce(\"p a\" || pb, '-'), ' ' ORDER BY n, pb, \"p a\") FROM c"_s);
    };

    // One of two equal rows, to the one marked row; the other one stays.
    mark(parents, u"1|y"_s);
    children->put_Position(1).Force();
    HF::LSaveResult result = children->LinkToMarked(parents, link);
    EXPECT_TRUE(result.saved) << result.get_Error().toStdString();
    EXPECT_EQ(result.rows, 1);
    EXPECT_EQ(stored(), u"10=1x 10=1y 11=-"_s);
    // A row refers to one other.
    mark(parents, u"1|"_s);
    EXPECT_FALSE(children->LinkToMarked(parents, link).saved);
    mark(parents, u"none"_s);
    EXPECT_FALSE(children->LinkToMarked(parents, link).saved);
    // From the other side, several at once.
    mark(children, QString(), 3);
    parents->put_Position(2).Force();
    result = parents->LinkToMarked(children, link);
    EXPECT_TRUE(result.saved) << result.get_Error().toStdString();
    EXPECT_EQ(stored(), u"10=2x 10=2x 11=2x"_s);
    mark(children, u"11"_s);
    parents->put_Position(1).Force();
    EXPECT_TRUE(parents->LinkToMarked(children, link).saved);
    EXPECT_EQ(stored(), u"10=2x 10=2x 11=1y"_s);
    // Only what is tied to one another is untied.
    mark(children, QString(), 3);
    result = parents->UnlinkFromMarked(children, link);
    EXPECT_TRUE(result.saved) << result.get_Error().toStdString();
    EXPECT_EQ(result.rows, 1);
    EXPECT_EQ(stored(), u"10=2x 10=2x 11=-"_s);
    children->SetAllToMarked();
    parents->put_Position(2).Force();
    EXPECT_EQ(parents->UnlinkFromMarked(children, link).rows, 2);
    EXPECT_EQ(stored(), u"10=- 10=- 11=-"_s);
    // The row that was to be referred to has gone meanwhile: nothing changes.
    mark(parents, u"1|x"_s);
    Run(u"DELETE FROM p WHERE a = 1 AND \"b c\" = 'x'"_s);
    children->put_Position(2).Force();
    EXPECT_FALSE(children->LinkToMarked(parents, link).saved);
    EXPECT_EQ(stored(), u"10=- 10=- 11=-"_s);
    EXPECT_FALSE(children->LinkToMarked(children, link).saved) << "tables that the link does not tie";

    const rc::Ref<HF::I_LTableCursor> lower(Open(u"tree"_s)), upper(Open(u"tree"_s));
    const rc::Ref<HF::I_LSchemaObject> tree(Object(Database(), u"tree"_s));
    const rc::Ref<HF::I_LLink> own(rc::cast<HF::I_LLink>(tree->get_ChildObjects(HF::TYPE_LINK).Force().at(0)));
    mark(upper, u"1|"_s);
    lower->put_Position(1).Force();
    result = lower->LinkToMarked(upper, own);
    EXPECT_TRUE(result.saved) << result.get_Error().toStdString();
    EXPECT_EQ(Column(u"SELECT up FROM tree WHERE id = 2"_s), u"1"_s);
    EXPECT_EQ(lower->UnlinkFromMarked(upper, own).rows, 1);
}

TEST_F(TableCursorTest, ColumnsComeAndGoBetweenWindowsAndEditsStay)
{
    Run(u"CREATE TABLE t(id INTEGER PRIMARY KEY, s VARCHAR, g INTEGER GENERATED ALWAYS AS (id * 2)); "
        "INSERT INTO t(id, s) VALUES (1,'a'),(2,'b')"_s);
    const Cursor cursor = Open(u"t"_s);
    ASSERT_TRUE(cursor->SetTextAt(1, 1, u"mine"_s));
    ASSERT_TRUE(cursor->SetTextAt(cursor->AddRecord(), 0, u"3"_s));
    cursor->put_UpdateBlocked(true);
    queries.clear();
    cursor->put_ShowRowId(true);
    cursor->put_ShowMethods(true);
    EXPECT_FALSE(cursor->IsRowLoaded(0));
    for (const HF::LQueryLogEntry& query : queries)
        EXPECT_FALSE(query.text.contains(u" LIMIT "_s)) << query.text.toStdString();
    const auto show = [&] {
        const auto window = cursor->RequestRows(0);
        window->Run();
        EXPECT_TRUE(cursor->ShowWindow(rc::Ref<HF::LWindowRequest>(window)));
    };
    show();
    EXPECT_EQ(Window(*cursor), u"0|1|a|2 1|2|mine|4"_s);
    EXPECT_EQ(cursor->get_PendingEdits().size(), 2);
    cursor->put_ShowRowId(false);
    cursor->put_ShowMethods(false);
    show();
    EXPECT_EQ(Window(*cursor), u"1|a 2|mine"_s);
    EXPECT_TRUE(cursor->SaveEdits().saved) << cursor->get_LastError().toStdString();
    EXPECT_EQ(Column(u"SELECT string_agg(id || coalesce(s, '-'), ' ' ORDER BY id) FROM t"_s), u"1a 2mine 3-"_s);
}

} // namespace
