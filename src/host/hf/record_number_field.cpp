// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/record_number_field.h"

#include "hf/schema_item_list.h"
#include "hf/table_cursor.h"
#include "hf/values.h"

namespace HF {

LRecordNumberField::LRecordNumberField(const rc::Ptr<I_LSchemaObject>& owner,
                                       const std::shared_ptr<unsigned long>& position)
    : LField(owner, QStringLiteral("#")), m_owner(owner), m_position(position)
{
}

bool LRecordNumberField::get_IsNull() const
{
    return *m_position >= I_LTableCursor::FirstAddedRow;
}

rc::Ptr<I_LSqlValue> LRecordNumberField::get_Value(long) const
{
    return rc::make<LValueInt64>(get_IsNull() ? 0 : static_cast<std::int64_t>(*m_position) + 1, get_IsNull());
}

QString LRecordNumberField::get_String(long maxLength) const
{
    QString text = get_Value(-1)->get_String();
    if (maxLength >= 0)
        text.truncate(maxLength);
    return text;
}

QByteArray LRecordNumberField::get_Data(long maxLength) const
{
    return get_String(maxLength).toUtf8();
}

int LRecordNumberField::Compare(const I_LField& other) const
{
    const qlonglong mine = get_String(-1).toLongLong();
    const qlonglong theirs = other.get_String(-1).toLongLong();
    return mine < theirs ? -1 : mine > theirs ? 1 : 0;
}

} // namespace HF
