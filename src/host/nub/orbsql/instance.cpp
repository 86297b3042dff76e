// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/instance.h"

#include "nub/exception.h"
#include "nub/orbsql/query.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <vector>

#include <sys/stat.h>

namespace nub::orbsql {

struct InstanceRef::Slot
{
    std::string path; ///< canonical, empty when not a file
    dev_t device = 0;
    ino_t inode = 0;
    std::atomic<bool> open{false};
    std::mutex mutex; ///< held while the instance is opened or closed; guards what follows
    std::unique_ptr<Instance> instance;
    int sessions = 0;

    void ReadIdentity()
    {
        struct stat info;
        if (::stat(path.c_str(), &info) == 0) {
            device = info.st_dev;
            inode = info.st_ino;
        }
    }
};

namespace {

using Slot = InstanceRef::Slot;

/// The slots of all files that are open or being opened.
class Registry
{
public:
    std::shared_ptr<Slot> SlotFor(const std::string& path)
    {
        auto wanted = std::make_shared<Slot>();
        wanted->path = CanonicalPath(path);
        wanted->ReadIdentity();
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_slots, [](const auto& slot) { return slot.expired(); });
        for (const auto& weak : m_slots)
            if (auto slot = weak.lock(); slot && IsSame(*slot, *wanted))
                return slot;
        m_slots.push_back(wanted);
        return wanted;
    }

    void NoteIdentity(Slot& slot)
    {
        const std::lock_guard lock(m_mutex);
        slot.ReadIdentity();
    }

    bool IsOpen(const std::string& path)
    {
        Slot wanted;
        wanted.path = CanonicalPath(path);
        wanted.ReadIdentity();
        std::vector<std::shared_ptr<Slot>> slots;
        {
            const std::lock_guard lock(m_mutex);
            for (const auto& weak : m_slots)
                if (auto slot = weak.lock())
                    slots.push_back(std::move(slot));
            if (std::any_of(slots.begin(), slots.end(), [&](const auto& s) { return s->open && IsSame(*s, wanted); }))
                return true;
        }
        return std::any_of(slots.begin(), slots.end(), [&](const auto& slot) { return HasAttached(*slot, wanted); });
    }

    void Add(const std::shared_ptr<Slot>& slot)
    {
        const std::lock_guard lock(m_mutex);
        m_slots.push_back(slot);
    }

private:
    static bool IsSame(const Slot& a, const Slot& b)
    {
        return (!a.path.empty() && a.path == b.path) || (a.inode && a.inode == b.inode && a.device == b.device);
    }

    static bool HasAttached(Slot& slot, const Slot& wanted)
    {
        // A slot that is busy opening or closing has nothing attached by SQL yet or any more.
        const std::unique_lock lock(slot.mutex, std::try_to_lock);
        if (!lock || !slot.instance)
            return false;
        ConnectionHandle connection;
        if (duckdb_connect(slot.instance->database.get(), connection.out()) == DuckDBError)
            return false;
        const QueryRows rows = RunQuery(connection.get(), "SELECT path FROM duckdb_databases() WHERE path IS NOT NULL");
        return std::any_of(rows.rows.begin(), rows.rows.end(), [&](const auto& row) {
            Slot attached;
            attached.path = CanonicalPath(row[0].value_or(""));
            attached.ReadIdentity();
            return IsSame(attached, wanted);
        });
    }

    std::mutex m_mutex;
    std::vector<std::weak_ptr<Slot>> m_slots;
};

// Neither is ever destroyed: sessions may outlive the statics of this library.
Registry& registry()
{
    static auto* instance = new Registry;
    return *instance;
}

duckdb_instance_cache engine_cache()
{
    static const duckdb_instance_cache cache = Newer().createInstanceCache ? Newer().createInstanceCache() : nullptr;
    return cache;
}

void set_option(duckdb_config config, const char* name, const std::string& value)
{
    if (duckdb_set_config(config, name, value.c_str()) == DuckDBError)
        throw xException((std::string("The engine refuses the option ") + name).c_str());
}

std::unique_ptr<Instance> make_instance(const Location& location, const OpenOptions& options)
{
    ConfigHandle config;
    if (duckdb_create_config(config.out()) == DuckDBError)
        throw xException("The engine gave no configuration");
    if (options.readOnly)
        set_option(config.get(), "access_mode", "READ_ONLY");
    // Anywhere else the engine refuses to open with these.
    if (location.kind == Location::Kind::MotherDuck) {
        if (!options.token.empty())
            set_option(config.get(), "motherduck_token", options.token);
        if (!options.userAgent.empty())
            set_option(config.get(), "custom_user_agent", options.userAgent);
    }
    auto instance = std::make_unique<Instance>();
    instance->options = options;
    char* error = nullptr;
    const duckdb_state state = engine_cache()
        ? Newer().getOrCreateFromCache(engine_cache(), location.path.c_str(), instance->database.out(),
                                       config.get(), &error)
        : duckdb_open_ext(location.path.c_str(), instance->database.out(), config.get(), &error);
    if (state == DuckDBError) {
        const std::string text = error ? error : "The engine cannot open the database";
        duckdb_free(error);
        throw xException(text.c_str());
    }
    return instance;
}

} // namespace

InstanceRef& InstanceRef::operator=(InstanceRef&& other) noexcept
{
    if (this != &other) {
        Release();
        m_slot = std::move(other.m_slot);
    }
    return *this;
}

InstanceRef InstanceRef::Open(const Location& location, const OpenOptions& options)
{
    const bool isFile = location.kind == Location::Kind::File;
    std::shared_ptr<Slot> slot = isFile ? registry().SlotFor(location.path) : std::make_shared<Slot>();
    {
        const std::lock_guard lock(slot->mutex);
        if (!slot->instance) {
            slot->instance = make_instance(location, options);
            if (isFile)
                registry().NoteIdentity(*slot);
            else
                registry().Add(slot);
            slot->open = true;
        } else if (slot->instance->options != options) {
            throw xException("Connection Error: Can't open a connection to same database file with a different "
                             "configuration than existing connections");
        }
        ++slot->sessions;
    }
    return InstanceRef(std::move(slot));
}

InstanceRef InstanceRef::Share() const
{
    const std::lock_guard lock(m_slot->mutex);
    ++m_slot->sessions;
    return InstanceRef(m_slot);
}

void InstanceRef::Release() noexcept
{
    if (!m_slot)
        return;
    {
        const std::lock_guard lock(m_slot->mutex);
        if (--m_slot->sessions == 0) {
            m_slot->instance.reset();
            m_slot->open = false;
        }
    }
    m_slot.reset();
}

bool InstanceRef::IsSole() const noexcept
{
    const std::lock_guard lock(m_slot->mutex);
    return m_slot->sessions == 1;
}

Instance* InstanceRef::operator->() const noexcept { return m_slot->instance.get(); }

const std::string& InstanceRef::FilePath() const noexcept { return m_slot->path; }

bool CheckpointWaitsForStreams()
{
    int major = 0, minor = 0;
    return std::sscanf(duckdb_library_version(), "v%d.%d", &major, &minor) == 2 && major == 1 && minor < 5;
}

bool IsPathOpen(const std::string& path) { return registry().IsOpen(path); }

} // namespace nub::orbsql
