// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/design_parts_model.h"

#include <QWidget>

class DesignSheet;
class QAction;
class QTableView;

/// A page of the structure editor: the parts of some kinds as a table, buttons to
/// add and drop, and all properties of the current one below.
class DesignPartsPage : public QWidget
{
    Q_OBJECT

public:
    DesignPartsPage(DesignSession& session, const QList<HF::ELObjectType>& kinds,
                    const QList<DesignPartsModel::Field>& fields, QWidget* parent = nullptr);

    DesignPartsModel* get_Model() const { return m_model; }
    QTableView* get_View() const { return m_view; }
    DesignSheet* get_Sheet() const { return m_sheet; }
    /// Adds a part of one of the kinds and begins to edit it.
    rc::Ptr<HF::LModelObject> Add(HF::ELObjectType kind);
    /// Marks the current part as dropped, or takes the mark back.
    void ToggleDropped();
    void Select(const HF::LModelObject* object);

signals:
    void Refused(const QString& reason);

private:
    void CurrentChanged();

    DesignSession& m_session;
    DesignPartsModel* m_model;
    QTableView* m_view;
    DesignSheet* m_sheet;
    QList<QAction*> m_adding;
    QAction* m_drop;
};
