// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/design_session.h"

#include <QAbstractTableModel>

/// Parts of the object that is designed, one a row: columns, indexes, constraints.
/// What is to be dropped is struck out, what is new or changed stands out.
class DesignPartsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Field {
        Name, Type, NotNull, Key, Unique, Default, Comment, Columns, Expression, Table, ParentTable, ParentColumns
    };

    DesignPartsModel(DesignSession& session, const QList<HF::ELObjectType>& kinds, const QList<Field>& fields,
                     QObject* parent = nullptr);

    rc::Ptr<HF::LModelObject> ObjectAt(int row) const;
    int RowOf(const HF::LModelObject* object) const;
    Field FieldAt(int column) const { return m_fields.at(column); }
    int ColumnOf(Field field) const { return int(m_fields.indexOf(field)); }
    const QList<HF::ELObjectType>& get_Kinds() const { return m_kinds; }
    /// Reads the parts of the session again.
    void Refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// A value was refused.
    void Refused(const QString& reason);

private:
    QString Text(const HF::LModelObject& object, Field field) const;
    bool IsChecked(const HF::LModelObject& object, Field field) const;

    DesignSession& m_session;
    QList<HF::ELObjectType> m_kinds;
    QList<Field> m_fields;
    DesignSession::Objects m_objects;
};
