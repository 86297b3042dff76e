// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>

class QLineEdit;

/// A condition on a column from what was typed below its header: "NULL",
/// "!NULL", an operator (=, <, >, <=, >=, <>) and a value, otherwise a part of the
/// value's text; of a number the number itself. Empty for nothing.
QString FilterCondition(const QString& quotedColumn, const QString& typed, bool number);

/// The header of a table with a line below it, in which each column is filtered.
class FilterHeader : public QHeaderView
{
    Q_OBJECT

public:
    explicit FilterHeader(QWidget* parent = nullptr);
    /// As many fields as there are columns.
    void SetColumns(int count);
    QLineEdit* get_Field(int column) const { return m_fields.value(column); }
    QSize sizeHint() const override;
    /// Puts the fields below their columns; the view calls it when it scrolls.
    void Place();

signals:
    void FilterChanged();

protected:
    void updateGeometries() override;

private:
    QList<QLineEdit*> m_fields;
};
