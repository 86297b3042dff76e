// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/parser.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QRandomGenerator>

using HF::LParser;

TEST(Parser, ForeignKeys)
{
    LParser parser(QStringLiteral("FOREIGN KEY ( #FK_FIELDS ) REFERENCES %PARENT ( #PK_FIELDS ) @STOP"));
    ASSERT_TRUE(parser.Parse(QStringLiteral("FOREIGN KEY (\"x y\", z) REFERENCES p(\"i,d\", \"q\"\"q\") ON DELETE")));
    EXPECT_EQ(parser.get_List(QStringLiteral("FK_FIELDS")), QStringList({QStringLiteral("x y"), QStringLiteral("z")}));
    EXPECT_EQ(parser.get_Ident(QStringLiteral("PARENT")), u"p");
    EXPECT_EQ(parser.get_List(QStringLiteral("PK_FIELDS")), QStringList({QStringLiteral("i,d"), QStringLiteral("q\"q")}));
    for (const char* wrong : {"", "FOREIGN", "FOREIGN KEY (a REFERENCES p(b)", "FOREIGN KEY (a) REFERENCES sch ema.p (b)",
                              "FOREIGN KEY (a) REFERENCES"})
        EXPECT_FALSE(parser.Parse(QString::fromUtf8(wrong))) << wrong;
}

TEST(Parser, OptionalPartsGoBackWhenTheyDoNotFit)
{
    LParser parser(QStringLiteral("A [ B %X ] [ C ] %Y @STOP"));
    ASSERT_TRUE(parser.Parse(QStringLiteral("a b")));
    EXPECT_EQ(parser.get_Ident(QStringLiteral("Y")), u"b");
    EXPECT_TRUE(parser.get_Ident(QStringLiteral("X")).isEmpty());
    ASSERT_TRUE(parser.Parse(QStringLiteral("a /* b */ b one -- c\n c two")));
    EXPECT_EQ(parser.get_Ident(QStringLiteral("X")), u"one");
    EXPECT_EQ(parser.get_Ident(QStringLiteral("Y")), u"two");
}

TEST(Parser, AnyInputIsSafe)
{
    // Words and marks at random; ORBIS_FUZZ_SECONDS makes it long.
    const QStringList pieces{QStringLiteral("CREATE"), QStringLiteral("INDEX"),  QStringLiteral("UNIQUE"), QStringLiteral("ON"),
                             QStringLiteral("("),      QStringLiteral(")"),      QStringLiteral("["),      QStringLiteral("]"),
                             QStringLiteral("{"),      QStringLiteral("}"),      QStringLiteral(","),      QStringLiteral("."),
                             QStringLiteral("\""),     QStringLiteral("'"),      QStringLiteral("`"),      QStringLiteral("--"),
                             QStringLiteral("/*"),     QStringLiteral("*/"),     QStringLiteral("\n"),     QStringLiteral(" "),
                             QStringLiteral("a"),      QStringLiteral("\"b c\""), QStringLiteral("1x"),    QString(QChar(0xD800)),
                             QString(QChar(0)),        QStringLiteral("表"),      QStringLiteral("$$"),    QStringLiteral("é")};
    LParser parsers[] = {LParser(QStringLiteral("CREATE [ UNIQUE ] INDEX %INDEX ON %NAME1 [ . %NAME2 ] ( #COLUMNS @STOP")),
                         LParser(QStringLiteral("FOREIGN KEY ( #A ) REFERENCES %P ( #B ) @STOP")),
                         LParser(QStringLiteral("[ [ %A ] ( #B ) ] %C")), LParser(QStringLiteral("[ [ ]")), LParser(QString())};
    const int seconds = qEnvironmentVariableIntValue("ORBIS_FUZZ_SECONDS");
    QRandomGenerator random(20261122);
    QElapsedTimer timer;
    timer.start();
    qint64 parsed = 0;
    for (int round = 0; round < 20000 || timer.elapsed() < seconds * 1000LL; ++round) {
        QString text = random.bounded(2) ? QStringLiteral("CREATE INDEX i ON t (") : QString();
        for (int i = random.bounded(24); i > 0; --i)
            text += pieces[random.bounded(int(pieces.size()))] + (random.bounded(3) ? QStringLiteral(" ") : QString());
        for (LParser& parser : parsers)
            parsed += parser.Parse(text);
    }
    EXPECT_GT(parsed, 0);
}
