// SPDX-License-Identifier: GPL-3.0-or-later
#include "nub/orbsql/file_copy.h"

#include "nub/exception.h"

#include <cerrno>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nub::orbsql {

namespace {

constexpr std::size_t BufferSize = 1024 * 1024;
constexpr int StopInterval = 50; // ms

/// What the child tells through the pipe.
struct Report
{
    enum Step : int { Complete, Differs, Reading, Writing } step;
    int error;
};

/// Everything from here to copy_in_child runs after fork in a process of many
/// threads: system calls only, no memory from the heap.
bool read_fully(int fd, char* buffer, std::size_t size, off_t at, std::size_t& got)
{
    for (got = 0; got < size;) {
        const ssize_t count = ::pread(fd, buffer + got, size - got, at + static_cast<off_t>(got));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        if (count == 0)
            break;
        got += static_cast<std::size_t>(count);
    }
    return true;
}

bool write_fully(int fd, const char* buffer, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = ::write(fd, buffer, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        buffer += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

Report copy_in_child(const char* from, const char* to, char* buffer, char* head, std::size_t guarded)
{
    const int source = ::open(from, O_RDONLY | O_CLOEXEC);
    if (source < 0)
        return {Report::Reading, errno};
    const int target = ::open(to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (target < 0)
        return {Report::Writing, errno};
    std::size_t headSize = 0;
    if (!read_fully(source, head, guarded, 0, headSize))
        return {Report::Reading, errno};
    if (!write_fully(target, head, headSize))
        return {Report::Writing, errno};
    std::size_t got = 0;
    for (off_t at = static_cast<off_t>(headSize);; at += static_cast<off_t>(got)) {
        if (!read_fully(source, buffer, BufferSize, at, got))
            return {Report::Reading, errno};
        if (got == 0)
            break;
        if (!write_fully(target, buffer, got))
            return {Report::Writing, errno};
    }
    if (::fsync(target) != 0)
        return {Report::Writing, errno};
    if (!read_fully(source, buffer, guarded, 0, got))
        return {Report::Reading, errno};
    const bool same = got == headSize && std::memcmp(buffer, head, headSize) == 0;
    return {same ? Report::Complete : Report::Differs, 0};
}

struct Pipe
{
    int ends[2] = {-1, -1};
    ~Pipe()
    {
        CloseEnd(0);
        CloseEnd(1);
    }
    void CloseEnd(int index)
    {
        if (ends[index] >= 0)
            ::close(ends[index]);
        ends[index] = -1;
    }
};

void reap(pid_t child)
{
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR)
        ;
}

} // namespace

CopyOutcome CopyOpenFile(const std::string& from, const std::string& to, std::size_t guarded,
                         const std::function<bool()>& stop)
{
    std::vector<char> buffer(std::max(BufferSize, guarded));
    std::vector<char> head(guarded);
    Pipe pipe;
    if (::pipe2(pipe.ends, O_CLOEXEC) != 0)
        throw xException((std::string("IO Error: Cannot start a copy: ") + std::strerror(errno)).c_str());
    const char* const source = from.c_str();
    const char* const target = to.c_str();
    const pid_t child = ::fork();
    if (child < 0)
        throw xException((std::string("IO Error: Cannot start a copy: ") + std::strerror(errno)).c_str());
    if (child == 0) {
        const Report report = copy_in_child(source, target, buffer.data(), head.data(), guarded);
        write_fully(pipe.ends[1], reinterpret_cast<const char*>(&report), sizeof report);
        ::_exit(0);
    }
    pipe.CloseEnd(1);

    pollfd waited{pipe.ends[0], POLLIN, 0};
    for (;;) {
        const int ready = ::poll(&waited, 1, StopInterval);
        if (ready > 0)
            break;
        if (stop()) {
            ::kill(child, SIGKILL);
            reap(child);
            return CopyOutcome::Stopped;
        }
    }
    Report report{Report::Writing, ECHILD};
    const ssize_t got = ::read(pipe.ends[0], &report, sizeof report);
    reap(child);
    if (got != sizeof report)
        throw xException(("IO Error: The copy to \"" + to + "\" broke off").c_str());
    if (report.step == Report::Reading || report.step == Report::Writing)
        throw xException(("IO Error: Cannot " + (report.step == Report::Reading ? "read \"" + from : "write \"" + to)
                          + "\": " + std::strerror(report.error))
                             .c_str());
    return report.step == Report::Complete ? CopyOutcome::Done : CopyOutcome::Changed;
}

} // namespace nub::orbsql
