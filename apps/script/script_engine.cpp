// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_engine.h"

#include "script/script_bridge.h"
#include "script/script_databases.h"
#include "script/script_watchdog.h"

#include "weft/errors.h"
#include "weft/init.h"

#include <QApplication>
#include <QEventLoop>
#include <QJSEngine>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <algorithm>
#include <vector>

namespace orbis {

namespace {

/// Classes are built at this level of the runtime's start.
constexpr int ClassLevel = 2;

ScriptError Describe(const QJSValue& error)
{
    ScriptError described;
    described.message = error.toString();
    if (!error.isObject())
        return described;
    described.line = error.property(QStringLiteral("lineNumber")).toInt();
    const QString file = error.property(QStringLiteral("fileName")).toString();
    // The innermost line of the script itself counts, not one of the prelude.
    const QStringList frames = error.property(QStringLiteral("stack")).toString().split(u'\n');
    for (const QString& frame : frames) {
        const QString place = frame.mid(frame.indexOf(u'@') + 1);
        const qsizetype colon = place.lastIndexOf(u':');
        if (colon < 0 || place.contains(QLatin1String("prelude")))
            continue;
        const int line = place.mid(colon + 1).toInt();
        if (line <= 0)
            continue;
        described.file = QUrl(place.left(colon)).toLocalFile();
        if (described.file.isEmpty())
            described.file = place.left(colon);
        described.line = line;
        break;
    }
    if (described.file.isEmpty() && !file.contains(QLatin1String("prelude")) && !file.startsWith(QLatin1String("undefined")))
        described.file = QUrl(file).isLocalFile() ? QUrl(file).toLocalFile() : file;
    return described;
}

} // namespace

/// The engines that there are: what hooks and slots report goes to the one whose
/// script it was.
class ScriptEngine::Registry
{
public:
    static void Add(ScriptEngine* engine)
    {
        List().push_back(engine);
        weft::internal::set_error_handler([](const weft::String& where, const weft::String& text) {
            ScriptEngine* const owner = Owner();
            if (owner)
                owner->ReportHook(where.ToQString(), text.ToQString());
        });
    }
    static void Remove(ScriptEngine* engine)
    {
        std::erase(List(), engine);
        if (List().empty())
            weft::internal::set_error_handler(nullptr);
    }

private:
    static std::vector<ScriptEngine*>& List()
    {
        static std::vector<ScriptEngine*> engines;
        return engines;
    }
    static ScriptEngine* Owner()
    {
        for (ScriptEngine* engine : List())
            if (engine->m_bridge.get() == ScriptBridge::LastThrower())
                return engine;
        return List().empty() ? nullptr : List().back();
    }
};

QString ScriptError::Text() const
{
    if (file.isEmpty())
        return line > 0 ? QStringLiteral("%1: %2").arg(line).arg(message) : message;
    return line > 0 ? QStringLiteral("%1:%2: %3").arg(file).arg(line).arg(message)
                    : QStringLiteral("%1: %2").arg(file, message);
}

ScriptEngine::ScriptEngine(const rc::Ptr<HF::I_LConnectionFactory>& factory) : m_engine(std::make_unique<QJSEngine>())
{
    weft::internal::run_init_handlers(ClassLevel);
    m_bridge = std::make_unique<ScriptBridge>(*m_engine);
    m_bridge->isStopped = [this] { return m_stopped.load(); };
    m_bridge->onPrint = [this](const QString& line, bool isError) {
        if (const Sink& sink = isError ? m_errors : m_output)
            sink(line);
    };
    m_bridge->onUncaught = [this](const QJSValue& error) { Report(Describe(error)); };
    m_bridge->InstallModule(QStringLiteral("qt"));
    if (factory)
        m_databases = std::make_unique<ScriptDatabases>(*m_bridge, rc::Ref<HF::I_LConnectionFactory>(factory));
    Registry::Add(this);
}

ScriptEngine::~ScriptEngine()
{
    m_watchdog.reset();
    m_stopped.store(true); // what hooks say from here on is no error
    m_bridge->onCall = nullptr;
    m_bridge->StopTimers();
    m_databases.reset();
    m_bridge->Release();
    m_engine->collectGarbage();
    // What the collector let go of is deleted from the event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Registry::Remove(this);
    m_bridge.reset();
    m_engine.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ScriptEngine::SetOutput(Sink output, Sink errors)
{
    m_output = std::move(output);
    m_errors = std::move(errors);
}

void ScriptEngine::SetCurrentDatabase(const rc::Ptr<HF::I_LDatabase>& database)
{
    if (m_databases)
        m_databases->SetCurrent(database);
}

void ScriptEngine::SetConnected(const rc::Ptr<HF::I_LConnection>& connection, const rc::Ptr<HF::I_LDatabase>& database)
{
    if (m_databases)
        m_databases->SetConnected(connection, database);
}

void ScriptEngine::SetGlobal(const QString& name, const QVariant& value)
{
    m_engine->globalObject().setProperty(name, m_engine->toScriptValue(value));
}

QVariant ScriptEngine::get_Global(const QString& name) const
{
    return m_engine->globalObject().property(name).toVariant();
}

void ScriptEngine::CollectGarbage()
{
    m_engine->collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ScriptEngine::SetBreather(std::function<void()> breathe)
{
    m_bridge->onCall = std::move(breathe);
}

void ScriptEngine::SetTimeLimit(int milliseconds)
{
    m_timeLimit = milliseconds;
}

bool ScriptEngine::IsBusy() const
{
    return m_bridge->IsBusy();
}

bool ScriptEngine::IsMade(const QObject* object) const
{
    if (object == m_bridge.get())
        return true; // has the timers
    for (const QObject* one = object; one; one = one->parent())
        if (m_bridge->IsMade(one))
            return true;
    return false;
}

void ScriptEngine::Silent()
{
    m_timedOut.store(true);
    m_engine->setInterrupted(true);
}

void ScriptEngine::ReportTimeOut(ScriptError error)
{
    if (m_isTimeOutTold || m_stopped.load())
        return;
    m_isTimeOutTold = true;
    error.message =
        QObject::tr("The script did not return to the event loop for %1 s and was stopped.").arg(m_timeLimit / 1000.0);
    if (error.file.isEmpty())
        error.file = m_file;
    m_timedOut.store(false); // for Report to take it as it is
    Report(error);
    m_timedOut.store(true);
    Stop();
}

void ScriptEngine::ReportHook(const QString& where, const QString& text)
{
    if (m_bridge->IsOverflowing())
        return; // whoever called gets it
    ScriptError error;
    if (m_bridge.get() == ScriptBridge::LastThrower() && m_bridge->get_LastThrown().toString() == text)
        error = Describe(m_bridge->get_LastThrown());
    error.message = QStringLiteral("%1: %2").arg(where, text);
    Report(error);
}

void ScriptEngine::Report(ScriptError error)
{
    if (m_stopped.load())
        return; // the end that was asked for is no error
    if (m_timedOut.load())
        return ReportTimeOut(error);
    m_lastError = error;
    ++m_errorCount;
    if (m_errorSink)
        m_errorSink(error);
    else if (m_errors)
        m_errors(error.Text());
}

void ScriptEngine::Stop()
{
    m_stopped.store(true);
    m_engine->setInterrupted(true);
    if (m_databases)
        m_databases->Stop();
    QMetaObject::invokeMethod(m_bridge.get(), [bridge = m_bridge.get()] { bridge->Abort(); }, Qt::QueuedConnection);
}

bool ScriptEngine::HasWork() const
{
    if (m_stopped.load() || m_timedOut.load())
        return false;
    if (m_bridge->HasTimers())
        return true;
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [this](const QWidget* window) {
        return window->isVisible() && m_bridge->IsMade(window);
    });
}

void ScriptEngine::Linger()
{
    if (m_isFailed)
        return;
    // Promises settle from the event loop.
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (!HasWork())
            loop.quit();
    });
    if (!HasWork())
        return;
    poll.start(20);
    loop.exec();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

int ScriptEngine::Run(const QString& text, const QString& file, const QStringList& arguments)
{
    Begin(text, file, arguments);
    Linger();
    return End();
}

void ScriptEngine::Begin(const QString& text, const QString& file, const QStringList& arguments)
{
    m_file = file;
    QJSValue global = m_engine->globalObject();
    QJSValue script = m_engine->newObject();
    script.setProperty(QStringLiteral("file"), file);
    script.setProperty(QStringLiteral("args"), m_engine->toScriptValue(arguments));
    global.setProperty(QStringLiteral("script"), script);
    m_bridge->onExit = [this](int code) {
        m_exitCode = code;
        m_hasExit = true;
        Stop();
    };
    if (m_timeLimit > 0)
        m_watchdog = std::make_unique<ScriptWatchdog>(m_timeLimit, [this] { Silent(); });
    // An error that is no Error object shows in the trace only.
    QStringList trace;
    const ScriptBridge::Busy busy(*m_bridge);
    const QJSValue result = m_engine->evaluate(text, file, 1, &trace);
    if (!result.isError() && trace.isEmpty())
        return;
    ScriptError error = Describe(result);
    if (error.line == 0 && !trace.isEmpty()) {
        error.line = trace.first().section(u':', 1, 1).toInt();
        error.file = file;
    }
    if (error.file.isEmpty())
        error.file = file;
    Report(error);
    m_isFailed = true;
}

bool ScriptEngine::IsFinished() const
{
    return !IsBusy() && (m_isFailed || !HasWork());
}

int ScriptEngine::End()
{
    m_watchdog.reset();
    if (m_timedOut.load())
        ReportTimeOut({});
    m_bridge->onExit = nullptr;
    m_bridge->StopTimers();
    if (m_hasExit)
        return m_exitCode;
    return m_errorCount > 0 || m_stopped.load() ? 1 : 0;
}

} // namespace orbis
