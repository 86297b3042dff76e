// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/cursor.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace orbis {

/// One cell as the printers need it.
struct Cell
{
    enum Kind {
        Null,
        Boolean,
        Number, ///< `text` is a JSON number with all its digits
        Bytes,
        Text,
    };

    Kind kind = Null;
    QString text; ///< the engine's text
    QByteArray bytes;
};

/// What a host's value is to a printer. Whole numbers beyond the signed 64-bit
/// range, decimals and everything else that a JSON reader would round are Text.
Cell ToCell(const HF::I_LSqlValue& value);

/// One column of a result.
struct Column
{
    QString name;
    QString type;      ///< the engine's type text
    int fieldType = 0; ///< HF::ELFieldType

    bool IsNumeric() const;
};

/// Rows of a result, one after another, as often as wanted. One thread.
class RowSource
{
public:
    virtual ~RowSource() = default;
    virtual const QList<Column>& get_Columns() const = 0;
    /// To the first row; false without one.
    virtual bool First() = 0;
    virtual bool Next() = 0;
    virtual Cell get_Cell(int column) const = 0;
};

/// Rows of a host's cursor.
class CursorRows final : public RowSource
{
public:
    explicit CursorRows(const rc::Ref<HF::I_LCursor>& cursor);

    const QList<Column>& get_Columns() const override { return m_columns; }
    bool First() override { return m_cursor->FirstRecord(); }
    bool Next() override { return m_cursor->NextRecord(); }
    Cell get_Cell(int column) const override;

private:
    rc::Ref<HF::I_LCursor> m_cursor;
    QList<Column> m_columns;
    RcList<HF::I_LField> m_fields;
};

} // namespace orbis
