// SPDX-License-Identifier: GPL-3.0-or-later
// The splitter against the engine's own reading of the same texts.
#include "hf/statement_splitter.h"

#include <duckdb.h>

#include <QStringList>

#include <gtest/gtest.h>

#include <random>

namespace {

using HF::LStatementSplitter;
using HF::LStatementText;

/// Feeds the text in pieces of the given sizes, again and again.
QList<LStatementText> Split(QStringView text, const std::vector<qsizetype>& sizes)
{
    LStatementSplitter splitter;
    QList<LStatementText> statements;
    const auto take = [&] {
        while (auto statement = splitter.Next())
            statements.append(*statement);
    };
    std::size_t next = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype size = std::min(sizes[next++ % sizes.size()], text.size() - at);
        splitter.Feed(text.mid(at, size));
        at += size;
        take();
    }
    splitter.Finish();
    take();
    return statements;
}

QStringList Texts(const QList<LStatementText>& statements)
{
    QStringList texts;
    for (const LStatementText& statement : statements)
        texts.append(statement.IsComplete ? statement.Text : QLatin1Char('!') + statement.Text);
    return texts;
}

class Splitter : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(duckdb_open(nullptr, &m_database), DuckDBSuccess);
        ASSERT_EQ(duckdb_connect(m_database, &m_connection), DuckDBSuccess);
    }
    void TearDown() override
    {
        duckdb_disconnect(&m_connection);
        duckdb_close(&m_database);
    }
    /// How many statements the engine finds; -1 when the text does not parse.
    int EngineCount(const QString& text)
    {
        duckdb_extracted_statements statements = nullptr;
        const auto count = duckdb_extract_statements(m_connection, text.toUtf8().constData(), &statements);
        const char* error = count ? nullptr : duckdb_extract_statements_error(statements);
        const int result = error && *error ? -1 : static_cast<int>(count);
        duckdb_destroy_extracted(&statements);
        return result;
    }

private:
    duckdb_database m_database = nullptr;
    duckdb_connection m_connection = nullptr;
};

/// Makes texts of statements that parse, out of everything that may hide a semicolon.
class TextMaker
{
public:
    explicit TextMaker(unsigned seed) : m_random(seed), m_wideBlanks(seed % 4 == 0) {}

