// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/design_session.h"

#include <QTreeWidget>

/// Properties of one object that is designed, by category, to be edited where the
/// object's kind allows it. Lists are chosen in a dialog (double click or Enter),
/// everything else in its row. Texts of SQL stand elsewhere.
class DesignSheet : public QTreeWidget
{
    Q_OBJECT

public:
    explicit DesignSheet(DesignSession& session, QWidget* parent = nullptr);

    void ShowObject(const rc::Ptr<HF::LModelObject>& object);
    const rc::Ptr<HF::LModelObject>& get_Object() const { return m_object; }
    /// The row of a property; null when it does not show.
    QTreeWidgetItem* RowOf(int property) const;
    /// Texts that a property can be chosen from; empty where any text may be typed.
    QStringList Choices(int property) const;
    bool MayTypeOther(int property) const { return property == PROP_TYPE_NAME; }
    /// Lets the user choose a list of columns or of schemas.
    void Choose(int property);

signals:
    /// A value was refused.
    void Refused(const QString& reason);

private:
    void Fill();
    void Commit(QTreeWidgetItem* item);
    QList<HF::LProperty> Shown() const;
    bool MayStillChoose(int property) const;

    DesignSession& m_session;
    rc::Ptr<HF::LModelObject> m_object;
    bool m_filling = false;
};
