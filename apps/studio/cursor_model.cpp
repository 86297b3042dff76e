// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/cursor_model.h"

#include "hf/field_kinds.h"

#include <QApplication>
#include <QBrush>
#include <QPalette>

#include <limits>

namespace {

/// What a cell of the grid shows at most.
constexpr long ShownUnits = 300;
constexpr qsizetype ShownBytes = 64;

} // namespace

CursorModel::CursorModel(const rc::Ref<HF::I_LCursor>& cursor, QObject* parent)
    : QAbstractTableModel(parent), m_cursor(cursor)
{
    const int columns = cursor->get_FieldCount().Force();
    for (int i = 0; i < columns; ++i)
        if (const auto column = cursor->get_Column(i)) {
            m_columns.append(rc::Ref<HF::I_LField>(column));
            m_types.append(column->get_Type().Force());
            m_names.append(column->get_Name());
        }
    m_rows = int(std::min<unsigned long>(cursor->get_RecordCount().Force(), std::numeric_limits<int>::max()));
}

int CursorModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int CursorModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QString CursorModel::ShortText(const HF::I_LField& field) const
{
    if (const long length = field.get_Length(); length > ShownUnits) {
        // One line of the grid shows the beginning only.
        return field.get_String(ShownUnits).simplified() + QChar(0x2026);
    }
    QString text = field.get_String();
    text.replace(u'\n', QChar(0x21B5));
    return text;
}

QVariant CursorModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows || index.column() >= m_columns.size())
        return {};
    const HF::ELFieldType type = m_types[index.column()];
    if (role == Qt::TextAlignmentRole)
        return HF::IsNumberType(type) ? QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    if (role == FieldTypeRole)
        return int(type);

    m_cursor->put_Position(static_cast<unsigned long>(index.row()));
    const HF::I_LField& field = *m_columns[index.column()];
    const bool null = field.get_IsNull();
    switch (role) {
    case NullRole:
        return null;
    case Qt::DisplayRole:
        if (null)
            return QStringLiteral("NULL");
        if (type == HF::FIELD_BLOB) {
            const QByteArray bytes = field.get_Data();
            const QString hex = QString::fromLatin1(bytes.left(ShownBytes).toHex());
            return bytes.size() > ShownBytes ? QString(hex + QChar(0x2026)) : hex;
        }
        return ShortText(field);
    case Qt::EditRole:
        if (null)
            return {};
        return type == HF::FIELD_BLOB ? QString::fromLatin1(field.get_Data().toHex()) : field.get_String();
    case Qt::ToolTipRole:
        if (null || field.get_Length() <= 40)
            return {};
        return field.get_String(4000);
    case Qt::ForegroundRole:
        return null ? QVariant(QBrush(QApplication::palette().color(QPalette::Disabled, QPalette::Text))) : QVariant();
    default:
        return {};
    }
}

QVariant CursorModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    if (section < 0 || section >= m_names.size())
        return {};
    if (role == Qt::DisplayRole)
        return m_names[section];
    return {};
}

rc::Ptr<HF::I_LSqlValue> CursorModel::Value(int row, int column) const
{
    if (row < 0 || row >= m_rows || column < 0 || column >= m_columns.size())
        return nullptr;
    m_cursor->put_Position(static_cast<unsigned long>(row));
    return m_columns[column]->get_Value();
}

QString CursorModel::ColumnName(int column) const
{
    return m_names.value(column);
}
