// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"

#include <QHash>
#include <QPair>

#include <optional>

/// Whole texts of the macros of a schema: all overloads of a name in one
/// statement, with types and defaults of parameters. The keys are the name in
/// lower case and whether it is a table macro. Runs queries of its own;
/// nothing when they fail.
using MacroTexts = QHash<QPair<QString, bool>, QString>;
std::optional<MacroTexts> ReadMacroTexts(const rc::Ref<HF::I_LDatabase>& database, const QString& schema);
/// The text of one macro under another name; empty when the catalogue has no such macro.
QString ReadMacroText(const rc::Ref<HF::I_LDatabase>& database, const QString& schema, const QString& name, bool isTable,
                      const QString& newName);

/// The parameters of one overload as the engine's message about arguments that
/// do not fit lists them.
struct MacroParameter
{
    QString name;
    QString type;         ///< may be empty
    QString defaultText;  ///< empty: none
};

/// Reads defaults off the lines behind "Candidate macros:" of the engine's
/// message; false when it does not look as expected. `overloads` come with the
/// names and types that the catalogue has.
bool ReadMacroDefaults(const QString& message, const QString& name, QList<QList<MacroParameter>>& overloads);

/// CREATE TYPE statements of the user's types of a schema. Their texts name no other type, but for
/// one without values, which must be there before. Nothing when they cannot be read.
struct TypeText
{
    QString name;
    QString create;
    QString drop;
    bool hasNoValues = false; ///< an ENUM without any
};
std::optional<QList<TypeText>> ReadTypeTexts(const rc::Ref<HF::I_LDatabase>& database, const QString& schema);
