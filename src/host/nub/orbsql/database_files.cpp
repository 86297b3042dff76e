// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/database_files.h"

#include "nub/exception.h"
#include "nub/orbsql/instance.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nub::orbsql {

namespace {

// Beside the log, newer engines keep these while a checkpoint runs.
constexpr const char* CompanionSuffixes[] = {".wal", ".wal.checkpoint", ".wal.recovery"};

[[noreturn]] void fail(const std::string& doing, const std::string& path, const std::string& reason)
{
    throw xException(("IO Error: Cannot " + doing + " \"" + path + "\": " + reason).c_str());
}

struct FileDescriptor
{
    const int fd;
    ~FileDescriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

/// Only for a file that is not open in this process: closing it here would drop
/// the engine's lock.
void check_is_unused_database(const std::string& path)
{
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (file.fd < 0)
        fail("delete", path, std::strerror(errno));
    char head[12];
    if (::read(file.fd, head, sizeof head) != sizeof head || std::memcmp(head + 8, "DUCK", 4) != 0)
        fail("delete", path, "it is not a DuckDB database file");
    struct flock lock{};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    if (::fcntl(file.fd, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK)
        fail("delete", path, "another process has it open (PID " + std::to_string(lock.l_pid) + ")");
}

} // namespace

bool PathExists(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0;
}

void RemoveDatabaseFiles(const std::string& path) noexcept
{
    // A log without its file would be replayed into the next file of that name.
    for (const char* suffix : CompanionSuffixes)
        ::unlink((path + suffix).c_str());
    ::unlink(path.c_str());
}

void DeleteDatabase(const std::string& path)
{
    if (!PathExists(path))
        fail("delete", path, "database does not exist");
    if (IsPathOpen(path))
        fail("delete", path, "it is open in this program");
    check_is_unused_database(path);
    const std::string real = CanonicalPath(path);
    RemoveDatabaseFiles(path);
    if (real != path)
        RemoveDatabaseFiles(real);
    if (PathExists(real))
        fail("delete", real, "the system refuses");
}

std::string TemporaryBeside(const std::string& target)
{
    static std::atomic<unsigned> count{0};
    const std::filesystem::path path(target);
    std::string name = ".";
    name.append(path.filename().string()).append(1, '.').append(std::to_string(::getpid()));
    name.append(1, '-').append(std::to_string(++count)).append(".partial");
    return (path.parent_path() / name).string();
}

void RenameWithoutReplacing(const std::string& from, const std::string& to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return;
    // Not every file system knows the flag.
    if (errno == EINVAL && ::link(from.c_str(), to.c_str()) == 0) {
        ::unlink(from.c_str());
        return;
    }
    fail("write", to, std::strerror(errno));
}

} // namespace nub::orbsql
