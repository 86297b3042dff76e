// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/result_printer.h"

namespace orbis {

/// Tells how many rows the statements without a result changed. Those that
/// changed none are told together, since a script may define a lot.
class AffectedNotes
{
public:
    explicit AffectedNotes(Note note) : m_note(std::move(note)) {}

    void Add(const Outcome& outcome);
    /// Tells what has been gathered.
    void Flush();
    void Say(const QString& words);

private:
    Note m_note;
    int m_without = 0;
};

/// Columns in line with each other, for people.
class TablePrinter final : public ResultPrinter
{
public:
    TablePrinter(Output& output, Note note, bool color) : m_output(output), m_notes(std::move(note)), m_color(color) {}

    void End() override { m_notes.Flush(); }
    void Print(const Outcome& outcome, RowSource* rows) override;

private:
    void WriteCell(const Cell& cell, int width, bool right, bool last);

    Output& m_output;
    AffectedNotes m_notes;
    bool m_color;
    bool m_printed = false;
};

/// Comma-separated values by RFC 4180 with a line of names: a null is an empty
/// field, an empty text a quoted one.
class CsvPrinter final : public ResultPrinter
{
public:
    explicit CsvPrinter(Output& output) : m_output(output) {}

    void Print(const Outcome& outcome, RowSource* rows) override;

private:
    void WriteText(const QString& text);

    Output& m_output;
    bool m_printed = false;
};

/// A table of Markdown.
class MarkdownPrinter final : public ResultPrinter
{
public:
    MarkdownPrinter(Output& output, Note note) : m_output(output), m_notes(std::move(note)) {}

    void End() override { m_notes.Flush(); }
    void Print(const Outcome& outcome, RowSource* rows) override;

private:
    Output& m_output;
    AffectedNotes m_notes;
    bool m_printed = false;
};

} // namespace orbis
