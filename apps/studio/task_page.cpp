// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/task_page.h"

#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QVBoxLayout>

namespace {
constexpr int Milliseconds = 150;
constexpr int Steps = 1000;
} // namespace

TaskPage::TaskPage(const QString& title, Amount amount, QWidget* parent)
    : QWizardPage(parent), m_amount(amount), m_bar(new QProgressBar(this)), m_label(new QLabel(this)), m_summary(new QLabel(this)),
      m_layout(new QVBoxLayout(this))
{
    setTitle(title);
    setFinalPage(true);
    m_bar->setRange(0, Steps);
    m_summary->setWordWrap(true);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_layout->addWidget(m_bar);
    m_layout->addWidget(m_label);
    m_layout->addWidget(m_summary);
    m_layout->addStretch();
    m_timer.setInterval(Milliseconds);
    connect(&m_timer, &QTimer::timeout, this, &TaskPage::Look);
}

TaskPage::~TaskPage()
{
    if (m_task)
        m_task->Cancel();
}

void TaskPage::AddWidget(QWidget* widget)
{
    m_layout->insertWidget(3, widget, 1);
}

void TaskPage::Run(const rc::Ref<HF::LTask>& task, const std::shared_ptr<TaskFigures>& figures)
{
    m_task = task;
    m_figures = figures;
    m_summary->clear();
    m_clock.start();
    m_timer.start();
    HF::StartTask(task);
    emit completeChanged();
}

void TaskPage::Cancel()
{
    if (!IsRunning())
        return;
    m_summary->setText(tr("Stopping..."));
    m_task->Cancel();
}

void TaskPage::Look()
{
    const qint64 done = m_figures->done, total = m_figures->total;
    const double seconds = double(m_clock.elapsed()) / 1000;
    const double rate = seconds > 0 ? double(done) / seconds : 0;
    const QLocale locale;
    m_bar->setRange(0, total > 0 ? Steps : 0);
    if (total > 0)
        m_bar->setValue(int(qMin(1.0, double(done) / double(total)) * Steps));
    QString text = tr("%1, %2 a second").arg(m_amount(done), m_amount(qint64(rate)));
    if (total > done && rate > 0)
        text += tr(", about %n second(s) left", nullptr, int(double(total - done) / rate) + 1);
    m_label->setText(text);
    if (!m_task->HasEnded())
        return;
    m_timer.stop();
    m_bar->setRange(0, Steps);
    m_bar->setValue(m_task->get_State() == HF::TASK_DONE ? Steps : m_bar->value());
    m_label->setText(tr("%1 in %2 s").arg(m_amount(done), locale.toString(seconds, 'f', 1)));
    emit completeChanged();
    emit Ended();
}

void TaskPage::put_Summary(const QString& text, bool isFailure)
{
    m_summary->setText(text);
    m_summary->setStyleSheet(isFailure ? QStringLiteral("font-weight: bold") : QString());
}
