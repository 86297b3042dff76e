// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/text_substitution.h"

#include "hf/schema_object.h"
#include "hf/sql_text.h"

QString SubstituteLiterals(const QString& query, const QHash<QString, QString>& texts)
{
    QString result;
    result.reserve(query.size() + 64);
    for (qsizetype at = 0; at < query.size();) {
        if (query[at] != u'$') {
            result.append(query[at++]);
            continue;
        }
        qsizetype end = at + 1;
        while (end < query.size() && ((query[end] >= u'A' && query[end] <= u'Z') || query[end] == u'_'))
            ++end;
        const auto text = texts.constFind(query.mid(at + 1, end - at - 1));
        if (text == texts.constEnd())
            result.append(QStringView(query).mid(at, end - at));
        else
            result.append(HF::QuoteText(*text));
        at = end;
    }
    return result;
}
