// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/init.h"

#include <QtGlobal>

#include <exception>
#include <map>
#include <mutex>

namespace weft::internal {

namespace {

struct Waiting
{
    std::mutex mutex;
    std::multimap<init_level, std::function<void()>> handlers; ///< equal keys keep their order
};

Waiting& TheWaiting()
{
    static Waiting* waiting = new Waiting;
    return *waiting;
}

} // namespace

void add_init_handler(init_level level, std::function<void()> handler)
{
    Waiting& waiting = TheWaiting();
    std::lock_guard guard(waiting.mutex);
    waiting.handlers.emplace(level, std::move(handler));
}

void run_init_handlers(init_level upTo)
{
    Waiting& waiting = TheWaiting();
    // One at a time and without the lock: a handler may add further ones.
    for (;;) {
        std::function<void()> handler;
        {
            std::lock_guard guard(waiting.mutex);
            const auto first = waiting.handlers.begin();
            if (first == waiting.handlers.end() || first->first > upTo)
                return;
            handler = std::move(first->second);
            waiting.handlers.erase(first);
        }
        try {
            handler();
        } catch (const std::exception& error) {
            qWarning("Start of the runtime: %s", error.what());
        } catch (...) {
            qWarning("Start of the runtime: unknown error");
        }
    }
}

} // namespace weft::internal
