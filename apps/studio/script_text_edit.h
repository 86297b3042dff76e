// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/scintilla.h"

class QsciLexerJavaScript;

/// The editor of a script: JavaScript in the looks of the SQL editor.
class ScriptTextEdit : public HF::LScintilla
{
    Q_OBJECT

public:
    explicit ScriptTextEdit(QWidget* parent = nullptr);

    /// Shows the line, counted from one, and marks it.
    void ShowLine(int line);
    void ClearMarks();
    int MarkedLine() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void ApplyColors();

    QsciLexerJavaScript* m_script;
};
