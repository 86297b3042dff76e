// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/parser.h"
#include "hf/schema_object.h"

/// The beginning of a view's text, and of a macro's, for the parser.
extern const QString ViewPattern;
extern const QString FunctionPattern;

/// A statement for the text of a view or macro with the object's own name and
/// schema in it, on request with OR REPLACE; empty for a text that does not
/// fit the pattern.
QString ScriptWithName(const rc::Ref<const HF::I_LSchemaObject>& object, const QString& text, bool orReplace,
                       const QString& pattern);

/// Puts another text into the place of identifiers, from the first to the last
/// of them; an opening quote in front goes as well.
QString ReplaceIdents(const QString& text, const HF::LParser& parsed, const QString& first, const QString& last,
                      const QString& name);
