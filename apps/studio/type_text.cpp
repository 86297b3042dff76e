// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/type_text.h"

#include "hf/engine.h"
#include "hf/property_id.h"

#include <QRegularExpression>

namespace {

struct Parts
{
    QString name;
    QString element;
    QString size;
    QString arguments;
    int precision = -1;
    int scale = -1;
};

Parts TakeApart(const QString& text, const HF::LDatabaseEngine& engine)
{
    Parts parts;
    if (text.endsWith(u']')) {
        const qsizetype bracket = text.lastIndexOf(u'[');
        const QString count = text.mid(bracket + 1, text.size() - bracket - 2).trimmed();
        bool isNumber = false;
        count.toUInt(&isNumber);
        if (bracket > 0 && (count.isEmpty() || isNumber)) {
            parts.name = count.isEmpty() ? QStringLiteral("List") : QStringLiteral("Array");
            parts.element = engine.FormatFieldType(text.left(bracket).trimmed());
            parts.size = count;
            return parts;
        }
    }
    static const QRegularExpression decimal(
        QStringLiteral("^(?:decimal|numeric)\\s*\\(\\s*(\\d+)\\s*(?:,\\s*(\\d+)\\s*)?\\)$"),
        QRegularExpression::CaseInsensitiveOption);
    if (const QRegularExpressionMatch match = decimal.match(text); match.hasMatch()) {
        parts.name = QStringLiteral("Decimal");
        parts.precision = match.captured(1).toInt();
        parts.scale = match.captured(2).isEmpty() ? 0 : match.captured(2).toInt();
        return parts;
    }
    static const QRegularExpression nested(
        QStringLiteral("^(enum|map|struct|union)\\s*\\((.*)\\)$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    if (const QRegularExpressionMatch match = nested.match(text); match.hasMatch()) {
        parts.name = engine.FormatFieldType(match.captured(1));
        parts.arguments = match.captured(2).trimmed();
        return parts;
    }
    // A type that brings its arguments along in brackets is whole.
    parts.name = engine.FormatFieldType(text);
    return parts;
}

} // namespace

QList<QPair<int, HF::LVariant>> TypeProperties(const QString& text, const HF::LDatabaseEngine& engine)
{
    const Parts parts = TakeApart(text.trimmed(), engine);
    return {{PROP_ARRAY_SIZE, parts.size},
            {PROP_ELEMENT_TYPE, parts.element},
            {PROP_PRECISION, parts.precision},
            {PROP_SCALE, parts.scale},
            {PROP_TYPE_ARGUMENTS, parts.arguments},
            {PROP_TYPE_NAME, parts.name}};
}
