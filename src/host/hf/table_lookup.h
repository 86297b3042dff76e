// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

namespace HF {

/// The table (or, with `views`, the view) that a name as SQL writes it stands
/// for: bare, looked for along the search path and then in all other schemas, or
/// with its schema, or with the database's own name in front of that. Names may
/// stand in double quotes; a text that is no such path is taken as one bare name.
/// Null when there is none. Reads the lists that it needs.
HF_EXPORT rc::Ptr<I_LSchemaObject> FindTable(const rc::Ref<I_LDatabase>& database, const QString& name, bool views);

} // namespace HF
