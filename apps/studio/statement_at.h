// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// A statement's place in a text: [start, end), without white space around it.
struct StatementRange
{
    qsizetype start = 0;
    qsizetype end = 0;
    bool IsEmpty() const { return end <= start; }
};

/// The statement around a position: the one that holds it, or the one before
/// when the position stands behind its semicolon on the same line. Knows
/// strings, escape strings, dollar quotes, quoted names and nested comments.
StatementRange StatementAt(const QString& text, qsizetype position);
