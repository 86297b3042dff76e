// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"
#include "script/script_engine.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

/// One run of a script in the window. The script uses widgets, so it runs on the
/// main thread; while it runs, its calls into the bridge let the window handle
/// events now and then, and a time limit ends it when it makes none. What happens
/// to the script's own windows meanwhile waits until it has come back. Deletes
/// itself when it has finished. Main thread.
class ScriptRun : public QObject
{
    Q_OBJECT

public:
    ScriptRun(const rc::Ptr<HF::I_LConnectionFactory>& factory, const rc::Ptr<HF::I_LDatabase>& current, int secondsLimit);
    ~ScriptRun() override;

    /// Returns when the text has run; its windows and timers may go on.
    void Start(const QString& text, const QString& file);
    /// Ends it at once, or as soon as its call on the stack is back.
    void Stop();

    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    void Printed(const QString& line, bool isError);
    /// An error that nobody caught.
    void Failed(const orbis::ScriptError& error);
    void Finished(int exitCode);

private:
    void Breathe();
    void FinishIfDone();
    bool IsOfScript(QObject* object) const;

    std::unique_ptr<orbis::ScriptEngine> m_engine;
    QElapsedTimer m_sinceBreath;
    QTimer m_poll;
    bool m_isBreathing = false;
    bool m_isFinished = false;
    std::vector<std::pair<QPointer<QObject>, QEvent*>> m_postponed;
};
