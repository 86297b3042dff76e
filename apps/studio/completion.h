// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/ident.h"

#include <QStringList>

/// The words that completion offers.
struct CompletionWords
{
    QList<HF::LIdent> idents;
    QStringList keywords;
    QStringList reserved; ///< keywords that are names only in quotes
    QStringList functions;
};

/// What completion offers at a place.
struct Completion
{
    int prefixLength = 0; ///< units before the place that the chosen word replaces
    QStringList words;    ///< sorted, without repeats
};

/// Where the word begins that ends at `position`: a name, or a quoted name that
/// is not closed yet, with its quote.
int WordStart(const QString& text, int position);

/// Completes the word before `position` in a statement. Behind "name." come the
/// columns of the table or alias of that name, or the objects of the schema;
/// elsewhere all names, keywords and functions. Names are offered as they have
/// to be written. An alias is found anywhere in the statement.
Completion CompleteAt(const QString& statement, int position, const CompletionWords& words);
