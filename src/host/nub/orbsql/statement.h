// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/counted.h"
#include "nub/orbsql/duckdb_database.h"
#include "nub/orbsql/session.h"

namespace nub::orbsql {

/// A prepared statement. Takes the session's lock for each run only.
class Statement final : public Counted<I_Statement>, public SessionChild
{
public:
    /// Throws xException when the text does not parse, is not one statement or
    /// cannot be prepared.
    Statement(std::shared_ptr<Session> session, const String& text);

    void Finalize() override {}
    void BindValues(const ValueArray* values) override;
    I_Result* Execute(int mode) override;
    void DropHandles() noexcept override { m_prepared.reset(); }

private:
    ~Statement() override;

    const std::shared_ptr<Session> m_session;
    PreparedHandle m_prepared;
    TextOutline m_outline;
    ValueArray m_binds;
};

} // namespace nub::orbsql
