// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/counted.h"
#include "nub/orbsql/duckdb_database.h"
#include "nub/orbsql/engine_api.h"

namespace nub::orbsql {

namespace {

class LocalConnection final : public Counted<I_LocalConnection>
{
public:
    explicit LocalConnection(String version) : m_version(std::move(version)) {}
    String get_VersionText() const override { return m_version; }

private:
    const String m_version;
};

} // namespace

smart_ptr<I_LocalConnection> GetLocalConnection()
{
    const char* version = duckdb_library_version();
    if (!version)
        return nullptr;
    return smart_ptr<I_LocalConnection>::adopt(new LocalConnection(String::FromUtf8(version)));
}

} // namespace nub::orbsql
