// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/result_printer.h"

#include <QByteArray>

/// Rows for a printer without an engine.
class TableRows final : public orbis::RowSource
{
public:
    TableRows(QList<orbis::Column> columns, QList<QList<orbis::Cell>> rows)
        : m_columns(std::move(columns)), m_rows(std::move(rows))
    {
    }
    const QList<orbis::Column>& get_Columns() const override { return m_columns; }
    bool First() override { return (m_row = 0) < m_rows.size(); }
    bool Next() override { return ++m_row < m_rows.size(); }
    orbis::Cell get_Cell(int column) const override { return m_rows.at(m_row).at(column); }

private:
    QList<orbis::Column> m_columns;
    QList<QList<orbis::Cell>> m_rows;
    qsizetype m_row = 0;
};

inline orbis::Cell NullCell() { return {}; }
inline orbis::Cell TextCell(const QString& text) { return {orbis::Cell::Text, text, {}}; }
inline orbis::Cell NumberCell(const QString& text) { return {orbis::Cell::Number, text, {}}; }
inline orbis::Cell BooleanCell(bool value) { return {orbis::Cell::Boolean, value ? "true" : "false", {}}; }
orbis::Cell BytesCell(const QByteArray& bytes);

/// What a format makes of a list of results; a null entry gave no rows.
QByteArray Printed(const QString& format, const QList<TableRows*>& results, QStringList* notes = nullptr,
                   bool color = false);
