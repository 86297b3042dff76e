// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/open_transaction.h"

#include "hf/engine.h"
#include "hf/log.h"
#include "hf/sql_text.h"

#include <QObject>

namespace HF {

bool IsInTransaction(const rc::Ref<I_LDatabase>& database)
{
    const LDatabaseEngine* const engine = database->get_DatabaseEngine();
    const QString probe = engine ? engine->GetTransactionProbe() : QString();
    if (probe.isEmpty())
        return false;
    // Outside a transaction each statement has a number of its own.
    const std::optional<QString> first = EvaluateSQL(database, probe);
    return first && EvaluateSQL(database, probe) == first;
}

bool RefuseInTransaction(const rc::Ref<I_LDatabase>& database)
{
    if (!IsInTransaction(database))
        return false;
    LogError(QObject::tr("A transaction is open in this session; end it first."));
    return true;
}

} // namespace HF
