// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"
#include "hf/schema_item_list.h"

#include <memory>

/// One table: its lists of checks, fields, indexes, links, generated columns
/// and uniques, and its fields by name and position.
class orbDuckDB_Table : public HF::LTable
{
public:
    orbDuckDB_Table(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    HF::LVariant ShowPropertyEditor(int id, QPoint at, bool modal) override;
    HF::LLazy<bool, true> UpdatePropertyImpl(int id) override;
    QList<rc::Ptr<HF::LAction>> get_ActionsForMenu() const override;
    rc::Ptr<HF::LAction> get_DefaultAction() const override;
    int get_DefaultChildListType() const override { return HF::TYPE_FIELD; }
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
    HF::LLazy<int, false> get_FieldCount() const override;
    rc::Ptr<HF::I_LField> get_Field(int index) const override;
    rc::Ptr<HF::I_LField> get_Field(const QString& name) const override;
    rc::Ptr<HF::I_LSchema> get_Schema() const override;
    rc::Ptr<HF::I_LTableCursor> OpenCursor(int mode, bool rowIdWanted, bool lazy, bool readOnly) override;

    /// Row that the generated columns show.
    const std::shared_ptr<unsigned long>& get_PositionCell() const { return m_position; }

private:
    friend rc::Ref<HF::I_LSchemaObject> MakeTable(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
    void MakeLists();

    std::shared_ptr<unsigned long> m_position = std::make_shared<unsigned long>(0);
};
