// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

/// A cursor whose rows come from one table or view, as its columns see it.
class orb_I_RowSource
{
public:
    virtual ~orb_I_RowSource() = default;
    /// Null when the table is gone.
    virtual rc::Ptr<HF::I_LTable> get_SourceTable() const = 0;
    /// The text from " WHERE " on that names the row at the position; its values
    /// are added to `binds`. Empty when the row cannot be named.
    virtual QString RowClause(RcList<HF::I_LSqlValue>& binds) const = 0;
};
