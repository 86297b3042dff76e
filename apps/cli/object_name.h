// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

#include <QStringList>

#include <optional>

namespace orbis {

/// An object as commands name it: `kind:schema.name.child`, names in double
/// quotes where they hold a dot or a quote.
struct ObjectName
{
    QString kind;
    QStringList names;
};

/// Nothing for a text without a kind, or with an open quote.
std::optional<ObjectName> ParseObjectName(const QString& text);

/// The number of a kind by its word ("table"); TYPE_NONE for any other text.
HF::ELObjectType KindByWord(const QString& word);

/// The list that a kind stands in: the kind of the owner.
HF::ELObjectType OwnerKind(HF::ELObjectType kind);

/// The value of a property from the text of a command line: lists as JSON or
/// with commas between, flags as true and false.
HF::LVariant PropertyValue(const HF::LProperty& property, const QString& text);

/// A property by number or name; nothing for any other text.
std::optional<int> PropertyNumber(const HF::LHasProperties& object, const QString& text);

} // namespace orbis
