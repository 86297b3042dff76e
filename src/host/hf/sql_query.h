// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/query_result.h"
#include "hf/sql_value.h"

namespace HF {

class LDatabaseEngine;

/// The object through which SQL text reaches a database. Any thread, one at a
/// time; Interrupt from any.
class HF_EXPORT I_LSqlQuery : public rc::RefCounted
{
public:
    virtual const LDatabaseEngine& get_Engine() const = 0;
    /// Ends the run at its next result, and the statement that runs when the
    /// query is interruptible.
    virtual void Interrupt() = 0;
    /// Whether Interrupt may end a running statement. Off at first.
    virtual void SetInterruptible(bool on) = 0;
    /// Runs every statement of the text until one fails; never throws. Flags:
    /// ELQueryFlags.
    virtual QList<LQueryResult> Execute(const QString& text, int flags, const RcList<I_LSqlValue>& binds) = 0;
    /// Prepares a statement, which later calls of Execute run instead of their text.
    virtual LQueryResult Prepare(const QString& text, int flags) = 0;
    /// Keeps other threads out of the session while the result lives, for a
    /// transaction of several texts; the calling thread goes on using it. Null when
    /// the engine has no such thing.
    virtual rc::Ptr<rc::RefCounted> HoldSession() { return nullptr; }
};

} // namespace HF
