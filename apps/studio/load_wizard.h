// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <QWizard>

class QComboBox;
class QLineEdit;
class QTreeWidget;
class TaskPage;

/// Loads an SQL text: from where, the engine's options, the work with the
/// statements that failed. Main thread.
class LoadWizard : public QWizard
{
    Q_OBJECT

public:
    explicit LoadWizard(const rc::Ref<HF::LDatabase>& database, QWidget* parent = nullptr);
    ~LoadWizard() override;

    void reject() override;
    bool validateCurrentPage() override;

signals:
    /// A failed statement was chosen, to be looked at.
    void StatementChosen(const QString& text);
    /// Something has run: the catalogue may be another.
    void Loaded();

private:
    QWizardPage* MakeFirstPage();
    void Browse();
    bool Start();
    void Finish();

    rc::Ref<HF::LDatabase> m_database;
    QLineEdit* m_path;
    QComboBox* m_encoding;
    QPointer<QWidget> m_options;
    TaskPage* m_work;
    QTreeWidget* m_errors;
    rc::Ptr<HF::LTask> m_task;
};
