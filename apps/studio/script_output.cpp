// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/script_output.h"

#include "studio/appearance.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTextBlock>

namespace {

constexpr int MaximumLines = 10000;
constexpr int FlushInterval = 40; ///< milliseconds

} // namespace

ScriptOutput::ScriptOutput(QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setMaximumBlockCount(MaximumLines);
    setUndoRedoEnabled(false);
    viewport()->setMouseTracking(true);
    m_flush.setSingleShot(true);
    m_flush.setInterval(FlushInterval);
    connect(&m_flush, &QTimer::timeout, this, &ScriptOutput::Flush);
}

void ScriptOutput::Add(const QString& text, bool isError, int line)
{
    if (m_waiting.size() >= MaximumLines)
        m_waiting.remove(0, MaximumLines / 2);
    m_waiting.append({text, isError, line});
    if (!m_flush.isActive())
        m_flush.start();
}

void ScriptOutput::Empty()
{
    m_waiting.clear();
    clear();
}

QString ScriptOutput::Text()
{
    Flush();
    return toPlainText();
}

void ScriptOutput::Flush()
{
    m_flush.stop();
    const bool atEnd = verticalScrollBar()->value() >= verticalScrollBar()->maximum();
    const QColor error(QLatin1String(IsDark(palette()) ? "#ef7b6f" : "#b3261e"));
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (const Entry& entry : std::exchange(m_waiting, {})) {
        cursor.movePosition(QTextCursor::End);
        QTextCharFormat format;
        if (entry.isError)
            format.setForeground(error);
        if (entry.line > 0) {
            format.setAnchor(true);
            format.setAnchorHref(QString::number(entry.line));
            format.setFontUnderline(true);
        }
        if (!document()->isEmpty())
            cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        cursor.insertText(entry.text.isEmpty() ? QStringLiteral(" ") : entry.text, format);
    }
    cursor.endEditBlock();
    if (atEnd)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void ScriptOutput::Follow(const QString& anchor)
{
    if (const int line = anchor.toInt(); line > 0)
        emit LineChosen(line);
}

void ScriptOutput::FollowLink()
{
    QTextCursor cursor = textCursor();
    cursor.movePosition(QTextCursor::EndOfBlock);
    Follow(cursor.charFormat().anchorHref());
}

void ScriptOutput::mouseReleaseEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && !textCursor().hasSelection())
        Follow(anchorAt(event->pos()));
}

void ScriptOutput::mouseMoveEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseMoveEvent(event);
    viewport()->setCursor(anchorAt(event->pos()).isEmpty() ? Qt::IBeamCursor : Qt::PointingHandCursor);
}

void ScriptOutput::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        FollowLink();
    else
        QPlainTextEdit::keyPressEvent(event);
}
