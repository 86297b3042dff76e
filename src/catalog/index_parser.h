// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/parser.h"

/// Reads the columns of a CREATE INDEX text. Items keep their quotes, and an
/// expression with commas and brackets of its own is one item.
class orbDuckDB_IndexParser : public HF::LParser
{
public:
    orbDuckDB_IndexParser();

protected:
    QStringList ReadList() override;
};
