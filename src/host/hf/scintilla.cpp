// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/scintilla.h"

#include "hf/background.h"
#include "hf/database.h"
#include "hf/engine.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPalette>
#include <QPointer>

namespace HF {

namespace {

QByteArray LowerWords(const QStringList& words)
{
    return words.join(u' ').toLower().toUtf8();
}

} // namespace

LSqlLexer::LSqlLexer(QObject* parent) : QsciLexerSQL(parent)
{
    setBackslashEscapes(false);
    setHashComments(false);
    setQuotedIdentifiers(true);
    setFoldCompact(false);
}

void LSqlLexer::SetWords(const QStringList& keywords, const QStringList& functions)
{
    m_keywords = LowerWords(keywords);
    m_functions = LowerWords(functions);
}

const char* LSqlLexer::keywords(int set) const
{
    if (set == 1 && !m_keywords.isEmpty())
        return m_keywords.constData();
    if (set == 6 && !m_functions.isEmpty())
        return m_functions.constData();
    return set == 1 ? QsciLexerSQL::keywords(1) : nullptr;
}

void LSqlLexer::ApplyPalette(const QPalette& palette)
{
    const QColor paper = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const bool dark = paper.lightness() < 128;
    const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    setDefaultPaper(paper);
    setDefaultColor(text);
    setDefaultFont(font);
    setPaper(paper, -1);
    setColor(text, -1);
    setFont(font, -1);
    auto paint = [&](int style, const char* light, const char* onDark) {
        setColor(QColor(QLatin1String(dark ? onDark : light)), style);
    };
    for (int style : {int(Comment), int(CommentLine), int(CommentDoc)})
        paint(style, "#6a737d", "#8b949e");
    paint(Keyword, "#0b57d0", "#79b8ff");
    paint(KeywordSet6, "#7b3fb5", "#c8a2ff");
    paint(Number, "#9a5b00", "#f2b266");
    paint(SingleQuotedString, "#1a7f37", "#7ee787");
    paint(DoubleQuotedString, "#8a4600", "#ffc27a");
    paint(QuotedIdentifier, "#8a4600", "#ffc27a");
    QFont bold = font;
    bold.setBold(true);
    setFont(bold, Keyword);
}

LScintilla::LScintilla(QWidget* parent) : QsciScintilla(parent), m_lexer(new LSqlLexer(this))
{
    setUtf8(true);
    setLexer(m_lexer);
    setTabWidth(4);
    setIndentationsUseTabs(false);
    setAutoIndent(true);
    setBraceMatching(SloppyBraceMatch);
    setScrollWidth(1);
    setScrollWidthTracking(true);
    ApplyPalette();
    ShowLineNumbers(true);
}

void LScintilla::SetDatabase(const rc::Ptr<I_LDatabase>& database)
{
    if (!database)
        return;
    const rc::Ptr<I_LConnection> connection = database->get_Connection();
    const LDatabaseEngine* engine = database->get_DatabaseEngine();
    if (!connection || !engine)
        return;
    const auto keywords = engine->GetKeywords(connection);
    const auto functions = engine->GetFunctions(connection);
    RunInBackground([keywords, functions] { return QPair(keywords.Force().get_Words(), functions.Force().Keys); },
                    this, [this](const QPair<QList<QString>, QStringList>& words) {
                        m_lexer->SetWords(words.first, words.second);
                        setLexer(m_lexer); // reads the word lists again
                        ApplyPalette();
                        recolor();
                    });
}

void LScintilla::ShowLineNumbers(bool on)
{
    setMarginType(0, NumberMargin);
    setMarginWidth(0, on ? QStringLiteral("00000") : QString());
    setMarginWidth(1, 0);
}

void LScintilla::changeEvent(QEvent* event)
{
    QsciScintilla::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        ApplyPalette();
}

void LScintilla::ApplyPalette()
{
    const QPalette colors = palette();
    m_lexer->ApplyPalette(colors);
    setCaretForegroundColor(colors.color(QPalette::Text));
    setMarginsBackgroundColor(colors.color(QPalette::Window));
    setMarginsForegroundColor(colors.color(QPalette::Disabled, QPalette::Text));
    setSelectionBackgroundColor(colors.color(QPalette::Highlight));
    setSelectionForegroundColor(colors.color(QPalette::HighlightedText));
}

} // namespace HF
