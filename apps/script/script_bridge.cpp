// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_bridge.h"

#include "script/prelude.h"

#include "weft/builders.h"
#include "weft/convertible.h"
#include "weft/errors.h"
#include "weft/lazy.h"
#include "weft/module.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <QTimerEvent>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace orbis {

using weft::Any;
using weft::Class_Generic;
using weft::class_entry;

namespace {

QObject* NativeObject(const Any& value)
{
    static const weft::method_ident field = weft::internal::helpers::create_literal_method_identifier("_qobject");
    const Any pointer = value.fieldValue(field);
    return pointer.isObject() ? pointer.object()->native_object() : nullptr;
}

/// A method of a script's class: finds the script object and calls it there.
class ScriptMethod final : public weft::internal::object_value_function
{
public:
    ScriptMethod(ScriptBridge& bridge, const QString& name, int parameters)
        : object_value_function(parameters + 1), m_bridge(&bridge), m_name(name)
    {
        set_name(weft::String(name));
    }

    Any invoke(std::span<const Any> arguments) override
    {
        if (!m_bridge)
            throw weft::Error(weft::String(QStringLiteral("%1: the script has ended.").arg(m_name)));
        const QJSValue self = m_bridge->FindWrapper(arguments[0]);
        if (!self.isObject())
            throw weft::Error(weft::String(QStringLiteral("%1: the object is gone.").arg(m_name)));
        const ScriptBridge::Hook hook(*m_bridge);
        QJSValueList values;
        for (const Any& one : arguments.subspan(1))
            values.append(m_bridge->ToScript(one));
        return m_bridge->FromScript(m_bridge->CallScript(self.property(m_name), self, values), self);
    }

protected:
    Any call(std::span<const Any>) override { return {}; }

private:
    const QPointer<ScriptBridge> m_bridge;
    const QString m_name;
};

QPointer<ScriptBridge>& Thrower()
{
    static QPointer<ScriptBridge> thrower;
    return thrower;
}

const char* KindName(class_entry::Kind kind)
{
    switch (kind) {
    case class_entry::Kind::StaticMethod: return "static";
    case class_entry::Kind::Property: return "property";
    case class_entry::Kind::Signal: return "signal";
    default: return "method";
    }
}

} // namespace

ScriptHandle::~ScriptHandle()
{
    if (onGone)
        onGone();
}

ScriptException::ScriptException(const QJSValue& error) : m_error(error), m_text(error.toString().toUtf8()) {}

ScriptBridge::ScriptBridge(QJSEngine& engine) : m_engine(engine)
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    QJSValue prelude = engine.evaluate(QString::fromUtf8(Prelude), QStringLiteral("prelude"));
    m_prelude = prelude.call({engine.newQObject(this), engine.globalObject()});
    if (m_prelude.isError())
        qFatal("prelude:%d: %s", m_prelude.property(QStringLiteral("lineNumber")).toInt(), qPrintable(m_prelude.toString()));
}

ScriptBridge::~ScriptBridge()
{
    StopTimers();
    m_pins.clear();
    for (auto it = m_handles.begin(); it != m_handles.end(); ++it)
        if (it.value())
            it.value()->onGone = nullptr;
}

void ScriptBridge::Release()
{
    StopTimers();
    m_pins.clear();
    m_lastThrown = QJSValue();
    // Windows go with the script, also those that were to live on without it.
    for (QObject* object : m_made.keys())
        if (auto* widget = qobject_cast<QWidget*>(object); widget && !widget->parent()) {
            widget->close();
            widget->deleteLater();
        }
}

void ScriptBridge::Abort()
{
    StopTimers();
    for (QObject* object : m_made.keys())
        if (auto* widget = qobject_cast<QWidget*>(object); widget && widget->isWindow() && widget->isVisible())
            widget->close();
    // A dialog that Qt made for the script.
    if (QWidget* modal = IsBusy() ? QApplication::activeModalWidget() : nullptr)
        modal->close();
}

ScriptBridge* ScriptBridge::LastThrower()
{
    return Thrower();
}

