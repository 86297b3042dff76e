// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/query_runner.h"

#include "hf/background.h"

#include <QElapsedTimer>
#include <QTimer>

QueryRunner::QueryRunner(const rc::Ref<HF::I_LDatabase>& database, QObject* parent)
    : QObject(parent), m_database(database)
{
}

bool QueryRunner::Run(const QString& text)
{
    const rc::Ptr<HF::I_LDatabase> database = m_database.lock();
    if (m_running || !database)
        return false;
    m_running = true;
    const rc::Ref<HF::I_LSqlQuery> query = database->MakeSqlQuery();
    query->SetInterruptible(true);
    m_query = query;
    emit Started();
    HF::RunInBackground(
        [query, text] {
            QElapsedTimer timer;
            timer.start();
            QList<HF::LQueryResult> results = query->Execute(text, HF::QUERY_DEFAULT, {});
            return QPair(results, timer.elapsed());
        },
        this,
        [this, database](const QPair<QList<HF::LQueryResult>, qint64>& outcome) {
            m_running = false;
            m_query.reset();
            // A worker cannot tie a cursor to its database.
            for (const HF::LQueryResult& result : outcome.first)
                if (result.Cursor)
                    result.Cursor->SetSourceDatabase(rc::Ref<HF::I_LDatabase>(database));
            emit Finished(outcome.first, outcome.second);
        });
    return true;
}

void QueryRunner::Stop()
{
    if (!m_query)
        return;
    m_query->Interrupt();
    // The statement may be about to start on its worker, where the first call finds nothing yet.
    QTimer::singleShot(200, this, [this, query = m_query] {
        if (m_query.get() == query.get())
            Stop();
    });
}
