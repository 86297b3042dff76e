// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/counted.h"
#include "nub/orbsql/duckdb_database.h"
#include "nub/orbsql/text_run.h"

namespace nub::orbsql {

/// One link of a result chain; all links share the run of their text.
class Result final : public Counted<I_Result>
{
public:
    /// `run` is null where nothing follows.
    Result(std::shared_ptr<TextRun> run, Outcome outcome) : m_run(std::move(run)), m_outcome(std::move(outcome)) {}

    std::int64_t get_AffectedRows() const override { return m_outcome.affected; }
    int get_Status() const override { return m_outcome.failed ? ResultStatus_Failed : ResultStatus_Done; }
    String get_ErrorMessage() const override { return m_outcome.error; }
    I_Cursor* get_Cursor() override;
    I_Result* NextResult() override;

private:
    const std::shared_ptr<TextRun> m_run;
    Outcome m_outcome;
};

/// Runs the first statement of the text: its result, or null for a text
/// without statements. The caller owns the reference.
I_Result* StartChain(std::shared_ptr<Session> session, const String& text, const ValueArray* binds);

} // namespace nub::orbsql
