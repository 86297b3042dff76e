// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/script_run.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace {

/// Milliseconds: between breaths of a script that runs, and between looks
/// whether one is over.
constexpr int BreathInterval = 50;
constexpr int PollInterval = 30;

} // namespace

ScriptRun::ScriptRun(const rc::Ptr<HF::I_LConnectionFactory>& factory, const rc::Ptr<HF::I_LDatabase>& current,
                     int secondsLimit)
    : m_engine(std::make_unique<orbis::ScriptEngine>(factory))
{
    m_engine->SetOutput([this](const QString& line) { emit Printed(line, false); },
                        [this](const QString& line) { emit Printed(line, true); });
    m_engine->SetErrorSink([this](const orbis::ScriptError& error) { emit Failed(error); });
    m_engine->SetCurrentDatabase(current);
    m_engine->SetTimeLimit(secondsLimit * 1000);
    m_engine->SetBreather([this] { Breathe(); });
    connect(&m_poll, &QTimer::timeout, this, &ScriptRun::FinishIfDone);
}

ScriptRun::~ScriptRun()
{
    for (const auto& [object, event] : m_postponed)
        delete event;
}

void ScriptRun::Start(const QString& text, const QString& file)
{
    m_sinceBreath.start();
    m_poll.start(PollInterval);
    m_engine->Begin(text, file, {});
}

void ScriptRun::Stop()
{
    if (m_engine)
        m_engine->Stop();
    FinishIfDone();
}

void ScriptRun::FinishIfDone()
{
    if (m_isFinished || !m_engine || !m_engine->IsFinished())
        return;
    m_isFinished = true;
    m_poll.stop();
    const int exitCode = m_engine->End();
    m_engine.reset(); // with all that the script left
    emit Finished(exitCode);
    deleteLater();
}

void ScriptRun::Breathe()
{
    if (m_isBreathing || !m_engine || m_engine->IsStopped() || m_sinceBreath.elapsed() < BreathInterval)
        return;
    m_isBreathing = true;
    qApp->installEventFilter(this);
    QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
    for (const auto& [object, event] : std::exchange(m_postponed, {})) {
        if (object)
            QCoreApplication::postEvent(object, event);
        else
            delete event;
    }
    m_isBreathing = false;
    m_sinceBreath.restart();
}

bool ScriptRun::IsOfScript(QObject* object) const
{
    if (auto* window = qobject_cast<QWindow*>(object)) {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        const auto found = std::find_if(widgets.begin(), widgets.end(),
                                        [&](const QWidget* widget) { return widget->windowHandle() == window; });
        return found != widgets.end() && m_engine->IsMade(*found);
    }
    return m_engine->IsMade(object);
}

bool ScriptRun::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Wheel:
    case QEvent::Close:
        if (!IsOfScript(object))
            return false;
        m_postponed.emplace_back(object, event->clone());
        event->ignore();
        return true;
    case QEvent::MouseMove:
    case QEvent::ContextMenu:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::Timer: // comes again
        return IsOfScript(object);
    default: return false;
    }
}
