// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/output.h"
#include "cli/rows.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace orbis {

/// How one statement went; the rows, if it gave some, come beside it.
struct Outcome
{
    int status = 0; ///< HF::LQueryResult::StatusValue
    qint64 affected = 0;
    QString error;
};

/// Prints the results of statements, one after another.
class ResultPrinter
{
public:
    virtual ~ResultPrinter() = default;
    /// Before the first result and behind the last one.
    virtual void Begin() {}
    virtual void End() {}
    /// `rows` is null for a statement that gave none.
    virtual void Print(const Outcome& outcome, RowSource* rows) = 0;
};

/// Takes words about a result, such as how many rows changed.
using Note = std::function<void(const QString&)>;

/// Formats by name, the default first.
QStringList ResultFormats();

/// The printer of a format; null for an unknown one. With `color` the table
/// marks headings and nulls.
std::unique_ptr<ResultPrinter> MakeResultPrinter(const QString& format, Output& output, Note note, bool color);

/// The names, each different from all others: a repeated one gets "_1", "_2".
QStringList DistinctNames(const QList<Column>& columns);

} // namespace orbis
