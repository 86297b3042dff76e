// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/orbsql/handle.h"
#include "nub/orbsql/location.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace nub::orbsql {

/// How an instance is opened. An instance serves only sessions that ask for
/// the same.
struct OpenOptions
{
    bool readOnly = false;
    std::string token;
    std::string userAgent;
    bool operator==(const OpenOptions&) const = default;
};

/// One engine instance: a database that is open in this process.
struct Instance
{
    DatabaseHandle database;
    OpenOptions options;
    /// Rises whenever a session changes settings, so that the others read theirs again.
    std::atomic<std::uint64_t> settingsGeneration{1};
    /// Results of all sessions that the engine still computes while they are read.
    std::atomic<int> openStreams{0};
};

/// Share of one session in an instance. Sessions on one file, however its path
/// is spelt, share one instance: a second one would not see the first one's
/// writes, and closing it would drop the lock on the file.
class InstanceRef
{
public:
    InstanceRef() noexcept = default;
    InstanceRef(InstanceRef&&) noexcept = default;
    InstanceRef& operator=(InstanceRef&& other) noexcept;
    ~InstanceRef() { Release(); }

    /// Opens or joins. Throws xException with the engine's text, unscrubbed.
    static InstanceRef Open(const Location& location, const OpenOptions& options);
    /// A further share of the same instance.
    InstanceRef Share() const;
    /// Leaves; the last one closes the instance and so frees the file.
    void Release() noexcept;

    Instance* operator->() const noexcept;
    explicit operator bool() const noexcept { return m_slot != nullptr; }
    /// True when no other session shares the instance.
    bool IsSole() const noexcept;
    /// Canonical path of the file; empty for other kinds.
    const std::string& FilePath() const noexcept;

    struct Slot;

private:
    explicit InstanceRef(std::shared_ptr<Slot> slot) noexcept : m_slot(std::move(slot)) {}
    std::shared_ptr<Slot> m_slot;
};

/// Engines before 1.5 wait in CHECKPOINT, for ever and deaf to interrupts, until
/// no stream reads a table.
bool CheckpointWaitsForStreams();

/// True when an instance of this process has the file open, as its own or attached.
bool IsPathOpen(const std::string& path);

} // namespace nub::orbsql
