// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/export.h"
#include "rc/ref.h"

#include <Qsci/qscilexersql.h>
#include <Qsci/qsciscintilla.h>

namespace HF {

class I_LDatabase;

/// Highlights SQL by the words and functions of an engine.
class HF_EXPORT LSqlLexer : public QsciLexerSQL
{
public:
    explicit LSqlLexer(QObject* parent);

    void SetWords(const QStringList& keywords, const QStringList& functions);
    const char* keywords(int set) const override;
    /// Colours for the palette at hand, light or dark.
    void ApplyPalette(const QPalette& palette);

private:
    QByteArray m_keywords;
    QByteArray m_functions;
};

/// Text editor for SQL. Main thread.
class HF_EXPORT LScintilla : public QsciScintilla
{
public:
    explicit LScintilla(QWidget* parent = nullptr);

    /// Highlights by the words of the database's engine, once they are read; they
    /// are read in the background.
    void SetDatabase(const rc::Ptr<I_LDatabase>& database);
    void ShowLineNumbers(bool on);
    LSqlLexer* get_Lexer() const { return m_lexer; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void ApplyPalette();

    LSqlLexer* m_lexer;
};

} // namespace HF
