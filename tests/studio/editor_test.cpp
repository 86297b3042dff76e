// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/completion.h"
#include "studio/sql_text_edit.h"
#include "studio/statement_at.h"

#include <gtest/gtest.h>

TEST(StatementAt, FindsTheStatementAroundTheCaret)
{
    // The caret stands at "|".
    struct Case
    {
        const char* text;
        const char* statement;
    };
    const Case cases[] = {
        {"SELECT 1|; SELECT 2", "SELECT 1;"},
        {"SELECT 1;| SELECT 2", "SELECT 1;"},
        {"SELECT 1;\n|SELECT 2", "SELECT 2"},
        {"SELECT 1;\n\n|\nSELECT 2;", "SELECT 2;"},
        {"SELECT ';|'; SELECT 2", "SELECT ';';"},
        {"SELECT 'it''s;|' ; SELECT 2", "SELECT 'it''s;' ;"},
        {"SELECT E'\\';|' ; SELECT 2", "SELECT E'\\';' ;"},
        {"SELECT \"a;|b\"; SELECT 2", "SELECT \"a;b\";"},
        {"SELECT $$a;|b$$; SELECT 2", "SELECT $$a;b$$;"},
        {"SELECT $x$a$$;|b$x$; SELECT 2", "SELECT $x$a$$;b$x$;"},
        {"SELECT 1 -- no; end|\n+ 1; SELECT 2", "SELECT 1 -- no; end\n+ 1;"},
        {"SELECT /* a; /* b;| */ c; */ 1; SELECT 2", "SELECT /* a; /* b; */ c; */ 1;"},
        {"SELECT 1;  |", "SELECT 1;"},
        {"|", ""},
        {"SELECT '|", "SELECT '"},
    };
    for (const Case& one : cases) {
        QString text = QString::fromUtf8(one.text);
        const qsizetype caret = text.indexOf(u'|');
        text.remove(caret, 1);
        const StatementRange range = StatementAt(text, caret);
        EXPECT_EQ(text.mid(range.start, range.end - range.start).toStdString(), one.statement) << one.text;
    }
}

namespace {

HF::LIdent Ident(std::initializer_list<std::pair<HF::ELDbObjType, const char*>> path)
{
    HF::LIdent ident;
    for (const auto& [type, name] : path)
        ident.Append(type, QString::fromUtf8(name));
    return ident;
}

CompletionWords Words()
{
    using namespace HF;
    CompletionWords words;
    words.idents = {Ident({{DBOBJ_SCHEMA, "shop"}}),
                    Ident({{DBOBJ_TABLE, "orders"}}),
                    Ident({{DBOBJ_SCHEMA, "shop"}, {DBOBJ_TABLE, "orders"}}),
                    Ident({{DBOBJ_TABLE, "orders"}, {DBOBJ_FIELD, "number"}}),
                    Ident({{DBOBJ_TABLE, "orders"}, {DBOBJ_FIELD, "Odd \"one\""}}),
                    Ident({{DBOBJ_SCHEMA, "shop"}, {DBOBJ_TABLE, "orders"}, {DBOBJ_FIELD, "number"}}),
                    Ident({{DBOBJ_TABLE, "x y"}, {DBOBJ_FIELD, "z"}}),
                    Ident({{DBOBJ_TABLE, "x y"}, {DBOBJ_FIELD, "group"}}),
                    Ident({{DBOBJ_TABLE, "a\"b"}, {DBOBJ_FIELD, "$cost"}}),
                    Ident({{DBOBJ_SCHEMA, "a\"b"}, {DBOBJ_TABLE, "\"q"}, {DBOBJ_FIELD, "one$"}})};
    words.keywords = {QStringLiteral("select"), QStringLiteral("from"), QStringLiteral("group")};
    words.reserved = {QStringLiteral("as"),   QStringLiteral("from"), QStringLiteral("group"), QStringLiteral("join"),
                      QStringLiteral("left"), QStringLiteral("on"),   QStringLiteral("where")};
    words.functions = {QStringLiteral("sum")};
    return words;
}

} // namespace

TEST(CompleteAt, OffersWhatFits)
{
    struct Case
    {
        const char* text;
        const char* words; ///< separated by "|"
        int prefix;
    };
    const Case cases[] = {
        {"sel^", "SELECT", 3},
        {"s^", "SELECT|shop|sum", 1},
        {"SELECT o.^ FROM orders o", "\"Odd \"\"one\"\"\"|number", 0},
        {"SELECT o.nu^ FROM shop.orders AS o", "number", 2},
        {"SELECT shop.^", "orders", 0},
        {"SELECT db.shop.orders.^", "number", 0},
        {"SELECT q.^ FROM \"x y\" q", "\"group\"|z", 0},
        {"SELECT \"x y\".^", "\"group\"|z", 0},
        {"SELECT unknown.^", "", 0},
        {"FROM orders JOIN \"x y\" c ON c.^", "\"group\"|z", 0},
        {"FROM \"x y\" LEFT JOIN shop.orders AS c ON c.^", "number", 0},
        {"FROM orders o JOIN \"x y\" ON o.^", "\"Odd \"\"one\"\"\"|number", 0},
        {"SELECT c.^, FROM \"x y\" c WHERE true", "\"group\"|z", 0},
        {"SELECT c.z, z FROM \"x y\" c WHERE c.^", "\"group\"|z", 0},
        {"FROM \"x y\" JOIN orders ON join.^", "", 0},
        {"FROM \"x y\" AS \"on\" WHERE \"on\".^", "\"group\"|z", 0},
        {"SELECT \"a\"\"b\".^", "\"$cost\"", 0},
        {"SELECT \"a\"\"b\".\"\"\"q\".o^", "one$", 1},
        {"SELECT o.odd^ FROM orders o", "\"Odd \"\"one\"\"\"", 3},
        {"SELECT o.\"Odd \"\"o^ FROM orders o", "\"Odd \"\"one\"\"\"", 8},
        {"SELECT '\"', \"a\", \"nu^", "number", 3}, // 'an apostrophe' and closed names do not open one
        {"-- it's \"\nSELECT nu^", "number", 2},
        {"SELECT gr^", "\"group\"|GROUP", 2},
    };
    for (const Case& one : cases) {
        QString text = QString::fromUtf8(one.text);
        const int caret = int(text.indexOf(u'^'));
        text.remove(caret, 1);
        const Completion found = CompleteAt(text, caret, Words());
        EXPECT_EQ(found.words.join(u'|').toStdString(), one.words) << one.text;
        EXPECT_EQ(found.prefixLength, one.prefix) << one.text;
    }
}

TEST(SqlTextEdit, TabGoesThroughTheFieldsOfASnippet)
{
    SqlTextEdit editor;
    editor.setText(QStringLiteral("-- größer\n"));
    editor.setCursorPosition(1, 0);
    editor.InsertSnippet(QStringLiteral("DROP TABLE <#table_name#> <#more#>"));
    EXPECT_EQ(editor.selectedText(), u"<#table_name#>");
    editor.replaceSelectedText(QStringLiteral("tä"));
    EXPECT_TRUE(editor.SelectNextField());
    EXPECT_EQ(editor.selectedText(), u"<#more#>");
    editor.replaceSelectedText(QString());
    EXPECT_FALSE(editor.SelectNextField());
    EXPECT_EQ(editor.text(), u"-- größer\nDROP TABLE tä ");
}
