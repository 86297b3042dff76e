// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"

#include <QHash>

namespace HF::impl {

/// While it lives, look-ups of columns of one cursor on this thread are
/// remembered, so that the objects made of a list's rows find their columns
/// without a search a row. Scopes nest.
class RowReading
{
public:
    explicit RowReading(const rc::Ref<const I_LCursor>& cursor);
    ~RowReading();
    RowReading(const RowReading&) = delete;
    RowReading& operator=(const RowReading&) = delete;

    /// The scope of the cursor, or null.
    static RowReading* Of(const I_LCursor* cursor);
    rc::Ptr<I_LField> Column(const char* name);

private:
    struct Known
    {
        const char* address; ///< names are literals, mostly
        QByteArray name;
        rc::Ptr<I_LField> column;
    };

    rc::Ref<const I_LCursor> m_cursor;
    std::vector<Known> m_known;
    RowReading* m_outer;
};

} // namespace HF::impl
