// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nub/smart_ptr.h"

#include <atomic>
#include <cstdint>

namespace nub {

/// Gives the kernel interface `Interface` its count. A new object has one
/// reference, which belongs to its maker; the last Release deletes it.
template <class Interface>
class Counted : public Interface
{
public:
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    void AddRef() const noexcept final { m_count.fetch_add(1, std::memory_order_relaxed); }
    void Release() const noexcept final
    {
        if (m_count.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

protected:
    Counted() noexcept = default;
    virtual ~Counted() = default;

private:
    mutable std::atomic<std::int32_t> m_count{1};
};

} // namespace nub
