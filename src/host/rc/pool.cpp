// SPDX-License-Identifier: GPL-3.0-or-later
#include "rc/ref_counted.h"

#include <cstdlib>
#include <new>

namespace rc::impl {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// Sanitizers have to see each object as a block of its own.
void* pool_allocate(std::size_t size) { return ::operator new(size); }
void pool_free(void* block) noexcept { ::operator delete(block); }

#else

namespace {

constexpr std::size_t SlabSize = 32 * 1024;
/// What the allocator puts in front of a block comes off its end, so that slabs
/// lie one behind the other instead of with a hole of their size between them.
constexpr std::size_t SlabBytes = SlabSize - 2 * sizeof(void*);
constexpr std::size_t Alignment = 8;

/// Stands at the start of its memory, which is aligned to SlabSize, so that a
/// block finds its slab by masking its address. One count is held by the thread
/// that still cuts blocks from it.
struct Slab
{
    std::atomic<std::uint32_t> live{1};
    std::uint32_t used = sizeof(Slab);
};

void release(Slab* slab) noexcept
{
    if (slab->live.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        slab->~Slab();
        std::free(slab);
    }
}

struct ThreadSlab
{
    Slab* slab = nullptr;
    ~ThreadSlab()
    {
        if (slab)
            release(slab);
        slab = nullptr;
    }
};

thread_local ThreadSlab t_current;

} // namespace

void* pool_allocate(std::size_t size)
{
    size = (size + Alignment - 1) & ~(Alignment - 1);
    Slab* slab = t_current.slab;
    if (!slab || slab->used + size > SlabBytes) [[unlikely]] {
        if (size > 512)
            throw std::bad_alloc();
        void* memory = nullptr;
        if (posix_memalign(&memory, SlabSize, SlabBytes) != 0)
            throw std::bad_alloc();
        if (slab)
            release(slab);
        slab = t_current.slab = new (memory) Slab;
    }
    void* block = reinterpret_cast<char*>(slab) + slab->used;
    slab->used += static_cast<std::uint32_t>(size);
    slab->live.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void pool_free(void* block) noexcept
{
    release(reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(SlabSize - 1)));
}

#endif

} // namespace rc::impl
