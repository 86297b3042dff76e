// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/keywords.h"

#include <algorithm>
#include <optional>
#include <string>

namespace nub::orbsql {

namespace {

bool is_word(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || (c & 0x80);
}

class Scanner
{
public:
    explicit Scanner(std::string_view sql) : m_sql(sql) {}

    TextOutline Run()
    {
        TextOutline outline;
        bool first = true;
        while (m_at < m_sql.size()) {
            const char c = m_sql[m_at];
            if (SkipComment())
                continue;
            const bool blank = c == ' ' || (c >= '\t' && c <= '\r');
            if (first && c != ';' && !blank)
                ++outline.statements;
            if (c == ';') {
                first = true;
                ++m_at;
            } else if (blank) {
                ++m_at;
            } else if (c == '\'' || c == '"') {
                SkipQuoted(c, false);
                first = false;
            } else if (c == '$') {
                outline.hasParameters |= !SkipDollar();
                first = false;
            } else if (is_word(c)) {
                const std::string_view word = Word();
                if ((word == "e" || word == "E") && At(0) == '\'')
                    SkipQuoted('\'', true);
                else if (first)
                    if (const auto kind = KindOf(word))
                        outline.words.push_back(*kind);
                first = false;
            } else {
                outline.hasParameters |= c == '?';
                first = false;
                ++m_at;
            }
        }
        return outline;
    }

private:
    char At(std::size_t offset) const { return m_at + offset < m_sql.size() ? m_sql[m_at + offset] : '\0'; }

    std::string_view Word()
    {
        const std::size_t start = m_at;
        while (m_at < m_sql.size() && (is_word(m_sql[m_at]) || m_sql[m_at] == '$'))
            ++m_at;
        return m_sql.substr(start, m_at - start);
    }

    static std::optional<TransactionWord> KindOf(std::string_view word)
    {
        std::string upper(word);
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
        if (upper == "BEGIN" || upper == "START")
            return TransactionWord::Begin;
        if (upper == "COMMIT" || upper == "END")
            return TransactionWord::Commit;
        if (upper == "ROLLBACK" || upper == "ABORT")
            return TransactionWord::Rollback;
        return std::nullopt;
    }

    bool SkipComment()
    {
        if (At(0) == '-' && At(1) == '-') {
            m_at = std::min(m_sql.find_first_of("\r\n", m_at), m_sql.size());
            return true;
        }
        if (At(0) != '/' || At(1) != '*')
            return false;
        int depth = 0;
        do {
            if (At(0) == '/' && At(1) == '*') {
                ++depth;
                m_at += 2;
            } else if (At(0) == '*' && At(1) == '/') {
                --depth;
                m_at += 2;
            } else {
                ++m_at;
            }
        } while (depth > 0 && m_at < m_sql.size());
        return true;
    }

    void SkipQuoted(char quote, bool backslashes)
    {
        // A doubled quote ends one piece and begins the next at once.
        for (++m_at; m_at < m_sql.size() && m_sql[m_at] != quote; ++m_at)
            if (backslashes && m_sql[m_at] == '\\')
                ++m_at;
        ++m_at;
    }

    /// False at a parameter.
    bool SkipDollar()
    {
        std::size_t end = m_at + 1;
        const bool isNumber = At(1) >= '0' && At(1) <= '9';
        while (end < m_sql.size() && is_word(m_sql[end]))
            ++end;
        if (isNumber || end >= m_sql.size() || m_sql[end] != '$') {
            m_at = end;
            return false;
        }
        const std::string_view tag = m_sql.substr(m_at, end + 1 - m_at);
        const std::size_t close = m_sql.find(tag, end + 1);
        m_at = close == std::string_view::npos ? m_sql.size() : close + tag.size();
        return true;
    }

    const std::string_view m_sql;
    std::size_t m_at = 0;
};

} // namespace

TextOutline OutlineText(std::string_view sql) { return Scanner(sql).Run(); }

} // namespace nub::orbsql
