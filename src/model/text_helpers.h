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

/// The name of an object as get_NameForQuery(true) writes it, but made of
/// property 26: while a rename is being written that is the new one.
QString PendingNameForQuery(const rc::Ref<const HF::I_LSchemaObject>& object);
/// `COMMENT ON <kind> <name> IS <text>;`, the word NULL for an empty comment.
QString CommentStatement(const QString& kind, const QString& name, const QString& comment);
/// The name through the engine's rules, bare where it may be.
QString EngineQuoteName(const QString& name, const rc::Ref<const HF::I_LSchemaObject>& object);
