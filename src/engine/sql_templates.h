// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/sql_template.h"

#include <QList>

/// Statement snippets in display order, grouped by category. A title may stand
/// under two categories, with one text. Any thread.
const QList<HF::LSqlTemplate>& DuckDBSqlTemplates();
