// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/cell_source.h"

#include <QList>
#include <QVariantList>

class QMimeData;

/// Adds the cells to the clipboard's data in a form of our own, which keeps NULL,
/// bytes, tabs and line feeds.
void PutBlock(QMimeData& data, const CellSource& cells, const QList<int>& rows, const QList<int>& columns);

/// A block of cells from the clipboard: our own form, or a text with tabs between
/// cells, in which a cell in double quotes may hold tabs and line feeds. An
/// invalid variant is NULL.
QList<QVariantList> TakeBlock(const QMimeData& data);
