// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/errors.h"

#include "weft/lazy.h"

#include <QtGlobal>

#include <atomic>
#include <mutex>

namespace weft::internal {

namespace {

std::atomic<int> assertErrors{0};

struct Handler
{
    std::mutex mutex;
    error_handler handler;
};

Handler& TheHandler()
{
    static auto* handler = new Handler;
    return *handler;
}

/// A value as an error shows it: its type, and a short one itself.
QString Shown(const Any& value)
{
    constexpr qsizetype Longest = 40;
    if (value.isNone())
        return QStringLiteral("none");
    const QString type = value.type().name().ToQString();
    if (value.isObject() && !cast_string(value))
        return type;
    QString text = to_text(value).ToQString();
    if (text.size() > Longest)
        text = text.left(Longest) + QChar(0x2026);
    return cast_string(value) ? QStringLiteral("%1 \"%2\"").arg(type, text) : QStringLiteral("%1 %2").arg(type, text);
}

} // namespace

bad_option_access::bad_option_access(const Type& type)
    : std::logic_error(QStringLiteral("An absent %1 was read.").arg(type.name().ToQString()).toStdString())
{
}

integer_overflow::integer_overflow(std::int64_t value, const char* nativeType)
    : std::overflow_error("Integer overflow on cast of " + std::to_string(value) + " to " + nativeType + ".")
{
}

Error bad_argument_error(const String& function, const bad_argument& caught)
{
    if (!caught.reason().empty())
        return Error(QStringLiteral("%1: %2").arg(function.ToQString(), caught.reason().ToQString()));
    return Error(QStringLiteral("%1: %2 expected, got %3.")
                     .arg(function.ToQString(), caught.expected().name().ToQString(), Shown(caught.value())));
}

Any result_error_cast_source(const Type& type, const Any& value)
{
    return Error(QStringLiteral("%1 cannot be cast to %2.").arg(Shown(value), type.name().ToQString()));
}

Any result_error_no_error(const Type& type)
{
    return Error(QStringLiteral("A result of type %1 holds no error.").arg(type.name().ToQString()));
}

bool is_error_result(const Any& result)
{
    return result.as<object_value_error>() != nullptr;
}

bool is_none_impl(const Any& value)
{
    return value.isNone();
}

Any unwrap(const Any& result)
{
    if (const auto error = cast_error(result))
        throw *error;
    return result;
}

Any result_unwrap_lazy(const Any& result)
{
    const auto lazy = Lazy_Generic::cast(result);
    return unwrap(lazy ? lazy->wait() : result);
}

void log_assert_error(const char* text)
{
    ++assertErrors;
    qWarning("%s", text);
}

int assert_error_count()
{
    return assertErrors.load();
}

String current_exception_text()
{
    try {
        throw;
    } catch (const Error& error) {
        return error.message();
    } catch (const bad_argument& error) {
        return bad_argument_error("Call", error).message();
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    } catch (...) {
        return "Unknown error.";
    }
}

void report_error(const String& where, const String& text)
{
    error_handler handler;
    {
        std::lock_guard guard(TheHandler().mutex);
        handler = TheHandler().handler;
    }
    if (handler)
        handler(where, text);
    else
        qWarning("%s: %s", qPrintable(where.ToQString()), qPrintable(text.ToQString()));
}

void set_error_handler(error_handler handler)
{
    std::lock_guard guard(TheHandler().mutex);
    TheHandler().handler = std::move(handler);
}

} // namespace weft::internal
