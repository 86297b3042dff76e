// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/rows.h"

#include "cli/text_encoding.h"
#include "hf/field_kinds.h"

#include <limits>

namespace orbis {

namespace {

bool IsFiniteNumber(const QString& text)
{
    if (text.isEmpty())
        return false;
    const QChar last = text.back(); // "inf" and "nan" end in letters
    return last.isDigit();
}

} // namespace

Cell ToCell(const HF::I_LSqlValue& value)
{
    Cell cell;
    if (value.get_IsNull())
        return cell;
    const QVariant variant = value.ToQVariant();
    switch (variant.typeId()) {
    case QMetaType::Bool:
        cell.kind = Cell::Boolean;
        cell.text = variant.toBool() ? QStringLiteral("true") : QStringLiteral("false");
        return cell;
    case QMetaType::QByteArray:
        cell.kind = Cell::Bytes;
        cell.bytes = variant.toByteArray();
        cell.text = BytesText(cell.bytes);
        return cell;
    case QMetaType::QString:
        cell.kind = Cell::Text;
        cell.text = variant.toString();
        return cell;
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        cell.kind = Cell::Number;
        break;
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        cell.kind = variant.toULongLong() <= static_cast<qulonglong>(std::numeric_limits<qint64>::max()) ? Cell::Number
                                                                                                          : Cell::Text;
        break;
    case QMetaType::Float:
    case QMetaType::Double:
        cell.text = value.get_String();
        cell.kind = IsFiniteNumber(cell.text) ? Cell::Number : Cell::Text;
        return cell;
    default:
        cell.kind = Cell::Text;
    }
    cell.text = value.get_String();
    return cell;
}

bool Column::IsNumeric() const
{
    return HF::IsNumberType(fieldType);
}

CursorRows::CursorRows(const rc::Ref<HF::I_LCursor>& cursor) : m_cursor(cursor)
{
    const int count = cursor->get_FieldCount().Force();
    for (int i = 0; i < count; ++i) {
        const rc::Ptr<HF::I_LField> field = cursor->get_Field(i);
        if (!field)
            continue;
        m_fields.append(rc::Ref<HF::I_LField>(field));
        m_columns.append(
            {field->get_Name(), field->get_Property(PROP_TYPE_NAME).value.ToString(), field->get_Type().Force()});
    }
}

Cell CursorRows::get_Cell(int column) const
{
    const rc::Ptr<HF::I_LSqlValue> value = m_fields.at(column)->get_Value();
    return value ? ToCell(*value) : Cell();
}

} // namespace orbis
