// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/session.h"

namespace nub::orbsql {

/// A text of statements that run one by one, when asked. Holds the session
/// until the last has run or one has failed. A run that is left before its end
/// counts as failed.
class TextRun
{
public:
    /// Parses the whole text; nothing runs yet. `binds` may be null. Throws
    /// xException for a text that does not parse.
    TextRun(std::shared_ptr<Session> session, const String& text, const ValueArray* binds);
    ~TextRun();
    TextRun(const TextRun&) = delete;
    TextRun& operator=(const TextRun&) = delete;

    /// No further statement will run; a failure of rows already given ends the text as well.
    bool AtEnd() noexcept;
    /// Runs the next statement, with its own leading binds.
    Outcome Next();

private:
    Outcome RunNext();
    void End() noexcept;

    const std::shared_ptr<Session> m_session;
    SessionHold m_hold;
    ExtractedHandle m_statements;
    std::string m_insert; ///< in place of the statements: run as it stands
    std::size_t m_count = 0;
    std::size_t m_next = 0;
    ValueArray m_binds;
    TextMark m_mark;
    bool m_ended = false;
};

} // namespace nub::orbsql
