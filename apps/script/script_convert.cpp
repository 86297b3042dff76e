// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_bridge.h"

#include "weft/errors.h"
#include "weft/lazy.h"
#include "weft/list.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace orbis {

using weft::Any;
using weft::Class_Generic;

namespace {

/// Beyond it a number of the script's cannot tell neighbours apart.
constexpr double MaxSafeInteger = 9007199254740991.0;
constexpr int MaxNesting = 100;
constexpr double MaxListLength = 50'000'000;
/// What a function takes that names no parameter: it may look at `arguments`.
constexpr int AnyParameters = 11;

int ParameterCount(const QJSValue& function)
{
    const int named = function.property(QStringLiteral("length")).toInt();
    return named > 0 ? named : AnyParameters;
}

bool IsEvent(const Any& value)
{
    static const weft::String name("QEvent");
    for (Class_Generic cls = Class_Generic::of(value); !cls.isEmpty();
         cls = cls.content().bases.empty() ? Class_Generic() : cls.content().bases[0])
        if (cls.name() == name)
            return true;
    return false;
}

/// A function of the script's for native code. Takes whatever number of
/// arguments it is given.
class ScriptFunction final : public weft::internal::object_value_function
{
public:
    /// With a box the function itself belongs to the script.
    ScriptFunction(ScriptBridge& bridge, const QJSValue& function, ScriptHandle* box)
        : object_value_function(ParameterCount(function)), m_bridge(&bridge), m_box(box), m_isBoxed(box)
    {
        if (!box)
            m_function = function;
        const QString name = function.property(QStringLiteral("name")).toString();
        set_name(weft::String(name.isEmpty() ? QStringLiteral("function") : name));
    }

    Any invoke(std::span<const Any> arguments) override
    {
        // A filter is asked in the middle of an event's delivery.
        const bool isFilter = std::any_of(arguments.begin(), arguments.end(), IsEvent);
        const QJSValue function = Function();
        if (!function.isCallable())
            return isFilter ? Any(false) : Any(); // the script dropped it
        const ScriptBridge::Hook hook(*m_bridge, isFilter);
        QJSValueList values;
        for (const Any& one : arguments)
            values.append(m_bridge->ToScript(one));
        return m_bridge->FromScript(m_bridge->CallScript(function, {}, values));
    }

    bool equals(const object_value& other) const override
    {
        const auto* function = dynamic_cast<const ScriptFunction*>(&other);
        return function && Function().strictlyEquals(function->Function());
    }

    QJSValue Function() const
    {
        if (!m_bridge)
            return {};
        if (!m_isBoxed)
            return m_function;
        return m_box ? m_bridge->get_Engine().newQObject(m_box).property(QStringLiteral("__f")) : QJSValue();
    }

protected:
    Any call(std::span<const Any>) override { return {}; }

private:
    const QPointer<ScriptBridge> m_bridge;
    const QPointer<ScriptHandle> m_box;
    const bool m_isBoxed;
    QJSValue m_function;
};

/// A promise as a deferred value: waiting for it turns the event loop.
Any MakeLazy(ScriptBridge& bridge, const QJSValue& promise)
{
    const QJSValue state = bridge.get_Prelude().property(QStringLiteral("watch")).call({promise});
    const QPointer<ScriptBridge> guard(&bridge);
    return weft::Lazy_Generic(weft::Type(), [guard, state]() -> Any {
        while (guard && !state.property(QStringLiteral("done")).toBool()) {
            guard->turn(20);
            if (guard && guard->isStopped && guard->isStopped())
                throw weft::Error(weft::String("Interrupted"));
        }
        if (!guard)
            return {};
        if (state.property(QStringLiteral("failed")).toBool())
            throw ScriptException(state.property(QStringLiteral("error")));
        return guard->FromScript(state.property(QStringLiteral("value")));
    });
}

Any FromArray(ScriptBridge& bridge, const QJSValue& array, const QJSValue& owner)
{
    std::vector<Any> items;
    const double length = array.property(QStringLiteral("length")).toNumber();
    if (length > MaxListLength)
        throw weft::Error(weft::String("The array is too long."));
    const int count = static_cast<int>(length);
    bool allIntegers = count > 0, allTexts = count > 0;
    for (int i = 0; i < count; ++i) {
        items.push_back(bridge.FromScript(array.property(static_cast<quint32>(i)), owner));
        allIntegers = allIntegers && items.back().isInteger();
        allTexts = allTexts && weft::cast_string(items.back());
    }
    const weft::Type element = allIntegers ? weft::Integer::typeMask() : allTexts ? weft::string_type() : weft::Type();
    return weft::List(element, std::move(items));
}

} // namespace

void ScriptBridge::Link(const QJSValue& wrapper, const Any& value)
{
    auto* handle = new ScriptHandle(value);
    const auto* key = value.object();
    handle->onGone = [this, key, handle] {
        if (const auto place = m_handles.find(key); place != m_handles.end() && (!*place || *place == handle))
            m_handles.erase(place);
    };
    m_handles.insert(key, handle);
    m_prelude.property(QStringLiteral("link")).call({wrapper, m_engine.newQObject(handle)});
}

QJSValue ScriptBridge::FindWrapper(const Any& value)
{
    ScriptHandle* handle = m_handles.value(value.object());
    return handle ? m_engine.newQObject(handle).property(QStringLiteral("__js")) : QJSValue();
}

