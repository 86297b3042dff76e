// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/design.h"

#include <QObject>

class MainWindow;
class QMenu;

/// Changes of structure from the tree: new objects, and dropping or renaming one.
/// A drop shows first what it runs and what would be lost. Main thread; what takes
/// time runs on a worker.
class StructureMenu : public QObject
{
    Q_OBJECT

public:
    explicit StructureMenu(MainWindow& window);

    /// Adds what the item allows to a context menu; of several items, what all of them allow.
    void AddActions(QMenu& menu, const rc::Ref<HF::LTreeItem>& item, const RcList<HF::LTreeItem>& selection = {});
    /// A new object of the kind below the item, a schema, table or database.
    void Create(const rc::Ref<HF::I_LSchemaObject>& parent, HF::ELObjectType type);
    /// Drops objects of one database, all of them or none.
    void Drop(const RcList<HF::I_LSchemaObject>& objects);
    void Rename(const rc::Ref<HF::I_LSchemaObject>& object, const QString& name);

signals:
    /// A change has ended; `problem` is empty after success.
    void Changed(const rc::Ptr<HF::I_LDatabase>& database, const QString& problem);

private:
    struct Prepared;
    using Edit = std::function<QString(HF::LDesign&, const rc::Ref<HF::LModelObject>&)>;

    void Prepare(const RcList<HF::I_LSchemaObject>& objects, Edit edit, const QString& question);
    bool Confirm(const QString& question, const HF::LDesignPlan& plan);
    void Run(const Prepared& prepared);
    void Failed(const rc::Ptr<HF::I_LDatabase>& database, const QString& problem);

    MainWindow& m_window;
};