void ScriptBridge::InstallModule(const QString& name)
{
    QJSValue module = m_engine.newObject();
    std::vector<Class_Generic> classes;
    for (const auto& [key, value] : weft::find_module(weft::String(name)).entries())
        if (const auto cls = Class_Generic::cast(value))
            classes.push_back(*cls);
    // Bases first.
    const std::function<void(const Class_Generic&)> define = [&](const Class_Generic& cls) {
        if (m_classIndex.contains(cls.any().object()))
            return;
        for (const Class_Generic& base : cls.content().bases)
            define(base);
        if (cls.content().isEnum) {
            QJSValue values = m_engine.newObject();
            for (const auto& [enumerator, value] : cls.content().enumerators)
                if (!values.hasProperty(enumerator.ToQString()))
                    values.setProperty(enumerator.ToQString(), static_cast<double>(value));
            module.setProperty(cls.name().ToQString(), values);
            return;
        }
        module.setProperty(cls.name().ToQString(), DescribeClass(cls));
    };
    for (const Class_Generic& cls : classes)
        define(cls);
    m_engine.globalObject().setProperty(name, module);
}

QJSValue ScriptBridge::DescribeClass(const Class_Generic& cls)
{
    const int index = static_cast<int>(m_classes.size());
    m_classes.push_back(cls);
    m_classIndex.insert(cls.any().object(), index);
    QJSValue description = m_engine.newObject();
    description.setProperty(QStringLiteral("name"), cls.name().ToQString());
    description.setProperty(QStringLiteral("index"), index);
    description.setProperty(QStringLiteral("base"), -1);
    QJSValue mixins = m_engine.newArray(), entries = m_engine.newArray(), enums = m_engine.newArray();
    quint32 mixinCount = 0, entryCount = 0, enumCount = 0;
    for (std::size_t i = 0; i < cls.content().bases.size(); ++i) {
        const int base = m_classIndex.value(cls.content().bases[i].any().object(), -1);
        if (i == 0)
            description.setProperty(QStringLiteral("base"), base);
        else
            mixins.setProperty(mixinCount++, base);
    }
    for (const class_entry& entry : cls.content().entries) {
        QJSValue one = m_engine.newObject();
        one.setProperty(QStringLiteral("name"), entry.name.text());
        if (entry.kind == class_entry::Kind::Enum) {
            QJSValue values = m_engine.newObject();
            for (const auto& [enumerator, value] : Class_Generic(entry.value).content().enumerators)
                if (!values.hasProperty(enumerator.ToQString()))
                    values.setProperty(enumerator.ToQString(), static_cast<double>(value));
            one.setProperty(QStringLiteral("values"), values);
            enums.setProperty(enumCount++, one);
            continue;
        }
        if (entry.kind == class_entry::Kind::Field)
            continue;
        one.setProperty(QStringLiteral("kind"), QLatin1String(KindName(entry.kind)));
        one.setProperty(QStringLiteral("id"), static_cast<int>(m_entries.size()));
        m_entries.push_back(entry);
        entries.setProperty(entryCount++, one);
    }
    description.setProperty(QStringLiteral("mixins"), mixins);
    description.setProperty(QStringLiteral("entries"), entries);
    description.setProperty(QStringLiteral("enums"), enums);
    return CallScript(m_prelude.property(QStringLiteral("defineClass")), {}, {description});
}

QJSValue ScriptBridge::CallScript(const QJSValue& function, const QJSValue& self, const QJSValueList& arguments)
{
    QJSValue array = m_engine.newArray(static_cast<uint>(arguments.size()));
    for (qsizetype i = 0; i < arguments.size(); ++i)
        array.setProperty(static_cast<quint32>(i), arguments[i]);
    const Busy busy(*this);
    const QJSValue outcome = m_prelude.property(QStringLiteral("attempt")).call({function, self, array});
    const bool isAborted = outcome.isError(); // ended from outside, or out of stack
    if (isAborted || outcome.property(QStringLiteral("failed")).toBool()) {
        m_lastThrown = isAborted ? outcome : outcome.property(QStringLiteral("error"));
        Thrower() = this;
        if (m_depth > 0 && (m_lastThrown.strictlyEquals(m_overflow) || m_lastThrown.errorType() == QJSValue::RangeError)) {
            m_overflow = m_lastThrown;
            m_isOverflowing = true;
        }
        throw ScriptException(m_lastThrown);
    }
    return outcome.property(QStringLiteral("value"));
}

QJSValue ScriptBridge::Guard(const std::function<QJSValue()>& body)
{
    constexpr int MaxDepth = 200;
    struct Depth
    {
        int& value;
        explicit Depth(int& depth) : value(depth) { ++value; }
        ~Depth() { --value; }
    } depth(m_depth);
    const Busy busy(*this);
    if (onCall && m_hooks == 0)
        onCall();
    try {
        if (m_depth > MaxDepth) {
            m_overflow = m_engine.newErrorObject(QJSValue::RangeError, QStringLiteral("The calls are nested too deep."));
            throw ScriptException(m_overflow);
        }
        const QJSValue result = body();
        ThrowPending();
        return result;
    } catch (const ScriptException& error) {
        m_isOverflowing = false;
        m_engine.throwError(error.get_Error());
    } catch (...) {
        m_isOverflowing = false;
        m_engine.throwError(QJSValue::TypeError, weft::internal::current_exception_text().ToQString());
    }
    return {};
}

