// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"

namespace HF {

/// A database whose engine takes its time over the first question about columns,
/// and that can have it answered ahead.
class HF_EXPORT I_LCatalogWarmer
{
public:
    virtual ~I_LCatalogWarmer() = default;
    /// Lets the engine get ready, on a session of its own, while the caller goes on
    /// with something else. Returns at once; the second call does nothing. Any thread.
    virtual void WarmCatalog() = 0;
};

} // namespace HF
