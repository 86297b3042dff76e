// SPDX-License-Identifier: GPL-3.0-or-later
#include "rc/ref_counted.h"

#include <cstdlib>
#include <new>
#include <utility>

#include <sys/mman.h>

namespace rc::impl {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// Sanitizers have to see each object as a block of its own.
void* pool_allocate(std::size_t size) { return ::operator new(size); }
void pool_free(void* block) noexcept { ::operator delete(block); }

#else

namespace {

constexpr std::size_t SlabSize = 32 * 1024;
constexpr std::size_t Alignment = 8;
/// A thread that makes many objects takes its slabs from arenas of the size of
/// a large page: a grid of a million rows would spend a fifth of its time on
/// page faults otherwise. The first slabs of a thread come one by one.
constexpr std::size_t ArenaSize = 2 * 1024 * 1024;
constexpr std::uint32_t SlabsBeforeArenas = 32;
/// What the allocator puts in front of a block comes off the end of a slab, so that
/// slabs lie one behind the other instead of with a hole of their size between them.
constexpr std::size_t SlabBytes = SlabSize - 2 * sizeof(void*);

/// Stands at the start of its memory, which is aligned to SlabSize, so that a
/// block finds its slab by masking its address. While a thread cuts blocks from
/// it, the count holds Uncut for the blocks still to come, so that cutting one
/// touches no shared state.
struct Slab
{
    static constexpr std::int64_t Uncut = SlabSize;

    std::atomic<std::int64_t> live{Uncut};
    std::atomic<std::int32_t>* arenaLive = nullptr; ///< slabs of its arena that are in use; null without one
    std::uint32_t used = sizeof(Slab);
    std::uint32_t cut = 0;
};

/// Stands at the start of an arena's first slab.
struct Arena
{
    Slab slab;
    std::atomic<std::int32_t> live{ArenaSize / SlabSize};
};

void release_slab_of_arena(std::atomic<std::int32_t>* live, std::int32_t count) noexcept
{
    if (live->fetch_sub(count, std::memory_order_acq_rel) == count)
        munmap(reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(live) & ~(ArenaSize - 1)), ArenaSize);
}

void release(Slab* slab, std::int64_t count) noexcept
{
    if (slab->live.fetch_sub(count, std::memory_order_acq_rel) != count)
        return;
    if (slab->arenaLive)
        release_slab_of_arena(slab->arenaLive, 1);
    else
        std::free(slab);
}

/// Memory of the size and alignment of an arena; null when there is none.
char* map_arena() noexcept
{
    void* const memory =
        mmap(nullptr, 2 * ArenaSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        return nullptr;
    char* const start = static_cast<char*>(memory);
    const std::size_t before = (0 - reinterpret_cast<std::uintptr_t>(memory)) & (ArenaSize - 1);
    if (before)
        munmap(start, before);
    munmap(start + before + ArenaSize, ArenaSize - before);
#ifdef MADV_HUGEPAGE
    madvise(start + before, ArenaSize, MADV_HUGEPAGE); // a wish only
#endif
    return start + before;
}

/// What a thread cuts from.
struct ThreadState
{
    Slab* slab;
    Arena* arena;            ///< with slabs left, or null
    std::uint32_t nextSlab;  ///< of the arena
    std::uint32_t slabCount; ///< taken so far
};

/// Found without a call, since every value of every grid comes this way.
[[gnu::tls_model("initial-exec")]] constinit thread_local ThreadState t_state{};

void retire_slab() noexcept
{
    if (Slab* const slab = std::exchange(t_state.slab, nullptr))
        release(slab, Slab::Uncut - slab->cut);
}

struct RetireAtThreadEnd
{
    ~RetireAtThreadEnd()
    {
        retire_slab();
        if (Arena* const arena = std::exchange(t_state.arena, nullptr))
            release_slab_of_arena(&arena->live, static_cast<std::int32_t>(ArenaSize / SlabSize - t_state.nextSlab));
        t_state.slabCount = 0;
    }
};

Slab* slab_of_arena()
{
    if (!t_state.arena) {
        char* const memory = map_arena();
        if (!memory)
            return nullptr;
        t_state.arena = new (memory) Arena;
        t_state.nextSlab = 0;
    }
    Arena* const arena = t_state.arena;
    char* const start = reinterpret_cast<char*>(arena) + t_state.nextSlab * SlabSize;
    Slab* slab = &arena->slab;
    if (t_state.nextSlab)
        slab = new (start) Slab;
    else
        slab->used = sizeof(Arena);
    slab->arenaLive = &arena->live;
    if (++t_state.nextSlab == ArenaSize / SlabSize)
        t_state.arena = nullptr;
    return slab;
}

[[gnu::noinline]] void fresh_slab()
{
    thread_local RetireAtThreadEnd atEnd;
    (void)&atEnd;
    Slab* slab = t_state.slabCount < SlabsBeforeArenas ? nullptr : slab_of_arena();
    if (!slab) {
        void* memory = nullptr;
        if (posix_memalign(&memory, SlabSize, SlabBytes) != 0)
            throw std::bad_alloc();
        slab = new (memory) Slab;
    }
    ++t_state.slabCount;
    retire_slab();
    t_state.slab = slab;
}

} // namespace

void* pool_allocate(std::size_t size)
{
    size = (size + Alignment - 1) & ~(Alignment - 1);
    if (!t_state.slab || t_state.slab->used + size > SlabBytes) [[unlikely]] {
        if (size > 512)
            throw std::bad_alloc();
        fresh_slab();
    }
    Slab* const slab = t_state.slab;
    void* const block = reinterpret_cast<char*>(slab) + slab->used;
    slab->used += static_cast<std::uint32_t>(size);
    ++slab->cut;
    return block;
}

void pool_free(void* block) noexcept
{
    release(reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(SlabSize - 1)), 1);
}

#endif

} // namespace rc::impl
