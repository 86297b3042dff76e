// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/function.h"

#include "weft/errors.h"

#include <QStringList>

#include <algorithm>

namespace weft {

namespace {

/// Deeper than any sensible chain of calls between a script and native code,
/// and far from the end of the stack.
constexpr int MaxDepth = 250;
thread_local int depth = 0;

struct DepthGuard
{
    DepthGuard() { ++depth; }
    ~DepthGuard() { --depth; }
};

Any ParseDefault(const QString& text)
{
    if (text == QLatin1String("none"))
        return {};
    if (text == QLatin1String("true") || text == QLatin1String("false"))
        return text == QLatin1String("true");
    if (text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"'))
        return String(text.mid(1, text.size() - 2));
    bool isInteger = false;
    const qlonglong integer = text.toLongLong(&isInteger, 0);
    if (isInteger)
        return integer;
    bool isReal = false;
    const double real = text.toDouble(&isReal);
    if (!isReal)
        internal::log_assert_error(qPrintable(QStringLiteral("[signature] \"%1\" is no default.").arg(text)));
    return real;
}

/// Splits at commas that stand in no brackets and in no text.
QStringList SplitParameters(const QString& text)
{
    QStringList parts;
    int level = 0;
    bool inText = false;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'"')
            inText = !inText;
        else if (!inText && c == u'<')
            ++level;
        else if (!inText && c == u'>')
            --level;
        else if (!inText && level == 0 && c == u',') {
            parts.append(text.mid(start, i - start).trimmed());
            start = i + 1;
        }
    }
    if (const QString last = text.mid(start).trimmed(); !last.isEmpty())
        parts.append(last);
    return parts;
}

} // namespace

Signature::Signature(const String& text) : m_text(text)
{
    QString inner = text.ToQString().trimmed();
    if (inner.startsWith(u'(')) {
        const qsizetype end = inner.lastIndexOf(u')');
        const QString behind = inner.mid(end + 1).trimmed();
        if (behind.startsWith(QLatin1String("->")))
            m_result = String(behind.mid(2).trimmed());
        inner = inner.mid(1, end - 1).trimmed();
    }
    for (const QString& part : SplitParameters(inner)) {
        parameter one;
        QString head = part;
        if (const qsizetype equals = part.indexOf(QLatin1String(" = ")); equals >= 0) {
            one.otherwise = ParseDefault(part.mid(equals + 3).trimmed());
            head = part.left(equals);
        }
        one.name = String(head.section(u':', 0, 0).trimmed());
        one.type = String(head.section(u':', 1).trimmed());
        m_isHook = m_isHook || (m_parameters.empty() && one.type == String("@self"));
        m_parameters.push_back(std::move(one));
    }
}

String Signature::names() const
{
    QStringList names;
    for (const parameter& one : m_parameters)
        names.append(one.name.ToQString());
    return names.join(QLatin1String(", "));
}

namespace internal {

void object_value_function::set_signature(const Signature& signature)
{
    m_signature = signature;
    m_parameterCount = static_cast<int>(signature.parameters().size());
    m_defaults.clear();
    for (const Signature::parameter& one : signature.parameters()) {
        if (one.otherwise)
            m_defaults.push_back(*one.otherwise);
        else if (!m_defaults.empty())
            log_assert_error("[signature] A parameter without a default stands behind one with a default.");
    }
}

Any object_value_function::invoke(std::span<const Any> arguments)
{
    const DepthGuard guard;
    if (depth > MaxDepth)
        throw Error(QStringLiteral("%1: the calls are nested too deep.").arg(m_name.ToQString()));
    const int given = static_cast<int>(arguments.size());
    const int least = m_parameterCount - defaultsCount();
    if (given > m_parameterCount || given < least) {
        const int self = m_signature.hasSelf() ? 1 : 0;
        const QString wanted = least == m_parameterCount
                                   ? QString::number(m_parameterCount - self)
                                   : QStringLiteral("%1 to %2").arg(least - self).arg(m_parameterCount - self);
        throw Error(QStringLiteral("%1: %2 arguments expected, %3 given.")
                        .arg(m_name.ToQString(), wanted)
                        .arg(std::max(0, given - self)));
    }
    if (given == m_parameterCount)
        return call(arguments);
    std::vector<Any> all(arguments.begin(), arguments.end());
    all.insert(all.end(), m_defaults.end() - (m_parameterCount - given), m_defaults.end());
    return call(all);
}

Any object_value_closure_base::invoke(std::span<const Any> arguments)
{
    try {
        return object_value_function::invoke(arguments);
    } catch (const bad_argument& caught) {
        throw bad_argument_error(name(), caught);
    }
}

} // namespace internal

I_Invokable_Generic I_Invokable_Generic::cast(const Any& any)
{
    if (!any.object() || !any.object()->as_function())
        throw internal::bad_argument(typeMask(), any);
    return I_Invokable_Generic(any);
}

I_Invokable_Generic I_Invokable_Generic::make(const String& name, const Signature& signature,
                                              internal::object_value_plain_function::body body)
{
    auto* function = new internal::object_value_plain_function(0, std::move(body));
    function->set_name(name);
    function->set_signature(signature);
    return I_Invokable_Generic(Any::adopt(function));
}

} // namespace weft
