// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/json_writer.h"
#include "cli/result_printer.h"

namespace orbis {

/// null, true, false, a number, {"hex":"00ff"} or a text.
void WriteCell(JsonWriter& writer, const Cell& cell);

/// One document: a list of all results with their columns and rows.
class JsonPrinter final : public ResultPrinter
{
public:
    explicit JsonPrinter(Output& output) : m_output(output), m_writer(output) {}

    void Begin() override { m_writer.BeginArray(); }
    void End() override;
    void Print(const Outcome& outcome, RowSource* rows) override;

private:
    Output& m_output;
    JsonWriter m_writer;
};

/// An object a row and a line.
class NdjsonPrinter final : public ResultPrinter
{
public:
    explicit NdjsonPrinter(Output& output) : m_output(output) {}

    void Print(const Outcome& outcome, RowSource* rows) override;

private:
    Output& m_output;
};

} // namespace orbis
