// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/table_cursor.h"
#include "studio/cell_source.h"

#include <QAbstractTableModel>
#include <QTimer>

/// The rows of a table cursor for a view. However large the table is, the model
/// has at most SegmentRows rows: a segment of the table that the view moves, and
/// the cursor's window of values within it. Rows that are not there yet show as
/// such and are read on a worker, those in sight first. Rows that were added
/// stand behind the last one of the table.
class TableModel : public QAbstractTableModel, public CellSource
{
    Q_OBJECT

public:
    enum Role { NullRole = Qt::UserRole, FieldTypeRole, StateRole, EditedRole, TypeArgumentsRole };
    static constexpr int SegmentRows = 100000;

    explicit TableModel(const rc::Ref<HF::I_LTableCursor>& cursor, QObject* parent = nullptr);
    ~TableModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// An invalid variant is NULL, bytes are bytes, everything else a text.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    rc::Ptr<HF::I_LSqlValue> Value(int row, int column) const override;
    QString ColumnName(int column) const override { return m_names.value(column); }
    rc::Ptr<const HF::LTreeItem> get_Item() const override;
    const rc::Ref<HF::I_LTableCursor>& get_Cursor() const { return m_cursor; }
    HF::ELFieldType get_ColumnType(int column) const { return m_types.value(column, HF::FIELD_UNKNOWN); }

    /// Which columns beside the table's own are there. Edits stay.
    void ShowColumns(bool rowIds, bool generated);
    /// The engine makes the column's values: a row id or a generated column.
    bool IsDerived(int column) const;
    bool IsRowThere(int row) const { return row >= 0 && row < m_rows && IsThere(CursorRow(row)); }
    /// Why a cell of a column that can be edited takes no text; mostly empty.
    QString Refusal(const QModelIndex& index) const;

    // The segment
    /// Rows of the table and added ones; an estimate until they are counted.
    unsigned long get_TotalRows() const { return m_tableRows + static_cast<unsigned long>(m_added); }
    unsigned long get_SegmentStart() const { return m_segmentStart; }
    /// Moves the segment so that it begins at about this row.
    void MoveSegment(unsigned long start);
    /// The cursor's number of a row of the segment.
    unsigned long CursorRow(int row) const;
    /// The rows that the view shows: they are read first.
    void ShowRows(int first, int last);
    bool IsLoading() const { return m_request || m_counting || m_reload; }
    bool IsSaving() const { return bool(m_batch); }

    // Edits. What they cannot do they tell by Failed.
    int AddRow(); ///< its row in the segment, which moves there
    void SetNull(const QModelIndexList& cells);
    void DeleteRows(const QList<int>& rows, bool deleted);
    /// Takes back the edit of the cell, or else the last one; false when there is none.
    bool TakeBack(const QModelIndex& current);
    void RevertAll();
    int get_EditCount() const { return m_editCount; }
    /// What a save would run.
    QStringList Statements() const;
    void Save();
    void CancelSave();

    // Order and filter
    void Sort(const QList<HF::LSortField>& fields);
    /// False when it is no expression at all. What only the engine can tell, it tells
    /// when the rows are read: Failed then, and the filter before stands again.
    bool SetFilter(const QString& expression);
    void Reload();
    /// Ends what runs in the background.
    void Stop();

signals:
    /// Something did not work; in the engine's words.
    void Failed(const QString& text);
    void EditsChanged();
    /// Rows came, went or were counted.
    void RowsChanged();
    void Saved(bool saved, qint64 rows);

private:
    struct Step
    {
        enum Kind { Cell, Added, Deleted } kind;
        unsigned long row;
        int column;
        rc::Ptr<HF::I_LSqlValue> before; ///< null: the cell had no edit
    };

    void ReadColumns();
    bool IsAdded(unsigned long row) const { return row >= HF::I_LTableCursor::FirstAddedRow; }
    bool IsThere(unsigned long row) const { return IsAdded(row) || m_cursor->IsRowLoaded(row); }
    int SegmentSize() const;
    void UpdateTotal();
    void Load();
    void WindowCame(const rc::Ref<HF::LWindowRequest>& request);
    void Count();
    void Edited(const QModelIndex& index);
    void AllChanged();
    void CountEdits();
    void Fresh();
    QString CellText(const HF::I_LSqlValue& value) const;

    rc::Ref<HF::I_LTableCursor> m_cursor;
    QStringList m_names;
    QList<HF::ELFieldType> m_types;
    unsigned long m_tableRows = 0;
    unsigned long m_segmentStart = 0;
    int m_added = 0;
    int m_rows = 0; ///< of the segment
    int m_editCount = 0;
    int m_shownFirst = 0;
    int m_shownLast = 50;
    rc::Ptr<HF::LWindowRequest> m_request;
    rc::Ptr<HF::LCountRequest> m_counting;
    rc::Ptr<HF::LEditBatch> m_batch;
    bool m_loadAgain = false;
    bool m_reload = true; ///< read the window although it is there
    bool m_countWanted = true;
    bool m_filterOnTrial = false; ///< no rows have come through it yet
    QString m_goodFilter;
    QTimer m_loadTimer;
    QList<Step> m_steps;
};
