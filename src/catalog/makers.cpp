// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/makers.h"

orbDuckDB_CatalogMakers& CatalogMakers()
{
    static constinit orbDuckDB_CatalogMakers makers;
    return makers;
}
