// SPDX-License-Identifier: GPL-3.0-or-later
// Loaded before the other libraries of a program, it kills the program with the first ORBIS_KILL_AT
// changes of files named like ORBIS_KILL_FILE done: the next one does not happen any more.
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <unistd.h>

namespace {

bool IsMeant(const char* path)
{
    const char* const file = std::getenv("ORBIS_KILL_FILE");
    return file && std::strstr(path, file);
}

void CountFile(const char* path)
{
    static std::atomic<long> left{std::getenv("ORBIS_KILL_AT") ? std::atol(std::getenv("ORBIS_KILL_AT")) : -1};
    if (left < 0 || !IsMeant(path))
        return;
    if (left-- == 0)
        ::kill(::getpid(), SIGKILL);
}

void CountHandle(int handle)
{
    char link[64];
    char path[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", handle);
    if (const ssize_t length = ::readlink(link, path, sizeof path - 1); length > 0) {
        path[length] = 0;
        CountFile(path);
    }
}

template <class F>
F* Next(F*, const char* name)
{
    return reinterpret_cast<F*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) ssize_t write(int handle, const void* data, size_t size)
{
    CountHandle(handle);
    static auto* const next = Next(&::write, "write");
    return next(handle, data, size);
}

__attribute__((visibility("default"))) ssize_t pwrite(int handle, const void* data, size_t size, off_t at)
{
    CountHandle(handle);
    static auto* const next = Next(&::pwrite, "pwrite");
    return next(handle, data, size, at);
}

__attribute__((visibility("default"))) int fsync(int handle)
{
    CountHandle(handle);
    static auto* const next = Next(&::fsync, "fsync");
    return next(handle);
}

__attribute__((visibility("default"))) int ftruncate(int handle, off_t size) noexcept
{
    CountHandle(handle);
    static auto* const next = Next(&::ftruncate, "ftruncate");
    return next(handle, size);
}

__attribute__((visibility("default"))) int unlink(const char* path) noexcept
{
    CountFile(path);
    static auto* const next = Next(&::unlink, "unlink");
    return next(path);
}

__attribute__((visibility("default"))) int remove(const char* path) noexcept
{
    CountFile(path);
    static auto* const next = Next(&::remove, "remove");
    return next(path);
}

__attribute__((visibility("default"))) int rename(const char* from, const char* to) noexcept
{
    CountFile(from);
    static auto* const next = Next(&::rename, "rename");
    return next(from, to);
}
}
