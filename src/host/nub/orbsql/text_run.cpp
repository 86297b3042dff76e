// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/text_run.h"

#include "nub/orbsql/rows.h"

namespace nub::orbsql {

TextRun::TextRun(std::shared_ptr<Session> session, const String& text, const ValueArray* binds)
    : m_session(std::move(session)), m_hold(m_session->Hold())
{
    const std::string sql = text.ToUtf8();
    m_statements = m_session->Extract(sql, m_count);
    m_mark = m_session->BeginText(OutlineText(sql), m_count);
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
    m_binds = {};
    m_hold.Release();
}

} // namespace nub::orbsql
