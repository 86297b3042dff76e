// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database_object.h"

#include <QTreeWidget>

/// The properties of one object, by category. Hidden ones stay out; those that
/// cost a query are read in the background. A double click on a text of SQL
/// opens it whole.
class PropertySheet : public QTreeWidget
{
    Q_OBJECT

public:
    explicit PropertySheet(QWidget* parent = nullptr);
    ~PropertySheet() override;
    void ShowObject(const rc::Ptr<HF::LTreeItem>& item);
    const rc::Ptr<HF::LTreeItem>& get_Item() const { return m_item; }

private:
    class Watcher;
    void Fill();
    void Update(int property);
    void ReadComputed();

    rc::Ptr<HF::LTreeItem> m_item;
    rc::Ptr<HF::LDatabaseObject_Impl> m_object; ///< the item, where it has properties
    rc::Ptr<Watcher> m_watcher;
};
