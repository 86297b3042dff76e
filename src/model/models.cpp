// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the models known to the engine while the plug-in loads.
#include "engine/model_registry.h"
#include "model/database_model.h"
#include "model/schema_model.h"

namespace {

template <HF::ELObjectType Type, class Model>
struct Registration
{
    Model model;
    Registration() { RegisterModel(Type, &model); }
};

Registration<HF::TYPE_DATABASE, orbDuckDB_ModelDatabase> Database;
Registration<HF::TYPE_SCHEMA, orbDuckDB_ModelSchema> Schema;

} // namespace