    QString Text()
    {
        QString text = Gap();
        for (int i = Below(6); i > 0; --i) {
            for (int j = 1 + Below(3); j > 0; --j)
                text += u';' + Gap();
            text += Statement() + Gap();
        }
        return text + u';' + Gap();
    }

private:
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    QString Pick(std::initializer_list<const char*> choices)
    {
        return QString::fromUtf8(choices.begin()[Below(static_cast<int>(choices.size()))]);
    }
    /// Pieces that mean something to a lexer.
    QString Noise()
    {
        QString noise;
        for (int i = Below(7); i > 0; --i)
            noise += Pick({";", "'", "\"", "--", "/*", "*/", "*", "/", "$$", "$a$", "$", "\\", "\n", "\r\n", " ", "E", "e",
                           "a", "1", "ä", "😀", "''", "\t", "-", "x'", "U&", "_", "\\'", "\\\\", "$ä1$", "."});
        return noise;
    }
    /// Text of a comment. The engine looks for wide blanks with simpler rules, and misses them behind odd quotes and comments.
    QString Hidden()
    {
        QString text = Noise();
        return m_wideBlanks ? text.remove(u'\'').remove(u'"').remove(u'$').remove(u'-') : text;
    }
    QString Gap()
    {
        QString gap;
        for (int i = Below(3); i > 0; --i) {
            switch (Below(5)) {
            case 0: gap += QLatin1String("--") + Hidden().remove(u'\n').remove(u'\r') + (m_wideBlanks ? QStringLiteral("\n") : Pick({"\n", "\r", "\r\n"}));
                break;
            case 1: gap += Comment(2); break;
            case 2: gap += m_wideBlanks ? Pick({"\u00a0", "\u2003", "\u3000"}) : QString(); break;
            default: gap += Pick({" ", "\n", "\t", "\r\n", "\f"});
            }
        }
        return gap;
    }
    QString Comment(int depth)
    {
        // Slashes and stars that would open or close come from the nesting only.
        QString inner = Hidden().remove(u'*').remove(u'/');
        if (depth && Below(2))
            inner += Comment(depth - 1) + Hidden().remove(u'*').remove(u'/');
        return QLatin1String(Below(2) ? "/* " : "/**") + inner + QLatin1String(Below(2) ? " */" : "***/");
    }
    QString Expression()
    {
        switch (m_wideBlanks ? 4 + Below(6) : Below(10)) {
        case 0: return u'\'' + Noise().replace(u'\'', QLatin1String("''")) + u'\'';
        case 1: return Pick({"E'", "e'"}) + Escaped() + u'\'';
        case 2: return DollarQuoted();
        case 3: return QLatin1String("a.\"x") + Noise().replace(u'"', QLatin1String("\"\"")) + u'"';
        case 4: return Pick({"1", "1.5", "1e5", "1e-5", ".5", "1.", "1_000", "0x1F"});
        case 5: return Pick({"e", "E", m_wideBlanks ? "x" : "a$$b", "_x", "ä", "$1", "name1", "\"e\"", "a$b", "e1"});
        case 6: return Pick({"1-1", "- 1", "2*3", "4/2", "(-(1))", "1 - -1", m_wideBlanks ? "'a'" : "'a'||E'\\''||'b'"});
        case 7: return QLatin1String("[") + Expression() + u']';
        case 8: return QLatin1String("(") + Gap() + Expression() + Gap() + u')';
        default: return QLatin1String("f(") + Expression() + u',' + Gap() + Expression() + u')';
        }
    }
    QString Escaped()
    {
        QString text;
        for (int i = Below(6); i > 0; --i)
            text += Pick({"\\'", "''", "\\\\", ";", "\"", "a", "--", "/*", "\\n", "\n", "$$"});
        return text;
    }
    QString DollarQuoted()
    {
        const QString tag = Pick({"$$", "$a$", "$A1_$", "$ä$"});
        QString inner = Noise().remove(tag);
        while (inner.contains(tag))
            inner.remove(tag);
        // What stands at the seam must not make an earlier end.
        return tag + inner + (inner.endsWith(u'$') ? QStringLiteral(" ") : QString()) + tag;
    }
    QString Statement()
    {
        QString text = Pick({"SELECT", "select", "SELECT DISTINCT", "VALUES ("});
        const bool values = text.startsWith(QLatin1String("VALUES"));
        for (int i = Below(4); i >= 0; --i)
            text += u' ' + Gap() + Expression() + Gap() + (i ? QStringLiteral(",") : QString());
        return text + (values ? u')' : u' ');
    }

    std::mt19937 m_random;
    const bool m_wideBlanks;
};

