// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "rc/ref.h"

#include <QString>

#include <atomic>
#include <functional>
#include <mutex>

namespace HF {

/// Where a task stands.
enum ELTaskState : int {
    TASK_WAITING = 0,
    TASK_RUNNING = 1,
    TASK_DONE = 2,
    TASK_CANCELLED = 3,
    TASK_FAILED = 4,
};

/// Long work that runs once, on whichever thread calls run(). The other
/// operations may come from any thread at any time.
class HF_EXPORT LTask : public rc::RefCounted
{
public:
    ~LTask() override;

    /// Performs the task on the calling thread. Nothing is thrown: an exception
    /// leaves the task failed with its text. Does nothing when cancelled before.
    virtual void run();
    /// Asks the task to end; seen within a statement.
    virtual void Cancel();
    /// Called by run() when the task has ended, on its thread; tells the watcher.
    virtual void Notify();

    ELTaskState get_State() const { return m_state.load(); }
    /// run() has come to its end; a cancelled task may still be on its way there.
    bool HasEnded() const { return m_ended.load(); }
    bool IsCancelled() const { return get_State() == TASK_CANCELLED; }
    /// Why it failed; empty otherwise.
    QString get_Error() const;
    QString get_Title() const;
    void put_Title(const QString& title);
    /// The one to be told of the end.
    void put_Watcher(std::function<void()> watcher);

protected:
    virtual void Perform() = 0;
    /// Marks the task failed; the first text stays. A cancelled task stays cancelled.
    void Fail(const QString& error);

private:
    std::atomic<ELTaskState> m_state{TASK_WAITING};
    std::atomic<bool> m_ended{false};
    mutable std::mutex m_mutex;
    QString m_error;
    QString m_title;
    std::function<void()> m_watcher;
};

/// Runs the task on a worker of the host.
HF_EXPORT void StartTask(const rc::Ref<LTask>& task);

} // namespace HF
