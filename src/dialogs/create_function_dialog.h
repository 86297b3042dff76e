// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/dialog_create_function.h"

class QCheckBox;
class QComboBox;

/// Makes a macro, which is what a function of the user is here. Stays open while
/// the engine refuses the statement; why is in the error log. Main thread.
class orbDuckDB_DialogCreateFunction final : public HF::LDialogCreateFunction
{
    Q_OBJECT

public:
    /// `schema` is the one chosen at the start.
    orbDuckDB_DialogCreateFunction(const rc::Ref<HF::I_LDatabase>& database, const QString& schema,
                                   QWidget* parent = nullptr);

    QString BuildQuery() const override;
    QString GetParameters() const override;

protected:
    void Apply() override;
    bool HasResultType() const override { return false; }

private:
    QString QualifiedMacroName() const;

    QPointer<QComboBox> m_schemas;
    QPointer<QCheckBox> m_tableMacro;
};
