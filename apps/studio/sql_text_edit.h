// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/scintilla.h"
#include "studio/completion.h"

/// The editor of an SQL tab: completion, and snippets whose `<#name#>` markers
/// are fields that Tab goes through.
class SqlTextEdit : public HF::LScintilla
{
    Q_OBJECT

public:
    explicit SqlTextEdit(QWidget* parent = nullptr);

    void SetCompletionWords(const CompletionWords& words) { m_words = words; }
    const CompletionWords& get_CompletionWords() const { return m_words; }
    /// Inserts a snippet at the caret and selects its first field.
    void InsertSnippet(const QString& text);
    /// Selects the next field behind the caret; false when there is none.
    bool SelectNextField();
    /// Position of the caret in UTF-16 units.
    int CaretPosition() const;
    /// Opens the completion list at the caret.
    void ShowCompletion();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Complete(const QString& word);

    CompletionWords m_words;
};
