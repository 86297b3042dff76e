// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The host's numbers of the words that open a statement.
enum StatementToken : int {
    StatementToken_Alter = 66,
    StatementToken_Attach = 75,
    StatementToken_Begin = 80,
    StatementToken_Commit = 98,
    StatementToken_Create = 106,
    StatementToken_Delete = 119,
    StatementToken_Detach = 122,
    StatementToken_Drop = 129,
    StatementToken_End = 134,
    StatementToken_Insert = 176,
    StatementToken_Start = 252,
};

/// Names of aggregate functions, upper case, sorted. Any thread.
const QStringList& DuckDBAggregateFunctions();

/// The words that open a statement, in the editor's order or sorted. Any thread.
const QStringList& DuckDBStatementKeywords(bool sorted);

/// What may stand behind a word that opens a statement; empty for other tokens.
QStringList DuckDBFollowingKeywords(int keyword);
