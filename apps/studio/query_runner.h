// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <QObject>

#include <memory>

/// Runs SQL of one tab on a worker, one text at a time. Main thread.
class QueryRunner : public QObject
{
    Q_OBJECT

public:
    explicit QueryRunner(const rc::Ref<HF::I_LDatabase>& database, QObject* parent = nullptr);

    bool IsRunning() const { return m_running; }
    /// False when something runs already.
    bool Run(const QString& text);
    /// Ends the statement that runs.
    void Stop();

signals:
    void Started();
    void Finished(const QList<HF::LQueryResult>& results, qint64 milliseconds);

private:
    rc::Weak<HF::I_LDatabase> m_database;
    rc::Ptr<HF::I_LSqlQuery> m_query;
    bool m_running = false;
};
