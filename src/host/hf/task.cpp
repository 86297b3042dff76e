// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/task.h"

#include "hf/background.h"
#include "nub/exception.h"

namespace HF {

LTask::~LTask() = default;

void LTask::run()
{
    ELTaskState waiting = TASK_WAITING;
    if (m_state.compare_exchange_strong(waiting, TASK_RUNNING)) {
        try {
            Perform();
        } catch (const nub::xException& failure) {
            Fail(QString::fromUtf8(failure.what()));
        } catch (const std::exception& failure) {
            Fail(QString::fromUtf8(failure.what()));
        } catch (...) {
            Fail(QObject::tr("Unknown error"));
        }
        ELTaskState running = TASK_RUNNING;
        m_state.compare_exchange_strong(running, TASK_DONE);
    }
    m_ended.store(true);
    Notify();
}

void LTask::Cancel()
{
    ELTaskState state = m_state.load();
    while ((state == TASK_WAITING || state == TASK_RUNNING) && !m_state.compare_exchange_weak(state, TASK_CANCELLED)) {
    }
}

void LTask::Notify()
{
    std::function<void()> watcher;
    {
        const std::lock_guard guard(m_mutex);
        watcher = m_watcher;
    }
    if (watcher)
        watcher();
}

void LTask::Fail(const QString& error)
{
    {
        const std::lock_guard guard(m_mutex);
        if (m_error.isEmpty())
            m_error = error;
    }
    ELTaskState running = TASK_RUNNING;
    m_state.compare_exchange_strong(running, TASK_FAILED);
}

QString LTask::get_Error() const
{
    const std::lock_guard guard(m_mutex);
    return m_error;
}

QString LTask::get_Title() const
{
    const std::lock_guard guard(m_mutex);
    return m_title;
}

void LTask::put_Title(const QString& title)
{
    const std::lock_guard guard(m_mutex);
    m_title = title;
}

void LTask::put_Watcher(std::function<void()> watcher)
{
    const std::lock_guard guard(m_mutex);
    m_watcher = std::move(watcher);
}

void StartTask(const rc::Ref<LTask>& task)
{
    RunOnWorker([task] { task->run(); });
}

} // namespace HF
