// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/query_result.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <vector>

namespace HF {

/// Writes to the error log, which the programs show. Any thread. Texts never
/// hold secrets: that is the caller's duty.
HF_EXPORT void LogError(const QString& text);

/// One entry of the query log.
struct HF_EXPORT LQueryLogEntry
{
    QDateTime time;
    QString workspace;
    QString connectionIcon, connectionName, databaseIcon, databaseName;
    QString text;
    QString error;
    int status = 0;
    qint64 affected = 0;
    qint64 milliseconds = 0;
    bool byUser = true;
};

/// Writes to the query log. Any thread.
HF_EXPORT void LogQuery(const QString& workspace, const QString& connectionIcon, const QString& connectionName,
                        const QString& databaseIcon, const QString& databaseName, const QString& text,
                        const LQueryResult& result, qint64 milliseconds, bool byUser);

/// Whoever shows the logs. Called on the thread that logs, one call at a time;
/// must not log itself.
HF_EXPORT void SetErrorLogSink(std::function<void(const QString&)> sink);
HF_EXPORT void SetQueryLogSink(std::function<void(const LQueryLogEntry&)> sink);
/// The last entries, oldest first, at most 1,000 of each kind.
HF_EXPORT std::vector<QString> ErrorLogEntries();
HF_EXPORT std::vector<LQueryLogEntry> QueryLogEntries();

} // namespace HF
