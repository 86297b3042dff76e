// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/text_printers.h"

#include "cli/text_width.h"

#include <QObject>

#include <algorithm>
#include <vector>

namespace orbis {

namespace {

QString RowCountText(qint64 count)
{
    return count == 1 ? QObject::tr("1 row") : QObject::tr("%1 rows").arg(count);
}

/// What a table shows of a cell. A text that looks like a null is put in quotes.
QString TableText(const Cell& cell)
{
    if (cell.kind == Cell::Null)
        return QStringLiteral("NULL");
    if (cell.kind == Cell::Text && cell.text == QLatin1String("NULL"))
        return QStringLiteral("'NULL'");
    return VisibleText(cell.text);
}

std::string Blanks(int count)
{
    return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

} // namespace

void AffectedNotes::Add(const Outcome& outcome)
{
    const bool failed = !outcome.error.isEmpty();
    if (!failed && outcome.affected == 0) {
        ++m_without;
        return;
    }
    Flush();
    if (!failed)
        m_note(outcome.affected == 1 ? QObject::tr("1 row affected")
                                     : QObject::tr("%1 rows affected").arg(outcome.affected));
}

void AffectedNotes::Flush()
{
    if (m_without == 1)
        m_note(QObject::tr("0 rows affected"));
    else if (m_without > 1)
        m_note(QObject::tr("%1 statements, 0 rows affected").arg(m_without));
    m_without = 0;
}

void AffectedNotes::Say(const QString& words)
{
    Flush();
    m_note(words);
}

void TablePrinter::WriteCell(const Cell& cell, int width, bool right, bool last)
{
    const QString text = TableText(cell);
    const int padding = width - TextWidth(text);
    m_output.Write(" ");
    if (right)
        m_output.Write(Blanks(padding));
    const bool dim = m_color && cell.kind == Cell::Null;
    if (dim)
        m_output.Write("\x1b[2m");
    m_output.Write(text);
    if (dim)
        m_output.Write("\x1b[0m");
    if (!right && !last)
        m_output.Write(Blanks(padding));
}

void TablePrinter::Print(const Outcome& outcome, RowSource* rows)
{
    if (!rows) {
        m_notes.Add(outcome);
        return;
    }
    m_notes.Flush();
    if (m_printed)
        m_output.Write("\n");
    m_printed = true;

    const QList<Column>& columns = rows->get_Columns();
    const int count = static_cast<int>(columns.size());
    std::vector<int> widths;
    for (const Column& column : columns)
        widths.push_back(TextWidth(VisibleText(column.name)));
    qint64 rowCount = 0;
    for (bool more = rows->First(); more && !m_output.IsClosed(); more = rows->Next()) {
        for (int i = 0; i < count; ++i)
            widths[i] = std::max(widths[i], TextWidth(TableText(rows->get_Cell(i))));
        ++rowCount;
    }

    for (int i = 0; i < count; ++i) {
        const QString name = VisibleText(columns[i].name);
        const std::string padding = Blanks(widths[i] - TextWidth(name));
        m_output.Write(i ? " | " : " ");
        if (columns[i].IsNumeric())
            m_output.Write(padding);
        if (m_color)
            m_output.Write("\x1b[1m");
        m_output.Write(name);
        if (m_color)
            m_output.Write("\x1b[0m");
        if (!columns[i].IsNumeric() && i + 1 < count)
            m_output.Write(padding);
    }
    m_output.Write("\n");
    for (int i = 0; i < count; ++i) {
        m_output.Write(i ? "+" : "");
        m_output.Write(std::string(static_cast<std::size_t>(widths[i]) + 2, '-'));
    }
    m_output.Write("\n");
    for (bool more = rows->First(); more && !m_output.IsClosed(); more = rows->Next()) {
        for (int i = 0; i < count; ++i) {
            if (i)
                m_output.Write(" |");
            WriteCell(rows->get_Cell(i), widths[i], columns[i].IsNumeric(), i + 1 == count);
        }
        m_output.Write("\n");
    }
    m_output.Flush(); // before the words, so that a terminal shows them in order
    if (!m_output.IsClosed())
        m_notes.Say(RowCountText(rowCount));
}

void CsvPrinter::WriteText(const QString& text)
{
    const auto isSpecial = [](QChar c) { return c == u'"' || c == u',' || c == u'\n' || c == u'\r'; };
    // A blank at either end is part of the text, but not every reader keeps it.
    const bool quoted = text.isEmpty() || text.front() == u' ' || text.back() == u' '
                        || std::any_of(text.begin(), text.end(), isSpecial);
    if (!quoted) {
        m_output.Write(text);
        return;
    }
    m_output.Write("\"");
    if (text.contains(u'"'))
        m_output.Write(QString(text).replace(QLatin1String("\""), QLatin1String("\"\"")));
    else
        m_output.Write(text);
    m_output.Write("\"");
}

void CsvPrinter::Print(const Outcome&, RowSource* rows)
{
    if (!rows)
        return;
    if (m_printed)
        m_output.Write("\r\n");
    m_printed = true;
    const int count = static_cast<int>(rows->get_Columns().size());
    for (int i = 0; i < count; ++i) {
        m_output.Write(i ? "," : "");
        WriteText(rows->get_Columns()[i].name);
    }
    m_output.Write("\r\n");
    for (bool more = rows->First(); more && !m_output.IsClosed(); more = rows->Next()) {
        for (int i = 0; i < count; ++i) {
            m_output.Write(i ? "," : "");
            const Cell cell = rows->get_Cell(i);
            if (cell.kind != Cell::Null)
                WriteText(cell.text);
        }
        m_output.Write("\r\n");
    }
}

namespace {

QString MarkdownText(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        switch (c.unicode()) {
        case '\n':
            result += QLatin1String("<br>");
            break;
        case '\r':
            if (i + 1 == text.size() || text[i + 1] != u'\n')
                result += QLatin1String("<br>");
            break;
        case '&':
            result += QLatin1String("&amp;");
            break;
        case '<':
            result += QLatin1String("&lt;");
            break;
        case '|':
        case '\\':
        case '*':
        case '_':
        case '`':
        case '[':
        case '~':
            result += u'\\';
            [[fallthrough]];
        default:
            result += c;
        }
    }
    return VisibleText(result);
}

} // namespace

void MarkdownPrinter::Print(const Outcome& outcome, RowSource* rows)
{
    if (!rows) {
        m_notes.Add(outcome);
        return;
    }
    m_notes.Flush();
    if (m_printed)
        m_output.Write("\n");
    m_printed = true;
    const QList<Column>& columns = rows->get_Columns();
    m_output.Write("|");
    for (const Column& column : columns) {
        m_output.Write(" ");
        m_output.Write(MarkdownText(column.name));
        m_output.Write(" |");
    }
    m_output.Write("\n|");
    for (const Column& column : columns)
        m_output.Write(column.IsNumeric() ? std::string_view(" ---: |") : std::string_view(" --- |"));
    m_output.Write("\n");
    for (bool more = rows->First(); more && !m_output.IsClosed(); more = rows->Next()) {
        m_output.Write("|");
        for (int i = 0; i < columns.size(); ++i) {
            const Cell cell = rows->get_Cell(i);
            m_output.Write(" ");
            m_output.Write(cell.kind == Cell::Null ? QStringLiteral("*NULL*") : MarkdownText(cell.text));
            m_output.Write(" |");
        }
        m_output.Write("\n");
    }
    m_output.Flush();
}

} // namespace orbis
