// SPDX-License-Identifier: GPL-3.0-or-later
#include "dump/sequence_text.h"

#include "model/text_helpers.h"

#include <algorithm>
#include <optional>

QString ContinueSequence(HF::I_LSchemaObject& sequence)
{
    const std::optional<HF::LProperty> known = sequence.HasProperty(PROP_SEQ_LAST_VALUE);
    if (!known || known->value.ToString().isEmpty())
        return {}; // never used
    const long increment = sequence.GetLongOr(PROP_SEQ_INCREMENT, 1);
    const long minimum = sequence.GetLong(PROP_SEQ_MIN);
    const long maximum = sequence.GetLong(PROP_SEQ_MAX);
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
        statement = QLatin1String("SELECT nextval(")
            + QuoteStringLiteral(sequence.get_NameForQuery(true)) + u')';
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
    // Behind the name, which ends the first line.
    const QString head = QLatin1String("CREATE SEQUENCE ") + sequence.get_NameForQuery(true);
    if (result.startsWith(head))
        result.insert(head.size(), u'\n' + clauses.chopped(1));
    return result;
}
