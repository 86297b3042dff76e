// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/convertible.h"

#include "weft/class.h"
#include "weft/errors.h"

namespace weft {

const method_ident& I_Convertible::tryInto_ident()
{
    static const method_ident ident = internal::helpers::create_literal_method_identifier("tryInto");
    return ident;
}

Any I_Convertible::tryInto(const Any& value, const Type& wanted)
{
    if (wanted.matches(value) || !value.isObject())
        return wanted.matches(value) ? value : Any();
    const class_entry* method = Class_Generic::of(value).findOverride(tryInto_ident());
    if (method && wanted.kind() == Type::Kind::Instance)
        return I_Invokable_Generic::cast(method->function)(value, wanted.instanceClass());
    return value.object()->tryInto(wanted);
}

Type Foreign_Generic::genericInstance(const char* typeName, bool isCopyable, bool isShared, bool isWeak,
                                      std::optional<Type> element, std::optional<Type> key, std::optional<Type> cls)
{
    if (isShared || isWeak || element || key || cls)
        internal::log_assert_error("[foreign] A native value is opaque.");
    return Type::foreign(typeName, isCopyable);
}

Type Foreign_Generic::typeMaskInstance(const char* typeName, const Class_Generic& cls)
{
    return Type::instance(typeName, cls);
}

} // namespace weft
