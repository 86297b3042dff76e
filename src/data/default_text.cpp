// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/default_text.h"

#include "hf/schema_object.h"
#include "hf/sql_text.h"

namespace {

bool IsBetween(const QString& text, QChar first, QChar last)
{
    return text.size() >= 2 && text.front() == first && text.back() == last;
}

bool IsNumberLike(const QString& text)
{
    static const QString characters = QStringLiteral("0123456789+-.,Ee");
    for (const QChar unit : text)
        if (!characters.contains(unit))
            return false;
    return true;
}

} // namespace

QString DefaultLiteral(const QString& userText)
{
    const QString trimmed = userText.trimmed();
    if (IsBetween(trimmed, u'\'', u'\'') || IsBetween(trimmed, u'(', u')') || IsNumberLike(trimmed)
        || trimmed.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0)
        return trimmed;
    return HF::QuoteText(userText);
}

QString DefaultFromCatalog(const QString& engineText)
{
    if (IsBetween(engineText, u'\'', u'\'')) {
        if (engineText == QLatin1String("'NULL'") || engineText.startsWith(QLatin1String("'(")))
            return engineText;
        QString bare = engineText.mid(1, engineText.size() - 2);
        bare.replace(QLatin1String("''"), QLatin1String("'"));
        // '007' or '2020-01-01' without quotes would be written back as a number.
        return DefaultLiteral(bare) == engineText ? bare : engineText;
    }
    if (!IsNumberLike(engineText) && engineText != QLatin1String("NULL"))
        return u'(' + engineText + u')';
    return engineText;
}
