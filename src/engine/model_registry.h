// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/enums.h"

namespace HF {
class I_LDatabaseModel;
}

/// Makes the model of an object kind known to the engine; done for all kinds
/// while the plug-in loads. The model must live until the process ends.
void RegisterModel(HF::ELObjectType type, HF::I_LDatabaseModel* model);

/// Null for a kind without a model.
HF::I_LDatabaseModel* RegisteredModel(HF::ELObjectType type);
