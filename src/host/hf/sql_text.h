// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/lazy.h"
#include "hf/sql_value.h"
#include "hf/tree_item.h"

#include <QStringList>

#include <optional>

namespace HF {

class I_LDatabase;

/// Trims the text, closes it with a semicolon unless it has one, and adds line
/// breaks. A text that is empty then stays empty. A text that ends in a line
/// comment gets its semicolon on a line of its own.
HF_EXPORT void FinishQuery(QString& text, int lineBreaks);

/// True when the text, put between brackets, stays one expression: no semicolon and no
/// bracket or quote that is not closed.
HF_EXPORT bool IsSingleExpression(const QString& text);
/// The text with `$1`, `$2`, ... counted on by `offset`, strings and names left alone.
HF_EXPORT QString ShiftPlaceholders(const QString& text, int offset);

/// The statements of a text, each without its semicolon; what holds nothing but
/// comments is left out.
HF_EXPORT QStringList SplitStatements(const QString& text);

/// The name as a statement of the item's database writes it: bare, or in double quotes where
/// the engine needs them.
HF_EXPORT QString QuoteName(const QString& name, const rc::Ptr<const LTreeItem>& item);
/// The text as an SQL literal: single quotes, each one inside doubled.
HF_EXPORT QString QuoteText(const QString& text, const rc::Ptr<const LTreeItem>& item = {});
/// Quoted names joined by ", ".
HF_EXPORT QString JoinIdentifiers(const QStringList& names, const rc::Ptr<const LTreeItem>& item);

/// Runs a query and gives the text of its first row's first column: nothing
/// when it failed, gave no row or a NULL.
HF_EXPORT std::optional<QString> EvaluateSQL(const rc::Ptr<I_LDatabase>& database, const QString& text,
                                             const RcList<I_LSqlValue>& binds = {});
HF_EXPORT LLazy<QString, false> LazyEvaluateSQL(const rc::Ptr<I_LDatabase>& database, const QString& text, bool silent,
                                                const RcList<I_LSqlValue>& binds, bool background);

} // namespace HF
