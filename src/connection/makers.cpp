// SPDX-License-Identifier: GPL-3.0-or-later
#include "connection/makers.h"

orbDuckDB_Makers& Makers()
{
    static constinit orbDuckDB_Makers makers;
    return makers;
}