QJSValue ScriptBridge::MakeWrapper(const Any& value)
{
    // The nearest class that the script knows; a class of its own is not made anew.
    Class_Generic cls = Class_Generic::of(value);
    while (!cls.isEmpty() && !m_classIndex.contains(cls.any().object()))
        cls = cls.content().bases.empty() ? Class_Generic() : cls.content().bases[0];
    if (cls.isEmpty())
        return m_engine.newQObject(new ScriptHandle(value));
    auto* handle = new ScriptHandle(value);
    const auto* key = value.object();
    handle->onGone = [this, key, handle] {
        if (const auto place = m_handles.find(key); place != m_handles.end() && (!*place || *place == handle))
            m_handles.erase(place);
    };
    m_handles.insert(key, handle);
    return m_prelude.property(QStringLiteral("wrap"))
        .call({m_classIndex.value(cls.any().object()), m_engine.newQObject(handle)});
}

QJSValue ScriptBridge::ToScript(const Any& value)
{
    switch (value.kind()) {
    case Any::Kind::None: return QJSValue(QJSValue::NullValue);
    case Any::Kind::Boolean: return value.boolean();
    case Any::Kind::Integer:
        if (std::abs(static_cast<double>(value.integer())) > MaxSafeInteger)
            return QString::number(value.integer());
        return static_cast<double>(value.integer());
    case Any::Kind::Float: return value.real();
    case Any::Kind::Object: break;
    }
    if (const auto text = weft::cast_string(value))
        return text->ToQString();
    if (const auto bytes = weft::cast_bytes(value))
        return m_engine.toScriptValue(bytes->ToQByteArray());
    if (const auto error = weft::cast_error(value))
        return m_prelude.property(QStringLiteral("error")).call({error->message().ToQString()});
    if (const auto list = weft::List::cast(value)) {
        QJSValue array = m_engine.newArray(static_cast<uint>(list->length()));
        for (std::size_t i = 0; i < list->length(); ++i)
            array.setProperty(static_cast<quint32>(i), ToScript(list->at(i)));
        return array;
    }
    if (const auto map = weft::HashMap::cast(value)) {
        QJSValue object = m_engine.newObject();
        for (const auto& [key, item] : map->entries())
            object.setProperty(weft::to_text(key).ToQString(), ToScript(item));
        return object;
    }
    if (const auto* function = value.as<ScriptFunction>())
        return function->Function();
    if (value.object()->as_function())
        return m_prelude.property(QStringLiteral("func")).call({m_engine.newQObject(new ScriptHandle(value))});
    if (weft::Lazy_Generic::cast(value))
        return m_prelude.property(QStringLiteral("promise")).call({m_engine.newQObject(new ScriptHandle(value))});
    if (m_classIndex.contains(value.object()))
        return m_prelude.property(QStringLiteral("classes")).property(static_cast<quint32>(m_classIndex.value(value.object())));
    if (const QJSValue known = FindWrapper(value); known.isObject())
        return known;
    return MakeWrapper(value);
}

Any ScriptBridge::MakeFunction(const QJSValue& function, const QJSValue& owner)
{
    const auto* handle = qobject_cast<ScriptHandle*>(owner.property(QStringLiteral("__h")).toQObject());
    const bool isOwners = handle && std::any_of(m_made.begin(), m_made.end(), [&](const weft::WeakRef_Generic& made) {
        return made.lock().object() == handle->get_Value().object();
    });
    if (!isOwners)
        return Any::adopt(new ScriptFunction(*this, function, nullptr));
    auto* box = new ScriptHandle(Any());
    m_prelude.property(QStringLiteral("keepFunction")).call({owner, m_engine.newQObject(box), function});
    return Any::adopt(new ScriptFunction(*this, function, box));
}

Any ScriptBridge::FromScript(const QJSValue& value, const QJSValue& owner)
{
    static thread_local int nesting = 0;
    struct Nesting
    {
        Nesting() { ++nesting; }
        ~Nesting() { --nesting; }
    } const level;
    if (nesting > MaxNesting)
        throw weft::Error(weft::String("The value is nested too deep."));
    if (value.isUndefined() || value.isNull())
        return {};
    if (value.isBool())
        return value.toBool();
    if (value.isNumber()) {
        const double number = value.toNumber();
        if (std::trunc(number) == number && std::abs(number) <= MaxSafeInteger)
            return static_cast<std::int64_t>(number);
        return number;
    }
    if (value.isString())
        return weft::String(value.toString());
    if (const auto* handle = qobject_cast<ScriptHandle*>(value.property(QStringLiteral("__h")).toQObject()))
        return handle->get_Value();
    if (value.isCallable()) {
        const QJSValue index = value.property(QStringLiteral("__class"));
        if (index.isNumber())
            return m_classes.at(static_cast<std::size_t>(index.toInt())).any();
        return MakeFunction(value, owner);
    }
    if (value.isArray())
        return FromArray(*this, value, owner);
    if (value.isError())
        return weft::Error(weft::String(value.toString()));
    if (value.property(QStringLiteral("then")).isCallable())
        return MakeLazy(*this, value);
    const QVariant variant = value.toVariant(QJSValue::RetainJSObjects);
    if (variant.metaType() == QMetaType::fromType<QByteArray>())
        return weft::ByteArray(variant.toByteArray());
    if (value.isDate())
        return weft::String(value.toDateTime().toString(Qt::ISODateWithMs));
    if (const auto* handle = qobject_cast<ScriptHandle*>(value.toQObject()))
        return handle->get_Value();
    const weft::HashMap map;
    // In the script, so that what a getter throws is heard.
    const QJSValue pairs = CallScript(m_prelude.property(QStringLiteral("pairs")), {}, {value});
    if (!pairs.isArray())
        return weft::ByteArray(pairs.toVariant().toByteArray()); // a view of bytes
    const int count = pairs.property(QStringLiteral("length")).toInt();
    for (int i = 0; i + 1 < count; i += 2)
        map.set(weft::String(pairs.property(static_cast<quint32>(i)).toString()),
                FromScript(pairs.property(static_cast<quint32>(i + 1)), owner));
    return map;
}

} // namespace orbis
