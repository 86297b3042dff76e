// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/duckdb_database.h"
#include "rc/ref.h"

/// Keeps a prepared statement of the kernel for a query object.
class orbDuckDB_Statement : public rc::RefCounted
{
public:
    using Kernel = nub::smart_ptr<nub::orbsql::I_Statement>;

    explicit orbDuckDB_Statement(Kernel statement) : m_kernelStatement(std::move(statement)) {}
    /// May be null.
    const Kernel& get_KernelStatement() const { return m_kernelStatement; }

private:
    Kernel m_kernelStatement;
};
