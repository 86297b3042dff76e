// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/query_result.h"

#include "hf/cursor.h"

#include <QStringList>

namespace HF {

LQueryResult::LQueryResult() = default;
LQueryResult::LQueryResult(const LQueryResult&) = default;
LQueryResult& LQueryResult::operator=(const LQueryResult&) = default;
LQueryResult::~LQueryResult() = default;

bool IsQuerySuccess(const QList<LQueryResult>& results)
{
    for (const LQueryResult& result : results)
        if (result.Status == LQueryResult::Failed)
            return false;
    return !results.isEmpty();
}

QString GetQueryErrors(const QList<LQueryResult>& results)
{
    QStringList errors;
    for (const LQueryResult& result : results)
        if (result.Status == LQueryResult::Failed && !result.Error.isEmpty())
            errors.append(result.Error);
    return errors.join(QLatin1Char('\n'));
}

} // namespace HF
