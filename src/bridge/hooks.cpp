// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/hooks.h"

#include "bridge/convert.h"
#include "bridge/event_ref.h"
#include "bridge/qobject_instance.h"
#include "weft/class.h"
#include "weft/errors.h"
#include "weft/lazy.h"

#include <utility>
#include <vector>

namespace weft::qt {

const method_ident& hook_ident(hook which)
{
    using internal::helpers::create_literal_method_identifier;
    static const method_ident idents[] = {
#define BRIDGE_HOOK(name) create_literal_method_identifier(#name),
        BRIDGE_HOOKS(BRIDGE_HOOK)
#undef BRIDGE_HOOK
    };
    return idents[static_cast<int>(which)];
}

companion::~companion() = default;

companion* companion::of(::QObject* object)
{
    return dynamic_cast<companion*>(object);
}

bool companion::run(hook which, QMetaType resultType, void* result, std::span<const hook_value> arguments)
{
    if (m_bypass == which) {
        m_bypass = hook::none;
        return false;
    }
    const Any self = m_self.lock();
    if (self.isNone())
        return false;
    const class_entry* method = Class_Generic::of(self).findOverride(hook_ident(which));
    if (!method || method->function.isNone())
        return false;
    try {
        const details::event_scope events;
        std::vector<Any> all{self};
        for (const hook_value& argument : arguments)
            all.push_back(details::from_meta_type(argument.type, argument.value));
        Any value = I_Invokable_Generic::cast(method->function).invoke(all);
        if (!result)
            return true;
        if (const auto lazy = Lazy_Generic::cast(value)) {
            const auto typed = lazy->castInstance(details::type_of_meta_type(resultType));
            if (!typed)
                throw internal::bad_argument(details::type_of_meta_type(resultType), value);
            value = typed->wait();
        }
        details::into_meta_type(value, resultType, result);
        // An object that a virtual function returns is its caller's from then on.
        if (resultType.flags() & QMetaType::PointerToQObject && !value.isNone())
            value.setFieldValue(details::owned_field(), false);
        return true;
    } catch (const internal::bad_argument& error) {
        internal::report_error(hook_ident(which).text(),
                               internal::bad_argument_error(hook_ident(which).text(), error).message());
    } catch (...) {
        internal::report_error(hook_ident(which).text(), internal::current_exception_text());
    }
    return false;
}

hook_bypass::hook_bypass(hook which, ::QObject* object)
{
    if (which == hook::none || !object)
        return;
    m_companion = companion::of(object);
    if (m_companion) {
        m_object = object;
        m_former = std::exchange(m_companion->m_bypass, which);
    }
}

hook_bypass::~hook_bypass()
{
    if (m_companion && m_object)
        m_companion->m_bypass = m_former;
}

} // namespace weft::qt
