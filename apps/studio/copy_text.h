// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

class CellSource;

/// Forms in which cells leave the grid.
enum class CopyForm { Text, Csv, Insert };

/// The cells of the rows and columns, in order. Text is separated by tabs,
/// CSV by RFC 4180 with a header (NULL empty, the empty text quoted), Insert is
/// one statement a row for `table`, named as a statement writes it, values as literals.
QString CopyText(const CellSource& cells, const QList<int>& rows, const QList<int>& columns, CopyForm form,
                 const QString& table);
