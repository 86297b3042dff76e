// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/text_run.h"

#include "nub/orbsql/rows.h"

#include <algorithm>
#include <string_view>

namespace nub::orbsql {

namespace {

/// Below this many bytes preparing a statement costs next to nothing.
constexpr std::size_t LongBytes = 4096;

bool SameLetter(char a, char b)
{
    return (a | 0x20) == (b | 0x20);
}

/// A single INSERT of many values that gives no rows. Preparing one copies all of
/// its parsed values, which takes as long as a tenth of running it.
bool IsLongInsert(std::string_view sql, const TextOutline& outline)
{
    constexpr std::string_view insert = "insert", returning = "returning";
    return sql.size() >= LongBytes && outline.statements == 1 && !outline.hasParameters
        && std::equal(insert.begin(), insert.end(), sql.begin(), SameLetter)
        && std::search(sql.begin(), sql.end(), returning.begin(), returning.end(), SameLetter) == sql.end();
}

} // namespace

TextRun::TextRun(std::shared_ptr<Session> session, const String& text, const ValueArray* binds)
    : m_session(std::move(session)), m_hold(m_session->Hold())
{
    std::string sql = text.ToUtf8();
    TextOutline outline = OutlineText(sql);
    if (!binds && IsLongInsert(sql, outline)) {
        m_insert = std::move(sql);
        m_count = 1;
    } else {
        m_statements = m_session->Extract(sql, m_count);
    }
    m_mark = m_session->BeginText(std::move(outline), m_count);
    if (binds)
        m_binds = *binds;
    if (m_count == 0)
        End();
}

TextRun::~TextRun()
{
    if (!m_ended)
        m_session->FailText(m_mark.id);
}

bool TextRun::AtEnd() noexcept
{
    if (!m_ended && m_session->HasFailed(m_mark.id))
        End();
    return m_ended;
}

Outcome TextRun::Next()
{
    if (AtEnd())
        return Outcome::Failure("There is no further statement");
    Outcome outcome = RunNext();
    if (outcome.failed)
        m_session->FailText(m_mark.id);
    if (outcome.failed || m_next == m_count)
        End();
    return outcome;
}

Outcome TextRun::RunNext()
{
    if (m_session->IsInterrupted(m_mark))
        return Outcome::Failure("INTERRUPT Error: Interrupted!");
    if (!m_insert.empty()) {
        ++m_next;
        return m_session->ExecuteInsert(m_insert);
    }
    PreparedHandle statement;
    std::string error = m_session->Prepare(m_statements, m_next++, statement);
    if (error.empty())
        error = BindParameters(statement, m_binds, BindExtent::Own);
    if (!error.empty())
        return Outcome::Failure(error);
    return m_session->Execute(statement, m_mark);
}

void TextRun::End() noexcept
{
    m_ended = true;
    m_statements.reset();
    m_insert = {};
    m_binds = {};
    m_hold.Release();
}

} // namespace nub::orbsql