void ScriptBridge::ThrowPending()
{
    if (std::exchange(m_isOverflowing, false))
        throw ScriptException(m_overflow);
}

Any ScriptBridge::SelfOf(const QJSValue& self) const
{
    const auto* handle = qobject_cast<ScriptHandle*>(self.property(QStringLiteral("__h")).toQObject());
    return handle ? handle->get_Value() : Any();
}

std::vector<Any> ScriptBridge::Arguments(const QJSValue& arguments, const QJSValue& owner)
{
    std::vector<Any> result;
    const int count = arguments.property(QStringLiteral("length")).toInt();
    int last = count;
    // What is left out at the end has the default.
    while (last > 0 && arguments.property(static_cast<quint32>(last - 1)).isUndefined())
        --last;
    for (int i = 0; i < last; ++i)
        result.push_back(FromScript(arguments.property(static_cast<quint32>(i)), owner));
    return result;
}

QJSValue ScriptBridge::construct(const QJSValue& self, int index, const QJSValue& prototype, const QJSValue& arguments)
{
    return Guard([&]() -> QJSValue {
        const Class_Generic base = m_classes.at(static_cast<std::size_t>(index));
        const QJSValue bound = m_prelude.property(QStringLiteral("boundPrototype")).call({prototype});
        const bool isDerived = !bound.strictlyEquals(prototype);
        const Class_Generic cls = isDerived ? ScriptClass(base, prototype, bound) : base;
        const std::vector<Any> values = Arguments(arguments, {});
        const Any value = cls.construct(values);
        Link(self, value);
        if (QObject* native = NativeObject(value)) {
            m_made.insert(native, weft::WeakRef_Generic(value));
            connect(native, &QObject::destroyed, this, [this](QObject* gone) {
                m_made.remove(gone);
                m_pins.remove(gone);
            });
            if (native->isWidgetType())
                native->installEventFilter(this);
            UpdatePin(native);
        }
        UpdatePins(values);
        return self;
    });
}

Class_Generic ScriptBridge::ScriptClass(const Class_Generic& base, const QJSValue& prototype,
                                        const QJSValue& basePrototype)
{
    // One for each class of the script: the description stays with its prototype.
    QJSValue known = prototype.property(QStringLiteral("__weft"));
    if (prototype.hasOwnProperty(QStringLiteral("__weft")))
        if (const auto* handle = qobject_cast<ScriptHandle*>(known.toQObject()))
            return Class_Generic(handle->get_Value());
    const QString name = prototype.property(QStringLiteral("constructor")).property(QStringLiteral("name")).toString();
    weft::internal::class_builder_base builder{weft::String(name), weft::String()};
    builder.base(base).script_class();
    const QJSValue names = m_prelude.property(QStringLiteral("names")).call({prototype, basePrototype});
    for (const QString& method : names.toVariant().toMap().keys()) {
        class_entry entry;
        entry.name = weft::method_ident_untyped(method);
        entry.function = Any::adopt(new ScriptMethod(*this, method, names.property(method).toInt()));
        builder.add_entry(entry);
    }
    const Class_Generic cls = builder.build();
    QJSValue handle = m_engine.newQObject(new ScriptHandle(cls.any()));
    QJSValue own = prototype;
    own.setProperty(QStringLiteral("__weft"), handle);
    return cls;
}

QJSValue ScriptBridge::call(int id, const QJSValue& self, const QJSValue& arguments)
{
    return Guard([&] {
        const QJSValue owner = self.property(QStringLiteral("__owner"));
        std::vector<Any> values = Arguments(arguments, owner.isObject() ? owner : self);
        values.insert(values.begin(), SelfOf(self));
        const Any result =
            weft::I_Invokable_Generic::cast(m_entries.at(static_cast<std::size_t>(id)).function).invoke(values);
        UpdatePins(values);
        return ToScript(result);
    });
}

QJSValue ScriptBridge::callStatic(int id, const QJSValue& arguments)
{
    return Guard([&] {
        const std::vector<Any> values = Arguments(arguments, {});
        return ToScript(
            weft::I_Invokable_Generic::cast(m_entries.at(static_cast<std::size_t>(id)).function).invoke(values));
    });
}

