// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/values.h"

#include <exception>
#include <functional>
#include <stdexcept>
#include <variant>

namespace weft {

namespace internal {

/// A value of another type than a parameter takes. Thrown by conversions; a
/// call turns it into an Error that names the function.
class ORB_SHARED bad_argument : public std::exception
{
public:
    bad_argument(const Type& expected, const Any& value) : m_expected(expected), m_value(value) {}
    /// With a reason of its own, such as an object that is gone.
    bad_argument(const Type& expected, const Any& value, const String& reason)
        : m_expected(expected), m_value(value), m_reason(reason)
    {
    }
    const Type& expected() const { return m_expected; }
    const Any& value() const { return m_value; }
    const String& reason() const { return m_reason; }
    const char* what() const noexcept override { return "a value of another type was expected"; }

private:
    Type m_expected;
    Any m_value;
    String m_reason;
};

/// An optional was read that holds nothing.
class ORB_SHARED bad_option_access : public std::logic_error
{
public:
    explicit bad_option_access(const Type& type);
};

/// An integer does not fit into the native type.
class ORB_SHARED integer_overflow : public std::overflow_error
{
public:
    integer_overflow(std::int64_t value, const char* nativeType);
};

/// The error of a call that got a wrong argument.
ORB_SHARED Error bad_argument_error(const String& function, const bad_argument& caught);

// Results: a value, or an Error in its place.
ORB_SHARED Any result_error_cast_source(const Type& type, const Any& value);
/// For a result that was asked for its error and has none.
ORB_SHARED Any result_error_no_error(const Type& type);
ORB_SHARED bool is_error_result(const Any& result);
ORB_SHARED bool is_none_impl(const Any& value);
/// The value of a result; throws the Error that stands in its place.
ORB_SHARED Any unwrap(const Any& result);
/// The same, waiting for a lazy first.
ORB_SHARED Any result_unwrap_lazy(const Any& result);

/// A fault of the program's own, told on the error stream.
ORB_SHARED void log_assert_error(const char* text);
/// The faults told so far, for tests.
ORB_SHARED int assert_error_count();

/// The text of whatever is being handled; call it in a catch block.
ORB_SHARED String current_exception_text();

/// An error where nobody can catch it, such as in a hook that Qt calls. Goes to
/// the handler, or to the error stream without one. Any thread.
ORB_SHARED void report_error(const String& where, const String& text);
using error_handler = std::function<void(const String& where, const String& text)>;
ORB_SHARED void set_error_handler(error_handler handler);

} // namespace internal

namespace details {

/// Why a cast failed.
struct ORB_SHARED CheckedError
{
    Type expected;
    Any value;
};

/// The outcome of a cast that can fail.
template <typename T>
class Checked
{
public:
    Checked(T value) : m_outcome(std::move(value)) {}
    Checked(CheckedError error) : m_outcome(std::move(error)) {}
    explicit operator bool() const { return std::holds_alternative<T>(m_outcome); }
    /// Throws bad_argument when the cast failed.
    const T& value() const
    {
        if (const auto* error = std::get_if<CheckedError>(&m_outcome))
            throw internal::bad_argument(error->expected, error->value);
        return std::get<T>(m_outcome);
    }
    const CheckedError& error() const { return std::get<CheckedError>(m_outcome); }

private:
    std::variant<T, CheckedError> m_outcome;
};

/// Casts to a union of types.
template <typename... Members>
Checked<Union<Members...>> cast_union(const Any& any)
{
    if ((Members::cast(any) || ...))
        return Union<Members...>(any);
    return CheckedError{Type::unite({Members::typeMask()...}), any};
}

} // namespace details
} // namespace weft
