// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/json_printer.h"

namespace orbis {

void WriteCell(JsonWriter& writer, const Cell& cell)
{
    switch (cell.kind) {
    case Cell::Null:
        writer.Null();
        break;
    case Cell::Boolean:
        writer.Boolean(cell.text == QLatin1String("true"));
        break;
    case Cell::Number:
        writer.Number(QStringView(cell.text));
        break;
    case Cell::Bytes:
        writer.BeginObject();
        writer.Key(u"hex");
        writer.Text(QString::fromLatin1(cell.bytes.toHex()));
        writer.EndObject();
        break;
    case Cell::Text:
        writer.Text(cell.text);
        break;
    }
}

void JsonPrinter::End()
{
    m_writer.EndArray();
    m_writer.Finish();
}

void JsonPrinter::Print(const Outcome& outcome, RowSource* rows)
{
    m_writer.BeginObject();
    m_writer.Key(u"status");
    m_writer.Number(outcome.status);
    m_writer.Key(u"affected");
    m_writer.Number(outcome.affected);
    m_writer.Key(u"error");
    m_writer.Text(outcome.error);
    m_writer.Key(u"columns");
    m_writer.BeginArray();
    if (rows) {
        for (const Column& column : rows->get_Columns()) {
            m_writer.BeginObject();
            m_writer.Key(u"name");
            m_writer.Text(column.name);
            m_writer.Key(u"type");
            m_writer.Text(column.type);
            m_writer.Key(u"field_type");
            m_writer.Number(column.fieldType);
            m_writer.EndObject();
        }
    }
    m_writer.EndArray();
    m_writer.Key(u"rows");
    m_writer.BeginArray();
    if (rows) {
        const int count = static_cast<int>(rows->get_Columns().size());
        for (bool more = rows->First(); more && !m_output.IsClosed(); more = rows->Next()) {
            m_writer.BreakLine();
            m_writer.BeginArray();
            for (int i = 0; i < count; ++i)
                WriteCell(m_writer, rows->get_Cell(i));
            m_writer.EndArray();
        }
    }
    m_writer.EndArray();
    m_writer.EndObject();
}

void NdjsonPrinter::Print(const Outcome&, RowSource* rows)
{
    if (!rows)
        return;
    const QStringList names = DistinctNames(rows->get_Columns());
    for (bool more = rows->First(); more && !m_output.IsClosed(); more = rows->Next()) {
        JsonWriter writer(m_output);
        writer.BeginObject();
        for (int i = 0; i < names.size(); ++i) {
            writer.Key(names[i]);
            WriteCell(writer, rows->get_Cell(i));
        }
        writer.EndObject();
        writer.Finish();
    }
}

} // namespace orbis
