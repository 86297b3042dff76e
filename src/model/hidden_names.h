// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_object.h"

/// The engine takes "main.x" for the temporary object x where there is one: a statement for the other
/// one would meet the wrong object. What of the changed objects is hidden in this way, as texts for the
/// user; asks the database.
QStringList HiddenNameProblems(const HF::LModelObject& root);
