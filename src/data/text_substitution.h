// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

/// Replaces each `$WORD` (capitals and "_") by the SQL literal of its text, in one
/// pass: what a text holds is not looked at again. Unknown words stay.
QString SubstituteLiterals(const QString& query, const QHash<QString, QString>& texts);