TEST_F(Splitter, KnowsWhereStatementsEnd)
{
    const struct
    {
        const char* text;
        QStringList statements; ///< "!" in front of one that is not complete
    } cases[] = {
        {"", {}},
        {" ;;\n; ", {}},
        {"-- only\n/* comments */", {}},
        {"SELECT 1; SELECT 2;", {"SELECT 1", "SELECT 2"}},
        {"/* a; */ SELECT ';', \"; \"\"\" -- ;\n, 2 ; ", {"SELECT ';', \"; \"\"\" -- ;\n, 2"}},
        {"SELECT E'\\';', 'a\\';SELECT 2;", {"SELECT E'\\';', 'a\\'", "SELECT 2"}},
        {"SELECT xe'\\';SELECT 1e'\\';';", {"SELECT xe'\\'", "SELECT 1e'\\';'"}},
        {"SELECT $$;'$$, $t$ $$ ; $t$, $1;", {"SELECT $$;'$$, $t$ $$ ; $t$, $1"}},
        {"SELECT a$b$; SELECT $b$;", {"SELECT a$b$", "!SELECT $b$;"}},
        {"/* /* ; */ ; */ SELECT 1;", {"SELECT 1"}},
        {"SELECT 1 --x;\r;", {"SELECT 1 --x;"}},
        {"SELECT 1", {"!SELECT 1"}},
        {"SELECT 'a;", {"!SELECT 'a;"}},
        {"SELECT 1; /* SELECT 2;", {"SELECT 1", "!"}},
        {"SELECT 1; -- end", {"SELECT 1"}},
    };
    for (const auto& each : cases) {
        const QString text = QString::fromUtf8(each.text);
        for (const auto& sizes : {std::vector<qsizetype>{1}, {3, 1}, {1000}})
            EXPECT_EQ(Texts(Split(text, sizes)), each.statements) << each.text;
    }
}

TEST_F(Splitter, CountsLines)
{
    const QList<LStatementText> statements =
        Split(u"\n-- x\nSELECT '\n\n'\n;\r\n/*\n*/ SELECT $$\n$$, E'\\\n', \"\n\"; SELECT 3;\nSELECT", {2});
    ASSERT_EQ(statements.size(), 4);
    const std::pair<int, int> lines[] = {{3, 6}, {8, 11}, {11, 11}, {12, 12}};
    for (qsizetype i = 0; i < statements.size(); ++i)
        EXPECT_EQ(std::pair(int(statements[i].Line), int(statements[i].EndLine)), lines[i]) << i;
    const QList<LStatementText> open = Split(u"\n\n /* /* \n */ \n", {1});
    ASSERT_EQ(open.size(), 1);
    EXPECT_EQ(open.first().Line, 3);
}

TEST_F(Splitter, AgreesWithTheEngine)
{
    int parsed = 0;
    for (unsigned seed = 1; seed <= 20000; ++seed) {
        const QString text = TextMaker(seed).Text();
        const int count = EngineCount(text);
        const std::vector<qsizetype> sizes =
            seed % 3 == 0 ? std::vector<qsizetype>{1} : std::vector<qsizetype>{qsizetype(seed % 7 + 1), qsizetype(seed % 13 + 1)};
        const QList<LStatementText> statements = Split(text, sizes);
        // However it is cut, the same comes out.
        ASSERT_EQ(Texts(statements), Texts(Split(text, {text.size() + 1}))) << seed << "\n" << text.toStdString();
        if (count < 0)
            continue; // some names are no names
        ++parsed;
        ASSERT_EQ(statements.size(), count) << seed << "\n" << text.toStdString();
        for (const LStatementText& statement : statements) {
            // A comment may have swallowed the last semicolon, which the engine does not need.
            ASSERT_TRUE(statement.IsComplete || &statement == &statements.last()) << seed << "\n" << text.toStdString();
            ASSERT_EQ(EngineCount(statement.Text), 1) << seed << "\n" << statement.Text.toStdString();
        }
    }
    EXPECT_GT(parsed, 5000);
}

TEST_F(Splitter, LongStatementsInPieces)
{
    // The engine's own limit on nesting is far; this is about length.
    const QString row = QStringLiteral("('it''s; $$ -- /* ', E'\\';', $q$;$q$), ");
    QString statement = QStringLiteral("VALUES ");
    for (int i = 0; i < 120000; ++i)
        statement += row;
    statement += QLatin1String("(1, 2, 3)");
    ASSERT_GT(statement.size(), 4'000'000);
    const QList<LStatementText> statements = Split(statement + QLatin1String(";\nSELECT 1;"), {65536});
    ASSERT_EQ(statements.size(), 2);
    EXPECT_EQ(statements[0].Text, statement);
    EXPECT_EQ(statements[1].Line, 2);
}

} // namespace