QJSValue ScriptBridge::get(int id, const QJSValue& self)
{
    return Guard([&] { return ToScript(m_entries.at(static_cast<std::size_t>(id)).property.read(SelfOf(self))); });
}

void ScriptBridge::set(int id, const QJSValue& self, const QJSValue& value)
{
    Guard([&]() -> QJSValue {
        const std::vector<Any> values{SelfOf(self), FromScript(value, self)};
        m_entries.at(static_cast<std::size_t>(id)).property.write(values[0], values[1]);
        UpdatePins(values);
        return {};
    });
}

QJSValue ScriptBridge::invoke(const QJSValue& handle, const QJSValue& arguments)
{
    return Guard([&] {
        const auto* holder = qobject_cast<ScriptHandle*>(handle.toQObject());
        return ToScript(weft::I_Invokable_Generic::cast(holder ? holder->get_Value() : Any())
                            .invoke(Arguments(arguments, {})));
    });
}

QJSValue ScriptBridge::forceLazy(const QJSValue& handle)
{
    return Guard([&] {
        const auto* holder = qobject_cast<ScriptHandle*>(handle.toQObject());
        return ToScript(weft::internal::result_unwrap_lazy(holder ? holder->get_Value() : Any()));
    });
}

void ScriptBridge::print(const QString& line, bool isError)
{
    const Busy busy(*this);
    if (onCall && m_hooks == 0)
        onCall();
    if (onPrint)
        onPrint(line, isError);
}

void ScriptBridge::exit(int code)
{
    if (onExit)
        onExit(code);
}

void ScriptBridge::uncaught(const QJSValue& error)
{
    if (onUncaught)
        onUncaught(error);
}

QString ScriptBridge::readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_engine.throwError(QObject::tr("cannot read \"%1\": %2").arg(path, file.errorString()));
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

void ScriptBridge::writeFile(const QString& path, const QString& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.flush())
        m_engine.throwError(QObject::tr("cannot write \"%1\": %2").arg(path, file.errorString()));
}

int ScriptBridge::startScriptTimer(const QJSValue& function, int milliseconds, bool repeats)
{
    if (!function.isCallable()) {
        m_engine.throwError(QJSValue::TypeError, QStringLiteral("setTimeout: Function expected."));
        return 0;
    }
    const int id = startTimer(std::max(0, milliseconds), Qt::PreciseTimer);
    m_timers.insert(id, {function, repeats});
    return id;
}

void ScriptBridge::stopScriptTimer(int id)
{
    if (m_timers.remove(id))
        killTimer(id);
}

void ScriptBridge::StopTimers()
{
    for (auto it = m_timers.begin(); it != m_timers.end(); ++it)
        killTimer(it.key());
    m_timers.clear();
}

void ScriptBridge::timerEvent(QTimerEvent* event)
{
    const auto place = m_timers.constFind(event->timerId());
    if (place == m_timers.cend())
        return;
    const Timer timer = *place;
    if (!timer.repeats)
        stopScriptTimer(event->timerId());
    try {
        CallScript(timer.function, {}, {});
    } catch (const ScriptException& error) {
        if (onUncaught)
            onUncaught(error.get_Error());
    }
}

void ScriptBridge::turn(int milliseconds)
{
    const Busy busy(*this);
    QEventLoop loop;
    QTimer::singleShot(std::max(0, milliseconds), &loop, &QEventLoop::quit);
    loop.exec();
    if (isStopped && isStopped())
        m_engine.throwError(QStringLiteral("Interrupted"));
}

bool ScriptBridge::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ParentChange:
    case QEvent::Show:
    case QEvent::Hide: UpdatePin(object); break;
    default: break;
    }
    return false;
}

void ScriptBridge::UpdatePin(QObject* object)
{
    const auto made = m_made.constFind(object);
    if (made == m_made.cend())
        return;
    const auto* widget = qobject_cast<QWidget*>(object);
    const bool lives = object->parent() || (widget && widget->isWindow() && widget->isVisible());
    if (!lives) {
        m_pins.remove(object);
    } else if (!m_pins.contains(object)) {
        if (const QJSValue wrapper = FindWrapper(made->lock()); wrapper.isObject())
            m_pins.insert(object, wrapper);
    }
}

void ScriptBridge::UpdatePins(const std::vector<Any>& values)
{
    for (const Any& value : values)
        if (QObject* native = value.isObject() ? NativeObject(value) : nullptr)
            UpdatePin(native);
}

} // namespace orbis
