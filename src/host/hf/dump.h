// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"
#include "hf/task.h"

#include <functional>

namespace HF {

/// How far a dump is: number of the table, rows done, rows in all. The last two
/// are -1 when the table begins and while they are not known.
using LDumpProgress = std::function<void(long, long, long)>;
/// How far a load is: bytes done, bytes in all (0 when not known), statements done.
using LLoadProgress = std::function<void(unsigned long, unsigned long, unsigned long)>;

/// Options of an SQL dump.
struct HF_EXPORT LSQLDumpOptions
{
    bool Clean = false;
    bool Transaction = false;
    bool MultiRowInsert = true;
    bool Replace = false;
    int InsertLimitRows = 0; ///< 0: no limit
    int InsertLimitData = 0; ///< KiB; 0: no limit
};

} // namespace HF
