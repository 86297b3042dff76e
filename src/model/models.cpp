// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the models known to the engine while the plug-in loads.
#include "engine/model_registry.h"
#include "model/check_model.h"
#include "model/database_model.h"
#include "model/field_model.h"
#include "model/function_model.h"
#include "model/index_model.h"
#include "model/link_model.h"
#include "model/method_model.h"
#include "model/schema_model.h"
#include "model/sequence_model.h"
#include "model/table_model.h"
#include "model/unique_model.h"
#include "model/view_model.h"

namespace {

template <HF::ELObjectType Type, class Model>
struct Registration
{
    Model model;
    Registration() { RegisterModel(Type, &model); }
};

Registration<HF::TYPE_CHECK, orbDuckDB_ModelCheck> Check;
Registration<HF::TYPE_DATABASE, orbDuckDB_ModelDatabase> Database;
Registration<HF::TYPE_FIELD, orbDuckDB_ModelField> Field;
Registration<HF::TYPE_FUNCTION, orbDuckDB_ModelFunction> Function;
Registration<HF::TYPE_INDEX, orbDuckDB_ModelIndex> Index;
Registration<HF::TYPE_LINK, orbDuckDB_ModelLink> Link;
Registration<HF::TYPE_METHOD, orbDuckDB_ModelMethod> Method;
Registration<HF::TYPE_SCHEMA, orbDuckDB_ModelSchema> Schema;
Registration<HF::TYPE_SEQUENCE, orbDuckDB_ModelSequence> Sequence;
Registration<HF::TYPE_TABLE, orbDuckDB_ModelTable> Table;
Registration<HF::TYPE_UNIQUE, orbDuckDB_ModelUnique> Unique;
Registration<HF::TYPE_VIEW, orbDuckDB_ModelView> View;

} // namespace
