// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/class.h"
#include "weft/weak_ref.h"

#include <QHash>
#include <QJSEngine>
#include <QJSValue>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>
#include <vector>

namespace orbis {

/// Holds a value of the runtime for the script: the engine deletes it with the
/// last script object that refers to it. A function of a script that is kept
/// beside its owner has its box in one, too.
class ScriptHandle : public QObject
{
    Q_OBJECT

public:
    explicit ScriptHandle(const weft::Any& value) : m_value(value) {}
    ~ScriptHandle() override;
    const weft::Any& get_Value() const { return m_value; }

    std::function<void()> onGone;

private:
    weft::Any m_value;
};

/// An error that a script threw, on its way through native code.
class ScriptException : public std::exception
{
public:
    explicit ScriptException(const QJSValue& error);
    const QJSValue& get_Error() const { return m_error; }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    QJSValue m_error;
    QByteArray m_text;
};

/// Between the runtime and the JavaScript engine: values both ways, calls of
/// bound entries, classes that scripts derive, and the lives of objects. What
/// is marked invokable is called by the prelude only. Main thread.
class ScriptBridge : public QObject
{
    Q_OBJECT

public:
    explicit ScriptBridge(QJSEngine& engine);
    ~ScriptBridge() override;

    /// Makes the module's classes known as a global of its name.
    void InstallModule(const QString& name);

    QJSValue ToScript(const weft::Any& value);
    /// Throws weft::Error for what has no form in the runtime. A function keeps
    /// itself alive, unless the owner is an object that the script made: then it
    /// lives as long as that.
    weft::Any FromScript(const QJSValue& value, const QJSValue& owner = {});
    /// Calls a function of the script; throws ScriptException.
    QJSValue CallScript(const QJSValue& function, const QJSValue& self, const QJSValueList& arguments);
    /// The script object of a runtime object; undefined when it has gone.
    QJSValue FindWrapper(const weft::Any& value);

    QJSEngine& get_Engine() const { return m_engine; }
    QJSValue get_Prelude() const { return m_prelude; }
    /// Whether timers are running.
    bool HasTimers() const { return !m_timers.isEmpty(); }
    void StopTimers();
    /// Whether the script made the object.
    bool IsMade(const QObject* object) const { return m_made.contains(const_cast<QObject*>(object)); }
    /// Lets go of what native objects keep of the script, and of its windows.
    void Release();
    /// Ends what waits inside a call of the script: its windows close, and with
    /// them the loops of dialogs.
    void Abort();
    /// Whether a call of the script is on the stack; the engine has to live then.
    bool IsBusy() const { return m_busy > 0; }
    /// A recursion without end is on its way out: each native call on the stack
    /// throws it on, so that no hook or slot swallows it.
    bool IsOverflowing() const { return m_isOverflowing; }
    /// What the script threw last into native code.
    const QJSValue& get_LastThrown() const { return m_lastThrown; }
    /// The bridge whose script that was; null when it is gone.
    static ScriptBridge* LastThrower();

    std::function<void(const QString& line, bool isError)> onPrint;
    std::function<void(int code)> onExit;
    std::function<void(const QJSValue& error)> onUncaught;
    std::function<bool()> isStopped;
    /// Called now and then while the script runs, where events may be handled:
    /// not while Qt waits for a hook.
    std::function<void()> onCall;

    /// While one exists, a call of the script is on the stack.
    class Busy
    {
    public:
        explicit Busy(ScriptBridge& bridge) : m_bridge(bridge) { ++m_bridge.m_busy; }
        ~Busy() { --m_bridge.m_busy; }
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;

    private:
        ScriptBridge& m_bridge;
    };
    /// While one exists, Qt waits for the answer of a hook.
    class Hook
    {
    public:
        explicit Hook(ScriptBridge& bridge, bool is = true) : m_bridge(bridge), m_is(is) { m_bridge.m_hooks += m_is; }
        ~Hook() { m_bridge.m_hooks -= m_is; }
        Hook(const Hook&) = delete;
        Hook& operator=(const Hook&) = delete;

    private:
        ScriptBridge& m_bridge;
        const bool m_is;
    };

    // For the prelude.
    Q_INVOKABLE QJSValue construct(const QJSValue& self, int cls, const QJSValue& prototype, const QJSValue& arguments);
    Q_INVOKABLE QJSValue call(int entry, const QJSValue& self, const QJSValue& arguments);
    Q_INVOKABLE QJSValue callStatic(int entry, const QJSValue& arguments);
    Q_INVOKABLE QJSValue get(int entry, const QJSValue& self);
    Q_INVOKABLE void set(int entry, const QJSValue& self, const QJSValue& value);
    Q_INVOKABLE QJSValue invoke(const QJSValue& handle, const QJSValue& arguments);
    Q_INVOKABLE QJSValue forceLazy(const QJSValue& handle);
    Q_INVOKABLE void print(const QString& line, bool isError);
    Q_INVOKABLE void exit(int code);
    Q_INVOKABLE void uncaught(const QJSValue& error);
    Q_INVOKABLE int startScriptTimer(const QJSValue& function, int milliseconds, bool repeats);
    Q_INVOKABLE void stopScriptTimer(int id);
    /// Turns the event loop once.
    Q_INVOKABLE void turn(int milliseconds);
    Q_INVOKABLE QString readFile(const QString& path);
    Q_INVOKABLE void writeFile(const QString& path, const QString& text);

    bool eventFilter(QObject* object, QEvent* event) override;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    /// Runs it; what is thrown becomes an exception of the script.
    QJSValue Guard(const std::function<QJSValue()>& body);
    std::vector<weft::Any> Arguments(const QJSValue& arguments, const QJSValue& owner);
    weft::Any SelfOf(const QJSValue& self) const;
    weft::Class_Generic ScriptClass(const weft::Class_Generic& base, const QJSValue& prototype, const QJSValue& base_prototype);
    QJSValue DescribeClass(const weft::Class_Generic& cls);
    void Link(const QJSValue& wrapper, const weft::Any& value);
    QJSValue MakeWrapper(const weft::Any& value);
    /// Objects that live on in Qt (with a parent, or a window on the screen) keep
    /// their script object.
    void UpdatePin(QObject* object);
    void UpdatePins(const std::vector<weft::Any>& values);
    weft::Any MakeFunction(const QJSValue& function, const QJSValue& owner);

    QJSEngine& m_engine;
    QJSValue m_prelude;
    std::vector<weft::class_entry> m_entries;
    std::vector<weft::Class_Generic> m_classes;
    QHash<const weft::internal::object_value*, int> m_classIndex;
    QHash<const weft::internal::object_value*, QPointer<ScriptHandle>> m_handles;
    QHash<QObject*, weft::WeakRef_Generic> m_made; ///< native objects of the script's
    QHash<QObject*, QJSValue> m_pins;
    struct Timer
    {
        QJSValue function;
        bool repeats = false;
    };
    QHash<int, Timer> m_timers;
    void ThrowPending();

    QJSValue m_lastThrown;
    QJSValue m_overflow; ///< the error of the last recursion without end
    bool m_isOverflowing = false;
    int m_depth = 0;
    int m_busy = 0;
    int m_hooks = 0;
};

} // namespace orbis
