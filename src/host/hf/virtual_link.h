// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/object_kinds.h"

namespace HF {

/// A tie between tables that only the user knows of. Where such a link stands
/// in a list, no statement is ever made of it.
class HF_EXPORT LVirtualLink : public LLink
{
};

} // namespace HF
