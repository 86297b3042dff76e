// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/statement.h"

#include "nub/orbsql/result_chain.h"

namespace nub::orbsql {

Statement::Statement(std::shared_ptr<Session> session, const String& text) : m_session(std::move(session))
{
    const SessionHold hold = m_session->Hold();
    const std::string sql = text.ToUtf8();
    std::size_t count = 0;
    const ExtractedHandle statements = m_session->Extract(sql, count);
    if (count != 1)
        throw xException(count == 0 ? "There is no statement to prepare"
                                    : "Only one statement can be prepared at once");
    if (const std::string error = m_session->Prepare(statements, 0, m_prepared); !error.empty())
        throw xException(error.c_str());
    m_outline = OutlineText(sql);
    m_session->Attach(this);
}

Statement::~Statement() { m_session->Detach(this); }

void Statement::BindValues(const ValueArray* values)
{
    const SessionHold hold = m_session->Hold();
    m_binds = values ? *values : ValueArray();
}

I_Result* Statement::Execute(int)
{
    const SessionHold hold = m_session->Hold();
    if (!m_prepared)
        throw xException("The database has been closed");
    duckdb_clear_bindings(m_prepared.get());
    if (const std::string error = BindParameters(m_prepared, m_binds, BindExtent::All); !error.empty())
        throw xException(error.c_str());
    TextMark mark = m_session->BeginText(m_outline, 1);
    Outcome outcome = m_session->Execute(m_prepared, mark);
    if (outcome.failed) {
        m_session->FailText(mark.id);
        throw xException(outcome.error);
    }
    return new Result(nullptr, std::move(outcome));
}

} // namespace nub::orbsql
