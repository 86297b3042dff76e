// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/object_value.h"

#include "weft/any.h"
#include "weft/type.h"

#include <new>

namespace weft::internal {

struct alignas(16) object_value::header
{
    std::atomic<std::int32_t> strong{1};
    std::atomic<std::int32_t> weak{1}; ///< all strong references together hold one
    std::atomic<bool> going{false};
};

namespace {

std::atomic<std::int64_t> liveValues{0};

} // namespace

void* object_value::operator new(std::size_t size)
{
    auto* memory = static_cast<std::byte*>(::operator new(sizeof(header) + size));
    new (memory) header;
    liveValues.fetch_add(1, std::memory_order_relaxed);
    return memory + sizeof(header);
}

/// Reached by a constructor that throws.
void object_value::operator delete(void* memory)
{
    liveValues.fetch_sub(1, std::memory_order_relaxed);
    ::operator delete(static_cast<std::byte*>(memory) - sizeof(header));
}

object_value::header& object_value::head() const noexcept
{
    auto* self = reinterpret_cast<std::byte*>(const_cast<object_value*>(this));
    return *reinterpret_cast<header*>(self - sizeof(header));
}

void object_value::add_ref() const noexcept
{
    head().strong.fetch_add(1, std::memory_order_relaxed);
}

void object_value::release() const noexcept
{
    header& counts = head();
    if (counts.strong.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    if (!counts.going.exchange(true)) {
        counts.strong.store(1, std::memory_order_relaxed);
        const_cast<object_value*>(this)->finalize();
        if (counts.strong.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return; // somebody kept it; the next last reference ends it
    }
    // The memory is that of operator new: only the destructor runs here.
    const_cast<object_value*>(this)->~object_value();
    if (counts.weak.fetch_sub(1, std::memory_order_acq_rel) == 1)
        operator delete(const_cast<object_value*>(this));
}

void object_value::add_weak() const noexcept
{
    head().weak.fetch_add(1, std::memory_order_relaxed);
}

void object_value::release_weak() const noexcept
{
    if (head().weak.fetch_sub(1, std::memory_order_acq_rel) == 1)
        operator delete(const_cast<object_value*>(this));
}

bool object_value::try_add_ref() const noexcept
{
    header& counts = head();
    std::int32_t strong = counts.strong.load();
    while (strong > 0 && !counts.going.load())
        if (counts.strong.compare_exchange_weak(strong, strong + 1)) {
            if (!counts.going.load())
                return true;
            // It began to go between the two looks; what was taken goes back.
            release();
            return false;
        }
    return false;
}

int object_value::strong_count() const noexcept
{
    return head().strong.load();
}

std::int64_t object_value::live_count() noexcept
{
    return liveValues.load();
}

Any object_value::clone() const
{
    return Any::ref(const_cast<object_value*>(this));
}

Any object_value::tryInto(const Type& wanted) const
{
    const Any self = Any::ref(const_cast<object_value*>(this));
    return wanted.matches(self) ? self : Any();
}

Any object_value::get_field(const method_ident&) const
{
    return {};
}

bool object_value::set_field(const method_ident&, const Any&)
{
    return false;
}

} // namespace weft::internal
