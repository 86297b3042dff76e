// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"
#include "hf/export.h"
#include "rc/ref.h"

#include <functional>

namespace HF {

/// How far a task is: object, done, total.
using LTaskProgress = std::function<void(unsigned long, unsigned long, unsigned long)>;

/// Long work on a worker thread.
class HF_EXPORT LTask : public rc::RefCounted
{
public:
    /// Does the work on the calling thread; false when it failed or was interrupted.
    virtual bool Run() = 0;
    /// From any thread; seen within a statement.
    virtual void Interrupt() = 0;
};

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
