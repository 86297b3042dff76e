// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/model_registry.h"

namespace {

constexpr int KindCount = 64;
// Filled by static initialisers of other files, so it must be there before them.
constinit HF::I_LDatabaseModel* Models[KindCount] = {};

} // namespace

void RegisterModel(HF::ELObjectType type, HF::I_LDatabaseModel* model)
{
    if (type >= 0 && type < KindCount)
        Models[type] = model;
}

HF::I_LDatabaseModel* RegisteredModel(HF::ELObjectType type)
{
    return type >= 0 && type < KindCount ? Models[type] : nullptr;
}
