// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/default_text.h"
#include "data/text_substitution.h"

#include "support/database_place.h"

namespace {

using DefaultTextTest = support::DatabasePlace;

TEST_F(DefaultTextTest, FromTheCatalogue)
{
    const std::pair<const char*, const char*> cases[] = {
        {"'It''s'", "It's"}, {"'(1)'", "'(1)'"},     {"'NULL'", "'NULL'"}, {"12.5", "12.5"},
        {"now()", "(now())"}, {"NULL", "NULL"},       {"", ""},             {"'2020-01-01'", "'2020-01-01'"},
        {"'007'", "'007'"},   {"''", "''"},           {"'null'", "'null'"}, {"'E'", "'E'"},
        {"' a '", " a "},     {"'''q'''", "'''q'''"}, {"-1", "-1"},         {"CAST('t' AS BOOLEAN)", "(CAST('t' AS BOOLEAN))"},
    };
    for (const auto& [engine, shown] : cases)
        EXPECT_EQ(DefaultFromCatalog(QString::fromUtf8(engine)), QString::fromUtf8(shown)) << engine;
}

/// Whatever a default is, showing it and writing it back must not change it.
TEST_F(DefaultTextTest, RoundTripThroughTheEngine)
{
    for (const char* text : {"'it''s'", "'007'", "''", "'null'", "'NULL'", "'(a)'", "' a '", "'''q'''", "'1e5'", "'E'",
                             "'a\nb'", "upper('x')", "'x' || 'y'", "12", "-3.5", "NULL", "'$NAME'"}) {
        SCOPED_TRACE(text);
        const QString given = QString::fromUtf8(text);
        Run(QStringLiteral("CREATE OR REPLACE TABLE t(i INTEGER, v VARCHAR DEFAULT %1); INSERT INTO t(i) VALUES (1)").arg(given));
        const QString query = QStringLiteral("SELECT column_default FROM duckdb_columns() WHERE table_name='t' AND column_name='v'");
        const QString shown = DefaultFromCatalog(Column(query));
        Run(QStringLiteral("CREATE OR REPLACE TABLE u(i INTEGER, v VARCHAR DEFAULT %1); INSERT INTO u(i) VALUES (1)")
                .arg(DefaultLiteral(shown)));
        EXPECT_EQ(Column(QStringLiteral("SELECT v FROM t")), Column(QStringLiteral("SELECT v FROM u"))) << shown.toStdString();
    }
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

TEST(TextSubstitution, IsDoneInOnePass)
{
    const QString text = SubstituteLiterals(QStringLiteral("$NAME $PNAME $PPNAME $OTHER $INDEX_ON$"),
                                            {{QStringLiteral("NAME"), QStringLiteral("$PNAME")},
                                             {QStringLiteral("PNAME"), QStringLiteral("it's")},
                                             {QStringLiteral("PPNAME"), QString()},
                                             {QStringLiteral("INDEX_ON"), QStringLiteral("t(a)")}});
    EXPECT_EQ(text, QStringLiteral("'$PNAME' 'it''s' '' $OTHER 't(a)'$"));
}

} // namespace
