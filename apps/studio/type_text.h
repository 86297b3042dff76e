// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/variant.h"

#include <QList>
#include <QPair>
#include <QString>

namespace HF {
class LDatabaseEngine;
}

/// The properties of a column that together make the type that a person wrote:
/// "decimal(8, 2)", "INTEGER[]", "shop.roast". Properties that the type does not use
/// come with the value that stands for none.
QList<QPair<int, HF::LVariant>> TypeProperties(const QString& text, const HF::LDatabaseEngine& engine);
