// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <QDialog>
#include <QPointer>

class QFormLayout;
class QLineEdit;
class QPushButton;
class QTableWidget;
class QTextEdit;

namespace HF {

class LScintilla;

/// Asks for what a new function is made of. An engine derives from it, puts rows
/// in or takes them out, and writes the statement. Main thread.
class HF_EXPORT LDialogCreateFunction : public QDialog
{
    Q_OBJECT

public:
    /// What the dialog made; empty unless it was accepted.
    const RcList<I_LSchemaObject>& get_Created() const { return m_created; }

protected:
    /// `types` are offered for the result and the parameters.
    LDialogCreateFunction(const rc::Ref<I_LDatabase>& database, const QStringList& types, QWidget* parent = nullptr);

    /// Runs the statement; accepts the dialog when it went through.
    virtual void Apply() = 0;
    /// A function needs a name and a body.
    virtual bool CanApply() const;
    /// Whether the rows of result and language have a meaning.
    virtual bool HasResultType() const { return true; }
    virtual QString BuildQuery() const = 0;
    /// The parameters as the statement writes them.
    virtual QString GetParameters() const = 0;

    QString get_Body() const;
    void put_Body(const QString& text);
    void UpdateButtons();
    void AddParameter();
    void RemoveParameter();

    rc::Ref<I_LDatabase> m_database;
    RcList<I_LSchemaObject> m_created;
    QPointer<QFormLayout> m_form; ///< rows: name, result, language, parameters, body, comment
    QPointer<QLineEdit> m_name;
    QPointer<QTextEdit> m_comment;
    QPointer<LScintilla> m_body;
    QPointer<QTableWidget> m_parameters; ///< columns: name, type, default
    QPointer<QPushButton> m_apply;

private:
    QWidget* MakeParameters();

    QStringList m_types;
};

} // namespace HF
