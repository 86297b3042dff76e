// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_item_list.h"

/// The thirteen descriptions of child lists, made when the plug-in loads.
namespace ListInfos {

extern const HF::LSchemaItemListInfo Schemas;
extern const HF::LSchemaItemListInfo Functions;
extern const HF::LSchemaItemListInfo LinksOfSchema;
extern const HF::LSchemaItemListInfo Tables;
extern const HF::LSchemaItemListInfo Views;
extern const HF::LSchemaItemListInfo Sequences;
extern const HF::LSchemaItemListInfo Checks;
extern const HF::LSchemaItemListInfo FieldsOfTable;
extern const HF::LSchemaItemListInfo Indexes;
extern const HF::LSchemaItemListInfo LinksOfTable;
extern const HF::LSchemaItemListInfo Methods;
extern const HF::LSchemaItemListInfo Uniques;
extern const HF::LSchemaItemListInfo FieldsOfView;

} // namespace ListInfos

/// The factories of the descriptions, each beside its class.
rc::Ref<HF::I_LSchemaObject> MakeSchema(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeFunction(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeLink(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeTable(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeView(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeSequence(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeCheck(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeField(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeIndex(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeMethod(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
rc::Ref<HF::I_LSchemaObject> MakeUnique(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name);
