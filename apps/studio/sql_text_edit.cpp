// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/sql_text_edit.h"

#include "studio/statement_at.h"

#include <QKeyEvent>
#include <QRegularExpression>

namespace {

constexpr int CompletionList = 1;
/// Letters after which the list opens by itself.
constexpr int AutomaticAfter = 3;

/// In the statement around the caret, so that an odd quote elsewhere does no harm.
int StartOfWord(const QString& text, int caret)
{
    const StatementRange range = StatementAt(text, caret);
    const qsizetype from = caret >= range.start && caret <= range.end ? range.start : 0;
    return int(from) + WordStart(text.mid(from), caret - int(from));
}

} // namespace

SqlTextEdit::SqlTextEdit(QWidget* parent) : LScintilla(parent)
{
    connect(this, &QsciScintilla::userListActivated, this, [this](int id, const QString& word) {
        if (id == CompletionList)
            Complete(word);
    });
    SendScintilla(SCI_AUTOCSETIGNORECASE, 1);
    SendScintilla(SCI_AUTOCSETORDER, SC_ORDER_PERFORMSORT);
    SendScintilla(SCI_AUTOCSETMAXHEIGHT, 12);
}

int SqlTextEdit::CaretPosition() const
{
    const long bytes = SendScintilla(SCI_GETCURRENTPOS);
    return int(QString::fromUtf8(text().toUtf8().left(bytes)).size());
}

void SqlTextEdit::InsertSnippet(const QString& snippet)
{
    removeSelectedText();
    const long start = SendScintilla(SCI_GETCURRENTPOS);
    insert(snippet);
    SendScintilla(SCI_GOTOPOS, static_cast<unsigned long>(start));
    if (!SelectNextField())
        SendScintilla(SCI_GOTOPOS, static_cast<unsigned long>(start + snippet.toUtf8().size()));
    setFocus();
}

bool SqlTextEdit::SelectNextField()
{
    static const QRegularExpression field(QStringLiteral("<#[^#\\n]*#>"));
    const QByteArray utf8 = text().toUtf8();
    const long caret = SendScintilla(SCI_GETSELECTIONEND);
    const QString before = QString::fromUtf8(utf8.left(caret));
    const auto match = field.match(text(), before.size());
    if (!match.hasMatch())
        return false;
    const long from = text().left(match.capturedStart()).toUtf8().size();
    const long to = from + match.captured().toUtf8().size();
    SendScintilla(SCI_SETSEL, static_cast<unsigned long>(from), to);
    return true;
}

void SqlTextEdit::ShowCompletion()
{
    const QString whole = text();
    const int caret = CaretPosition();
    const StatementRange range = StatementAt(whole, caret);
    const bool inside = caret >= range.start && caret <= range.end;
    const QString statement = inside ? whole.mid(range.start, range.end - range.start) : whole;
    const Completion found = CompleteAt(statement, int(inside ? caret - range.start : caret), m_words);
    if (found.words.isEmpty())
        return;
    SendScintilla(SCI_AUTOCSETSEPARATOR, 1);
    showUserList(CompletionList, found.words);
}

void SqlTextEdit::Complete(const QString& word)
{
    const int caret = CaretPosition();
    const QString whole = text();
    // What was typed while the list stood open belongs to the prefix as well.
    const int start = StartOfWord(whole, caret);
    const long from = whole.left(start).toUtf8().size();
    const long to = whole.left(caret).toUtf8().size();
    SendScintilla(SCI_SETSEL, static_cast<unsigned long>(from), to);
    replaceSelectedText(word);
}

void SqlTextEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && event->modifiers() & Qt::ControlModifier) {
        ShowCompletion();
        return;
    }
    if (event->key() == Qt::Key_Tab && event->modifiers() == Qt::NoModifier && !isListActive() && SelectNextField())
        return;
    const bool listed = isListActive();
    LScintilla::keyPressEvent(event);
    if (isListActive() || event->text().isEmpty() || event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return;
    const QChar typed = event->text().back();
    if (typed == u'.' || (listed && (typed.isLetterOrNumber() || typed == u'_' || typed == u'"'))) {
        ShowCompletion(); // the list closes by itself when a name in quotes is typed without them
    } else if (typed.isLetter()) {
        const QString whole = text();
        int start = CaretPosition();
        const int caret = start;
        while (start > 0 && (whole[start - 1].isLetterOrNumber() || whole[start - 1] == u'_'))
            --start;
        if (caret - start == AutomaticAfter)
            ShowCompletion();
    }
}
