// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/default_text.h" // DefaultLiteral
#include "hf/schema_object.h"

/// The name in double quotes, whatever it is.
QString QuoteIdent(const QString& name);
/// The text as an SQL literal.
QString QuoteStringLiteral(const QString& text);
/// `"schema"."name"`, or `"name"` without a schema.
QString QualifiedName(const QString& schema, const QString& name);
/// Schema of an object by its properties or its parents; empty for temporary
/// objects and where there is none.
QString SchemaNameOf(const rc::Ref<const HF::I_LSchemaObject>& object);
QString ObjectQualifiedName(const rc::Ref<const HF::I_LSchemaObject>& object);
/// Brackets a script that must run on its own.
QString WrapSingleOperation(const QString& script);
