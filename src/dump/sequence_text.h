// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

/// Lets a sequence that has been used go on where it stands: its start becomes
/// its next value. The object is changed silently. The statement that has to follow
/// the CREATE, when a sequence has come to its end; empty otherwise.
QString ContinueSequence(HF::I_LSchemaObject& sequence);

/// The CREATE statement with the bounds and the start that are zero, which its
/// general form leaves out although they differ from the engine's defaults.
QString WithZeroBounds(const QString& text, const HF::I_LSchemaObject& sequence);
