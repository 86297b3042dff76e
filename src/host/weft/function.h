// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"
#include "weft/values.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace weft {

/// The parameters of a function as a text tells them, either the plain names
/// ("self, row, parent") or the whole ("( self, text: String = "" ) -> Boolean").
/// `self` first is the receiver, "self: @self" one whose method a script may
/// override. A value.
class ORB_SHARED Signature
{
public:
    struct parameter
    {
        String name;
        String type; ///< empty when the text does not tell
        std::optional<Any> otherwise; ///< its default
    };

    Signature() = default;
    /// A text that makes no sense is a fault of the program's, and is told.
    explicit Signature(const String& text);

    const String& text() const { return m_text; }
    const std::vector<parameter>& parameters() const { return m_parameters; }
    const String& result() const { return m_result; }
    bool hasSelf() const { return !m_parameters.empty() && m_parameters[0].name == String("self"); }
    bool isHook() const { return m_isHook; }
    /// "self, row, parent".
    String names() const;

private:
    String m_text;
    std::vector<parameter> m_parameters;
    String m_result;
    bool m_isHook = false;
};

namespace internal {

/// A function of the runtime. Made and set up by one thread; calls may then
/// come from any that the function itself allows.
class ORB_SHARED object_value_function : public object_value
{
public:
    Type type() const override { return Type::basic(Type::Kind::Function); }
    object_value_function* as_function() override { return this; }

    // The set-up.
    /// With the class in front: "QLabel.clear".
    void set_name(const String& name) { m_name = name; }
    void set_signature(const Signature& signature);
    /// Values of the last parameters, for calls that leave them out.
    void set_defaults(std::vector<Any> defaults) { m_defaults = std::move(defaults); }
    void set_doc(const String& doc) { m_doc = doc; }

    const String& name() const { return m_name; }
    const Signature& signature() const { return m_signature; }
    const String& doc() const { return m_doc; }
    /// How many it takes, the receiver among them.
    int parameterCount() const { return m_parameterCount; }
    int defaultsCount() const { return static_cast<int>(m_defaults.size()); }

    /// Checks the number of arguments, fills in what was left out, and calls.
    /// Throws Error, and what the function throws.
    virtual Any invoke(std::span<const Any> arguments);

protected:
    object_value_function() = default;
    explicit object_value_function(int parameterCount) : m_parameterCount(parameterCount) {}
    /// Gets exactly as many as it takes.
    virtual Any call(std::span<const Any> arguments) = 0;

    int m_parameterCount = 0;

private:
    String m_name;
    Signature m_signature;
    std::vector<Any> m_defaults;
    String m_doc;
};

/// What all native functions share: a wrong argument becomes an Error with the
/// function's name.
class ORB_SHARED object_value_closure_base : public object_value_function
{
public:
    Any invoke(std::span<const Any> arguments) override;

protected:
    using object_value_function::object_value_function;
};

/// A native function over plain values, for the runtime's own use and for
/// programs: gets the arguments as they come.
class ORB_SHARED object_value_plain_function final : public object_value_closure_base
{
public:
    using body = std::function<Any(std::span<const Any>)>;
    object_value_plain_function(int parameterCount, body function)
        : object_value_closure_base(parameterCount), m_function(std::move(function))
    {
    }

protected:
    Any call(std::span<const Any> arguments) override { return m_function(arguments); }

private:
    body m_function;
};

} // namespace internal

/// A callable value.
class ORB_SHARED I_Invokable_Generic
{
public:
    /// Throws bad_argument when the value is no function.
    static I_Invokable_Generic cast(const Any& any);
    static Type typeMask() { return Type::basic(Type::Kind::Function); }
    /// A function over plain values; the name stands in its errors.
    static I_Invokable_Generic make(const String& name, const Signature& signature,
                                    internal::object_value_plain_function::body body);

    operator Any() const { return m_any; }
    const Any& any() const { return m_any; }
    internal::object_value_function& function() const { return *m_any.object()->as_function(); }
    int parameterCount() const { return function().parameterCount(); }
    Any invoke(std::span<const Any> arguments) const { return function().invoke(arguments); }
    template <typename... Arguments>
    Any operator()(const Arguments&... arguments) const
    {
        const std::vector<Any> all{Any(arguments)...};
        return invoke(all);
    }

private:
    explicit I_Invokable_Generic(const Any& any) : m_any(any) {}

    Any m_any;
};

} // namespace weft
