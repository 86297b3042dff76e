// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/script_text_edit.h"

#include <Qsci/qscilexerjavascript.h>

#include <QEvent>
#include <QFontDatabase>

namespace {

constexpr int ErrorMark = 1;

} // namespace

ScriptTextEdit::ScriptTextEdit(QWidget* parent) : LScintilla(parent), m_script(new QsciLexerJavaScript(this))
{
    m_script->setFoldCompact(false);
    setLexer(m_script);
    setAutoCompletionSource(AcsDocument);
    setAutoCompletionThreshold(3);
    setAutoCompletionCaseSensitivity(true);
    markerDefine(Background, ErrorMark);
    ApplyColors();
    connect(this, &QsciScintilla::textChanged, this, &ScriptTextEdit::ClearMarks);
}

void ScriptTextEdit::ShowLine(int line)
{
    ClearMarks();
    if (line < 1 || line > lines())
        return;
    markerAdd(line - 1, ErrorMark);
    setCursorPosition(line - 1, 0);
    ensureLineVisible(line - 1);
    setFocus();
}

void ScriptTextEdit::ClearMarks()
{
    markerDeleteAll(ErrorMark);
}

int ScriptTextEdit::MarkedLine() const
{
    return markerFindNext(0, 1u << ErrorMark) + 1;
}

void ScriptTextEdit::changeEvent(QEvent* event)
{
    LScintilla::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_script)
        ApplyColors();
}

void ScriptTextEdit::ApplyColors()
{
    using Lexer = QsciLexerJavaScript;
    const QColor paper = palette().color(QPalette::Base);
    const QColor text = palette().color(QPalette::Text);
    const bool dark = paper.lightness() < 128;
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    m_script->setDefaultPaper(paper);
    m_script->setDefaultColor(text);
    m_script->setDefaultFont(font);
    m_script->setPaper(paper, -1);
    m_script->setColor(text, -1);
    m_script->setFont(font, -1);
    const struct
    {
        int style;
        const char* light;
        const char* dark;
    } styles[] = {
        {Lexer::Comment, "#6a737d", "#8b949e"},
        {Lexer::CommentLine, "#6a737d", "#8b949e"},
        {Lexer::CommentDoc, "#6a737d", "#8b949e"},
        {Lexer::CommentLineDoc, "#6a737d", "#8b949e"},
        {Lexer::Keyword, "#0b57d0", "#79b8ff"},
        {Lexer::Number, "#9a5b00", "#f2b266"},
        {Lexer::SingleQuotedString, "#1a7f37", "#7ee787"},
        {Lexer::DoubleQuotedString, "#1a7f37", "#7ee787"},
        {Lexer::RawString, "#1a7f37", "#7ee787"},
        {Lexer::UnclosedString, "#c8473b", "#ef7b6f"},
        {Lexer::Regex, "#8a4600", "#ffc27a"},
    };
    for (const auto& style : styles)
        m_script->setColor(QColor(QLatin1String(dark ? style.dark : style.light)), style.style);
    QFont bold = font;
    bold.setBold(true);
    m_script->setFont(bold, Lexer::Keyword);
    setMarkerBackgroundColor(QColor(QLatin1String(dark ? "#5a2a2a" : "#ffdddd")), ErrorMark);
}
