// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

class QJSEngine;

namespace orbis {

class ScriptBridge;
class ScriptDatabases;
class ScriptWatchdog;

/// Where an error of a script happened, and what it says.
struct ScriptError
{
    QString message;
    QString file;
    int line = 0; ///< 0: not known

    /// "file:line: message".
    QString Text() const;
};

/// Runs scripts: JavaScript with the bound classes in the global `qt`, the
/// databases in `db`, and `console`, `wait`, timers, `exit` beside them. Native
/// objects that a script made and nobody else keeps go with the engine. Main
/// thread, but for Stop.
class ScriptEngine
{
public:
    using Sink = std::function<void(const QString& line)>;

    /// `factory` is what `db` opens databases with; null leaves `db` without.
    explicit ScriptEngine(const rc::Ptr<HF::I_LConnectionFactory>& factory);
    ~ScriptEngine();
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;

    /// Lines of console.log; and of console.error and errors that nobody caught.
    void SetOutput(Sink output, Sink errors);
    /// Takes errors that nobody caught, in place of their text in the output.
    void SetErrorSink(std::function<void(const ScriptError&)> sink) { m_errorSink = std::move(sink); }
    /// What `db.current` is: a database that the program has open.
    void SetCurrentDatabase(const rc::Ptr<HF::I_LDatabase>& database);

    /// Makes the two known as the globals `connection` and `database`.
    void SetConnected(const rc::Ptr<HF::I_LConnection>& connection, const rc::Ptr<HF::I_LDatabase>& database);
    /// A global of the script's, such as a map of values that it may change.
    void SetGlobal(const QString& name, const QVariant& value);
    QVariant get_Global(const QString& name) const;

    /// Called while the script runs, where it may be kept waiting: the place to
    /// handle events of a program whose window is to stay alive.
    void SetBreather(std::function<void()> breathe);
    /// Ends a script that keeps the event loop from turning for so long, as an
    /// error. Milliseconds; 0, which holds without a call: never.
    void SetTimeLimit(int milliseconds);

    /// Runs a text to its end, and then its windows, timers and promises to
    /// theirs. The exit code: 0, what the script gave to `exit`, or 1 after an
    /// error that nobody caught.
    int Run(const QString& text, const QString& file, const QStringList& arguments);

    // The same for a program that has an event loop of its own: begin, let it turn
    // until the script is finished, and end.
    void Begin(const QString& text, const QString& file, const QStringList& arguments);
    /// Nothing is left to wait for, and no call of the script is on the stack.
    bool IsFinished() const;
    /// The exit code.
    int End();
    /// Whether a call of the script is on the stack; the engine has to live then.
    bool IsBusy() const;
    /// Whether the script made the object, or what it is in; true for what has the
    /// script's timers.
    bool IsMade(const QObject* object) const;

    /// Ends the script wherever it is, also in a loop without end. Any thread.
    void Stop();
    bool IsStopped() const { return m_stopped.load(); }
    /// The time limit ended it.
    bool IsTimedOut() const { return m_timedOut.load(); }
    /// The last error that nobody caught.
    const ScriptError& get_LastError() const { return m_lastError; }
    /// Objects that hooks and slots of the script keep alive, for tests of leaks.
    void CollectGarbage();

private:
    class Registry;
    void Report(ScriptError error);
    void ReportHook(const QString& where, const QString& text);
    void ReportTimeOut(ScriptError error);
    void Silent(); ///< on the watchdog's thread
    /// Lets the event loop turn until nothing is left to wait for.
    void Linger();
    bool HasWork() const;

    std::unique_ptr<QJSEngine> m_engine;
    std::unique_ptr<ScriptBridge> m_bridge;
    std::unique_ptr<ScriptDatabases> m_databases;
    std::unique_ptr<ScriptWatchdog> m_watchdog;
    Sink m_output, m_errors;
    std::function<void(const ScriptError&)> m_errorSink;
    ScriptError m_lastError;
    QString m_file;
    int m_errorCount = 0;
    int m_exitCode = 0;
    int m_timeLimit = 0;
    bool m_hasExit = false;
    bool m_isFailed = false; ///< the text itself; its windows do not go on
    bool m_isTimeOutTold = false;
    std::atomic<bool> m_stopped{false};
    std::atomic<bool> m_timedOut{false};
};

} // namespace orbis
