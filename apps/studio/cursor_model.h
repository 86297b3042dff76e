// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"
#include "studio/cell_source.h"

#include <QAbstractTableModel>

/// The rows of a cursor as a table. NULL shows as a dimmed word, bytes as
/// hexadecimal, long texts shortened; the Edit role gives the whole text.
class CursorModel : public QAbstractTableModel, public CellSource
{
    Q_OBJECT

public:
    enum Role { NullRole = Qt::UserRole, FieldTypeRole };

    explicit CursorModel(const rc::Ref<HF::I_LCursor>& cursor, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const rc::Ref<HF::I_LCursor>& get_Cursor() const { return m_cursor; }
    /// The value of a cell; null when out of range.
    rc::Ptr<HF::I_LSqlValue> Value(int row, int column) const override;
    QString ColumnName(int column) const override;
    rc::Ptr<const HF::LTreeItem> get_Item() const override { return rc::Ptr<const HF::LTreeItem>(m_cursor); }

private:
    QString ShortText(const HF::I_LField& field) const;

    rc::Ref<HF::I_LCursor> m_cursor;
    RcList<HF::I_LField> m_columns;
    QList<HF::ELFieldType> m_types;
    QStringList m_names;
    int m_rows = 0;
};
