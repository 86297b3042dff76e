// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/export.h"

namespace HF {

/// Whether the user has a transaction open in the database's session. A BEGIN would abort it, with
/// what it has done so far. False where the engine has no way to tell. Asks the database; any thread.
HF_EXPORT bool IsInTransaction(const rc::Ref<I_LDatabase>& database);

/// The same, with a message in the error log when it is so.
HF_EXPORT bool RefuseInTransaction(const rc::Ref<I_LDatabase>& database);

} // namespace HF
