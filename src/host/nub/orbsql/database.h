// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/counted.h"
#include "nub/orbsql/duckdb_database.h"
#include "nub/orbsql/session.h"

namespace nub::orbsql {

class Database final : public Counted<I_DuckDBDatabase>
{
public:
    explicit Database(String path) : m_path(std::move(path)) {}
    /// Open with this session.
    Database(String path, std::shared_ptr<Session> session) : m_path(std::move(path)), m_session(std::move(session)) {}

    bool Exists() const override;
    void SetMotherDuckAccess(String token, String userAgent) override;
    void Create() override;
    void Open() override;
    void Close() override;
    bool IsOpen() const override;
    bool IsReadOnly() const override;
    void put_IsReadOnly(bool readOnly) override;
    void ThrowOut() override;
    void Backup(smart_ptr<I_Disk_Location> folder) override;
    String get_Path() const override { return m_path; }
    void SqlExecute(const String& script, const ValueArray& binds) override;
    I_Cursor* SqlSelect(const String& query, int mode, const ValueArray& binds) override;
    I_Result* SqlExecute(const String& text, int mode, const ValueArray* binds) override;
    I_Statement* Prepare(const String& text) override;
    void Interrupt() override;
    double get_Progress() const override;
    I_Counted* Hold() override;
    I_Counted* TryHold() override;
    I_DuckDBDatabase* OpenFurther() override;
    I_LiteralRows* SelectLiterals(const String& query, std::function<bool(char32_t)> canWrite) override;

private:
    ~Database() override;

    /// The session, or null while closed.
    std::shared_ptr<Session> Current() const;
    /// The session; throws xException while closed.
    std::shared_ptr<Session> Opened() const;
    void OpenSession(const Location& location);
    std::shared_ptr<Rows> SelectRows(const String& query, const ValueArray& binds) const;

    const String m_path;
    std::mutex m_openMutex;     ///< held while the session is opened or closed
    mutable std::mutex m_mutex; ///< guards what follows; never held over a call of the engine
    OpenOptions m_options;
    std::shared_ptr<Session> m_session;
};

} // namespace nub::orbsql
