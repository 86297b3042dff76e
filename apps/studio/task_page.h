// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/task.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWizardPage>

class QLabel;
class QProgressBar;
class QVBoxLayout;

/// How far a task is, for whoever reports it and the page that shows it. Any thread.
struct TaskFigures
{
    std::atomic<qint64> done{0};
    std::atomic<qint64> total{0}; ///< 0: not known
    std::atomic<qint64> note{0};  ///< a second figure, of the page's choosing
};

/// Last page of a wizard: runs a task in the background, with a bar, a rate and
/// what came of it. The page is complete when the task has ended. Main thread.
class TaskPage : public QWizardPage
{
    Q_OBJECT

public:
    /// Words for an amount of the task's figures, as in "12 rows".
    using Amount = QString (*)(qint64);

    TaskPage(const QString& title, Amount amount, QWidget* parent = nullptr);
    ~TaskPage() override;

    /// Runs it. The figures are the task's to write.
    void Run(const rc::Ref<HF::LTask>& task, const std::shared_ptr<TaskFigures>& figures);
    bool IsRunning() const { return m_timer.isActive(); }
    /// Asks the task to end; it has when Ended comes.
    void Cancel();
    bool isComplete() const override { return !m_timer.isActive() && m_task; }
    /// The line below the bar, once the task has ended.
    void put_Summary(const QString& text, bool isFailure);
    /// Puts something below.
    void AddWidget(QWidget* widget);

signals:
    void Ended();

private:
    void Look();

    Amount m_amount;
    QProgressBar* m_bar;
    QLabel* m_label;
    QLabel* m_summary;
    QVBoxLayout* m_layout;
    QTimer m_timer;
    QElapsedTimer m_clock;
    rc::Ptr<HF::LTask> m_task;
    std::shared_ptr<TaskFigures> m_figures;
};
