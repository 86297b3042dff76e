// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/result_chain.h"

#include "nub/orbsql/cursor.h"

namespace nub::orbsql {

I_Cursor* Result::get_Cursor()
{
    if (!m_outcome.rows)
        return nullptr;
    return new Cursor(std::exchange(m_outcome.rows, nullptr));
}

I_Result* Result::NextResult()
{
    m_outcome.rows.reset(); // nobody will read them
    if (!m_run || m_run->AtEnd())
        return nullptr;
    Outcome next = m_run->Next();
    return new Result(m_run, std::move(next));
}

I_Result* StartChain(std::shared_ptr<Session> session, const String& text, const ValueArray* binds)
{
    std::shared_ptr<TextRun> run;
    try {
        run = std::make_shared<TextRun>(std::move(session), text, binds);
    } catch (const xException& failure) {
        return new Result(nullptr, Outcome::Failure(failure.what()));
    }
    if (run->AtEnd())
        return nullptr;
    Outcome first = run->Next();
    return new Result(std::move(run), std::move(first));
}

} // namespace nub::orbsql
