// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

/// The schemas that hold the engine's own objects.
const QList<QString>& SystemSchemaNames();

/// One schema with its lists of functions, links, tables, views and sequences.
class orbDuckDB_Schema : public HF::LDatabaseObject<HF::I_LSchema>
{
public:
    orbDuckDB_Schema(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);

    HF::LLazy<bool, true> ReloadProperties() override;
    HF::LLazy<bool, true> ApplyPropertyValue(int id, const HF::LVariant& value) override;
    int get_ObjectType() const override { return HF::TYPE_SCHEMA; }
    QString get_ObjectTypeName() const override;
    rc::Ptr<HF::LAction> get_Action(const QString& id) const override;
    QList<rc::Ptr<HF::LAction>> get_ActionsForMenu() const override;
    HF::LLazy<QString, false> get_Icon() const override;
    HF::LLazy<RcList<HF::I_LSchemaObject>, true> CreateChildObjectDialog(HF::ELObjectType type) override;
    rc::Ptr<HF::I_LSchemaObject> ResolveIdent(const HF::LIdent& ident) const override;
    int get_DefaultChildListType() const override { return HF::TYPE_TABLE; }
    void FromQuery(const rc::Ref<const HF::I_LCursor>& cursor) override;
    bool get_IsSystem() const override;
    rc::Ptr<HF::I_LTable> get_Table(const QString& name) const override;
    RcList<HF::I_LTable> get_Tables() const override;
};
