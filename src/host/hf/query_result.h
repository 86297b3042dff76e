// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "rc/ref.h"

#include <QList>
#include <QString>

namespace HF {

class I_LCursor;

/// Outcome of one statement.
struct HF_EXPORT LQueryResult
{
    enum StatusValue : int { Failed = 0, HasCursor = 1, Done = 3 };

    LQueryResult();
    LQueryResult(const LQueryResult&);
    LQueryResult& operator=(const LQueryResult&);
    ~LQueryResult();

    rc::Ptr<I_LCursor> Cursor;
    qint64 AffectedRecords = 0;
    QString Error;
    int Status = Failed;
};

/// True when no result failed and the list is not empty.
HF_EXPORT bool IsQuerySuccess(const QList<LQueryResult>& results);
/// The errors of the failed results, a line each.
HF_EXPORT QString GetQueryErrors(const QList<LQueryResult>& results);

} // namespace HF
