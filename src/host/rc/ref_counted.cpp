// SPDX-License-Identifier: GPL-3.0-or-later
#include "rc/ref_counted.h"

#include <execinfo.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace rc {

void RefCounted::LastStrongGone() const noexcept
{
    auto* object = const_cast<RefCounted*>(this);
    if (!m_destroying) {
        m_destroying = true;
        m_strong.store(1, std::memory_order_relaxed);
        object->Destroy();
        if (m_strong.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return; // Destroy() handed out a reference; its holder ends the object
    }
    m_self = dynamic_cast<const void*>(this);
    object->~RefCounted();
    ReleaseWeak();
}

void RefCounted::FreeMemory() const noexcept
{
    void* memory = const_cast<void*>(m_self);
    if (m_pooled)
        impl::pool_free(memory);
    else
        ::operator delete(memory);
}

namespace impl {

void throw_dead_self()
{
    std::string text = "[rc::impl::self] Unable to create a new reference to self from a destructor. "
                       "Move code to the 'Destroy' method.\n";
    void* frames[25];
    const int count = backtrace(frames, 25);
    if (std::unique_ptr<char*, decltype(&std::free)> names{backtrace_symbols(frames, count), &std::free})
        for (int i = 1; i < count; ++i)
            text.append(names.get()[i]).append("\n");
    throw std::logic_error(text);
}

} // namespace impl
} // namespace rc
