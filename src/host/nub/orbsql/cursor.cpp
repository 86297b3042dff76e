// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/cursor.h"

namespace nub::orbsql {

namespace {

class Field final : public Counted<I_Field>
{
public:
    explicit Field(smart_ptr<I_Value> value) : m_value(std::move(value)) {}
    bool get_IsNull() const override { return m_value->get_IsNull(); }
    String get_String() const override { return m_value->get_String(); }

private:
    const smart_ptr<I_Value> m_value;
};

} // namespace

int Cursor::get_ColumnCount() const { return m_rows->Reader().ColumnCount(); }

String Cursor::get_ColumnName(int column) const
{
    return HasColumn(column) ? m_rows->Reader().Name(column) : String();
}

String Cursor::get_ColumnTypeName(int column) const
{
    return HasColumn(column) ? m_rows->Reader().TypeName(column) : String();
}

bool Cursor::NextRow()
{
    if (!m_atStart && m_row + 1 < m_rows->Size()) [[likely]] {
        ++m_row;
        return true;
    }
    m_atStart = false;
    m_row = 0;
    return m_rows->NextChunk();
}

I_Value* Cursor::get_Value(int column)
{
    if (!HasRow() || !HasColumn(column)) [[unlikely]]
        throw xException("There is no such cell");
    return m_rows->Reader().Read(column, m_row);
}

I_Value& Cursor::PeekValue(int column)
{
    if (!HasRow() || !HasColumn(column)) [[unlikely]]
        throw xException("There is no such cell");
    return *m_rows->Reader().Peek(column, m_row);
}

I_Field* Cursor::get_Field(int column)
{
    if (!HasRow() || !HasColumn(column))
        return nullptr;
    auto value = smart_ptr<I_Value>::adopt(m_rows->Reader().Read(column, m_row));
    return value->get_IsNull() ? nullptr : new Field(std::move(value));
}

} // namespace nub::orbsql
