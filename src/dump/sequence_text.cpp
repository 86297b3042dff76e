// SPDX-License-Identifier: GPL-3.0-or-later
#include "dump/sequence_text.h"

#include "model/text_helpers.h"

#include <algorithm>
#include <optional>

QString ContinueSequence(HF::I_LSchemaObject& sequence)
{
    const std::optional<HF::LProperty> known = sequence.HasProperty(PROP_SEQ_LAST_VALUE);
    const long increment = sequence.GetLongOr(PROP_SEQ_INCREMENT, 1);
    const long minimum = sequence.GetLong(PROP_SEQ_MIN);
    const long maximum = sequence.GetLong(PROP_SEQ_MAX);
    // At the very end of the numbers the engine gives none, not even the one that stands there.
    const auto takeOne = [&](long start) {
        long behind = 0;
        return __builtin_add_overflow(start, increment, &behind)
            ? QString()
            : QLatin1String("SELECT nextval(") + QuoteStringLiteral(sequence.get_NameForQuery(true)) + u')';
    };
    if (!known || known->value.ToString().isEmpty()) {
        const long start = sequence.GetLong(PROP_SEQ_START);
        if (start >= minimum && start <= maximum)
            return {}; // never used
        // A counter that ran over the range of its numbers: at its end.
        const long end = increment > 0 ? maximum : minimum;
        sequence.AssignPropertyValueSilent(PROP_SEQ_START, end);
        return sequence.GetBool(PROP_SEQ_CYCLE) ? QString() : takeOne(end);
    }
    // In a file that was opened again the engine shows the next value as the last
    // one, even beyond the end. Which of the two it is does not show: one value may
    // be left out, none comes twice.
    const long last = std::clamp(sequence.GetLong(PROP_SEQ_LAST_VALUE), minimum, maximum);
    long next = 0;
    const bool overflows = __builtin_add_overflow(last, increment, &next);
    QString statement;
    if (!overflows && next >= minimum && next <= maximum) {
        sequence.AssignPropertyValueSilent(PROP_SEQ_START, next);
    } else if (sequence.GetBool(PROP_SEQ_CYCLE)) {
        sequence.AssignPropertyValueSilent(PROP_SEQ_START, increment > 0 ? minimum : maximum);
    } else {
        sequence.AssignPropertyValueSilent(PROP_SEQ_START, last);
        statement = takeOne(last);
    }
    // Nothing is left to be done about it.
    sequence.AssignPropertyValueSilent(PROP_SEQ_LAST_VALUE, HF::LVariant::EmptyLong());
    return statement;
}

QString WithZeroBounds(const QString& text, const HF::I_LSchemaObject& sequence)
{
    QString clauses;
    const auto add = [&](int property, const char* word) {
        if (sequence.GetLong(property) == 0)
            clauses += QLatin1String(word) + QLatin1String(" 0\n");
    };
    add(PROP_SEQ_MIN, "MINVALUE");
    add(PROP_SEQ_MAX, "MAXVALUE");
    add(PROP_SEQ_START, "START");
    if (clauses.isEmpty())
        return text;
    QString result = text;
    // Behind the increment, which sets the bounds anew, or else behind the name, which ends the first line.
    QString head = QLatin1String("CREATE SEQUENCE ") + sequence.get_NameForQuery(true);
    const QString increment = QLatin1String("\nINCREMENT ") + QString::number(sequence.GetLong(PROP_SEQ_INCREMENT));
    if (result.startsWith(head + increment + u'\n'))
        head += increment;
    if (result.startsWith(head))
        result.insert(head.size(), u'\n' + clauses.chopped(1));
    return result;
}
