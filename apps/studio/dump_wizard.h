// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/safe_target.h"

#include <QWizard>

class QComboBox;
class QLineEdit;
class QTreeWidget;
class TaskPage;

/// Makes a dump: what and where, the engine's options, the work itself. A dump
/// that is stopped or fails leaves an older file alone. Main thread.
class DumpWizard : public QWizard
{
    Q_OBJECT

public:
    /// `picked` are checked at first: schemas or tables; empty means all.
    DumpWizard(const rc::Ref<HF::LDatabase>& database, const RcList<HF::LTreeItem>& picked, QWidget* parent = nullptr);
    ~DumpWizard() override;

    void reject() override;
    bool validateCurrentPage() override;

private:
    QWizardPage* MakeFirstPage(const RcList<HF::LTreeItem>& picked);
    void FillTree(const RcList<HF::LTreeItem>& picked);
    void Browse();
    /// Nothing for the whole database.
    RcList<HF::LTreeItem> Selection() const;
    bool IsAnythingChecked() const;
    bool Start();
    void Finish();

    rc::Ref<HF::LDatabase> m_database;
    QLineEdit* m_path;
    QComboBox* m_data;
    QComboBox* m_encoding;
    QTreeWidget* m_tree;
    QPointer<QWidget> m_options;
    TaskPage* m_work;
    rc::Ptr<HF::LTask> m_task;
    std::unique_ptr<HF::LSafeTarget> m_target;
};
