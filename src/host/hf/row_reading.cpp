// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/row_reading.h"

#include "hf/database_object.h"

#include <cstring>

namespace HF {

namespace impl {

namespace {
thread_local RowReading* t_innermost = nullptr;
}

RowReading::RowReading(const rc::Ref<const I_LCursor>& cursor) : m_cursor(cursor), m_outer(t_innermost)
{
    t_innermost = this;
}

RowReading::~RowReading()
{
    t_innermost = m_outer;
}

RowReading* RowReading::Of(const I_LCursor* cursor)
{
    for (RowReading* scope = t_innermost; scope; scope = scope->m_outer)
        if (scope->m_cursor.get() == cursor)
            return scope;
    return nullptr;
}

rc::Ptr<I_LField> RowReading::Column(const char* name)
{
    // An address may be used again for another text, so the text decides.
    for (const Known& known : m_known)
        if (known.address == name && known.name == name)
            return known.column;
    return m_known.emplace_back(name, QByteArray(name), m_cursor->get_Field(QString::fromUtf8(name))).column;
}

/// The value of a cell in the type that the property has, or else the cell.
static LVariant CellVariant(const I_LField& column, LVariant::Type type)
{
    const rc::Ptr<I_LSqlValue> value = column.get_Value(-1);
    const bool isNull = !value || value->get_IsNull();
    if (type == LVariant::Invalid || type == LVariant::Any) {
        if (!isNull)
            return LVariant::FromQVariant(value->ToQVariant());
        switch (column.get_Type().Force()) {
        case FIELD_BOOLEAN:
            return LVariant::EmptyBool();
        case FIELD_SMALLINT:
        case FIELD_INTEGER:
        case FIELD_BIGINT:
            return LVariant::EmptyLong();
        default:
            return LVariant::EmptyString();
        }
    }
    switch (type) {
    case LVariant::Bool:
        return isNull ? LVariant::EmptyBool() : LVariant(value->ToQVariant().toBool());
    case LVariant::Long:
    case LVariant::ULong:
        return isNull ? LVariant::EmptyLong() : LVariant(static_cast<long>(value->ToQVariant().toLongLong()));
    case LVariant::StringList:
        return isNull ? LVariant::EmptyStringList() : LVariant(QStringList(value->get_String()));
    default:
        return isNull ? LVariant::EmptyString() : LVariant(value->get_String());
    }
}

} // namespace impl

rc::Ptr<I_LField> LDatabaseObject_Impl::FindColumn(const rc::Ref<const I_LCursor>& cursor, const char* column)
{
    if (impl::RowReading* scope = impl::RowReading::Of(cursor.get()))
        return scope->Column(column);
    return cursor->get_Field(QString::fromUtf8(column));
}

QString LDatabaseObject_Impl::ReadText(const rc::Ref<const I_LCursor>& cursor, const char* column)
{
    const rc::Ptr<I_LField> field = FindColumn(cursor, column);
    return field && !field->get_IsNull() ? field->get_String() : QString();
}

void LDatabaseObject_Impl::ReadProperty(const rc::Ref<const I_LCursor>& cursor, int id, const char* column)
{
    const rc::Ptr<I_LField> field = FindColumn(cursor, column);
    if (!field)
        return;
    LVariant::Type type = LVariant::Invalid;
    {
        std::lock_guard guard(m_propertyMutex);
        if (const LProperty* known = std::as_const(m_properties).get_PropertyRaw(id))
            type = known->value.get_Type();
    }
    AssignPropertyValue(id, impl::CellVariant(*field, type));
}

} // namespace HF
