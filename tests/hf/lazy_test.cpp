// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/lazy.h"

#include <QCoreApplication>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using HF::LLazy;

/// Opens once, for threads that meet.
class Gate
{
public:
    void Open()
    {
        std::lock_guard guard(m_mutex);
        m_open = true;
        m_condition.notify_all();
    }
    void Wait()
    {
        std::unique_lock lock(m_mutex);
        m_condition.wait(lock, [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_open = false;
};

TEST(Lazy, IsDoneFromTheStartWithAValueAndNotWithABody)
{
    const LLazy<std::string, false> empty;
    EXPECT_TRUE(empty.IsResolved());
    EXPECT_EQ(empty.Force(), "");

    const LLazy<std::string, true> value = std::string("v");
    EXPECT_TRUE(value.IsResolved());
    EXPECT_EQ(value.Force(), "v");
    EXPECT_FALSE(value.IsRequested()) << "a value that is there needs no request";

    int runs = 0;
    const auto body = LLazy<std::string, false>::FromBody([&runs] {
        ++runs;
        return std::string("b");
    });
    const LLazy<std::string, false> copy = body;
    EXPECT_FALSE(body.IsResolved());
    EXPECT_FALSE(body.IsRequested());
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(copy.Force(), "b");
    EXPECT_TRUE(body.IsResolved()) << "copies share one state";
    EXPECT_TRUE(body.IsRequested());
    EXPECT_EQ(body.Force(), "b");
    EXPECT_EQ(runs, 1);
}

TEST(Lazy, DroppedUnforcedRunsOnlyTheAlwaysKind)
{
    int runs = 0;
    const auto body = [&runs] {
        ++runs;
        return true;
    };
    { LLazy<bool, false>::FromBody(body); }
    EXPECT_EQ(runs, 0);
    {
        const auto first = LLazy<bool, true>::FromBody(body);
        {
            const auto second = first;
        }
        EXPECT_EQ(runs, 0) << "one reference is left";
    }
    EXPECT_EQ(runs, 1);

    std::thread::id runner;
    std::optional lazy = LLazy<void, true>::FromBody([&runner] { runner = std::this_thread::get_id(); });
    std::thread dropper([&lazy] { lazy.reset(); });
    const std::thread::id id = dropper.get_id();
    dropper.join();
    EXPECT_EQ(runner, id) << "whoever drops it last runs it";
}

TEST(Lazy, WhatABodyHoldsEndsWithTheRun)
{
    const auto held = std::make_shared<int>(1);
    const auto lazy = LLazy<int, false>::FromBody([held] { return *held; });
    EXPECT_EQ(held.use_count(), 2);
    EXPECT_EQ(lazy.Force(), 1);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(Lazy, AnExceptionLeavesTheDefaultDone)
{
    int runs = 0;
    const auto lazy = LLazy<int, false>::FromBody([&runs]() -> int {
        ++runs;
        throw std::runtime_error("nobody hears of this");
    });
    EXPECT_EQ(lazy.Force(), 0);
    EXPECT_TRUE(lazy.IsResolved());
    EXPECT_EQ(lazy.Force(), 0);
    EXPECT_EQ(runs, 1);
    EXPECT_NO_THROW((LLazy<int, true>::FromBody([]() -> int { throw 1; })));
}

TEST(Lazy, ARecursiveForceAnswersTheDefaultAtOnce)
{
    LLazy<int, false> lazy(-1);
    int inner = -1;
    lazy = LLazy<int, false>::FromBody([&] {
        inner = lazy.Force();
        return 5;
    });
    EXPECT_EQ(lazy.Force(), 5);
    EXPECT_EQ(inner, 0);

    std::thread([&] { // and away from the main thread
        lazy = LLazy<int, false>::FromBody([&] {
            inner = 10 + lazy.Map([](int value) { return value; }).Force();
            return 6;
        });
        EXPECT_EQ(lazy.Force(), 6);
        EXPECT_EQ(inner, 10);
    }).join();
}

TEST(Lazy, TellsProgressToTheOneWhoForces)
{
    struct Recorder : HF::LProgress
    {
        void Report(long done, long total) override { last = done * 100 + total; }
        bool IsCancelled() const override { return true; }
        long last = 0;
    } recorder;
    const auto body = [](HF::LProgress* progress) {
        if (progress)
            progress->Report(3, 9);
        return progress && progress->IsCancelled();
    };
    EXPECT_TRUE((LLazy<bool, false>::FromProgressBody(body).Force(&recorder)));
    EXPECT_EQ(recorder.last, 309);
    EXPECT_FALSE((LLazy<bool, false>::FromProgressBody(body).Force()));
}

TEST(Lazy, MapsInChainsAndBetweenKinds)
{
    std::string order;
    const auto source = LLazy<int, false>::FromBody([&order] {
        order += 's';
        return 2;
    });
    const auto doubled = source.Map([&order](int value) {
        order += 'd';
        return value * 2;
    });
    auto text = doubled.Map([](int value) { return std::to_string(value); });
    static_assert(std::is_same_v<decltype(text), LLazy<std::string, false>>);
    EXPECT_EQ(order, "");
    EXPECT_EQ(text.Force(), "4");
    EXPECT_EQ(source.Map([](int value) { return value + 1; }).Force(), 3);
    EXPECT_EQ(order, "sd") << "the source runs once for all that hang on it";

    int runs = 0;
    { LLazy<int, true>(1).MapAs<false>([&runs](int) { return ++runs; }); }
    EXPECT_EQ(runs, 0);
    { LLazy<int, false>(1).MapAs<true>([&runs](int) { return ++runs; }); }
    EXPECT_EQ(runs, 1);
    { LLazy<void, true>::FromBody([&runs] { runs = 10; }).Map([&runs] { ++runs; }); }
    EXPECT_EQ(runs, 11);
    // A source that always runs does so even when what was mapped from it does not.
    { LLazy<void, true>::FromBody([&runs] { runs = 20; }).MapAs<false>([&runs] { ++runs; }); }
    EXPECT_EQ(runs, 20);

    const auto failing = source.Map([](int) -> int { throw 1; }).Map([](int value) { return value + 40; });
    EXPECT_EQ(failing.Force(), 40) << "what follows a failure sees the default";
}

struct Held : rc::RefCounted
{
};

TEST(Lazy, HoldsTypesWithoutADefault)
{
    const auto object = rc::make<Held>();
    const LLazy<rc::Ref<Held>, false> done = object;
    EXPECT_EQ(done.Force(), object);
    const auto mapped = done.Map([](const rc::Ref<Held>& held) { return held; });
    EXPECT_EQ(mapped.Force(), object);
    EXPECT_TRUE((LLazy<rc::Ptr<Held>, true>(object).Force()));
}

TEST(LazyThreads, ManyForceOneAndTheBodyRunsOnce)
{
    for (int round = 0; round < 100; ++round) {
        std::atomic<int> runs{0};
        std::atomic<int> wrong{0};
        const auto lazy = LLazy<std::string, false>::FromBody([&runs] {
            ++runs;
            std::this_thread::yield();
            return std::string(100, 'x');
        });
        std::vector<std::thread> threads;
        for (int t = 0; t < 6; ++t)
            threads.emplace_back([&wrong, lazy] {
                for (int i = 0; i < 10; ++i)
                    if (lazy.Force().size() != 100)
                        ++wrong;
            });
        if (lazy.Force().size() != 100)
            ++wrong;
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(runs, 1);
        ASSERT_EQ(wrong, 0);
    }
}

TEST(LazyThreads, AWorkerWaitsForTheRunner)
{
    Gate started, finish;
    const auto lazy = LLazy<int, false>::FromBody([&] {
        started.Open();
        finish.Wait();
        return 7;
    });
    std::thread runner([lazy] { EXPECT_EQ(lazy.Force(), 7); });
    started.Wait();
    EXPECT_FALSE(lazy.IsResolved());
    EXPECT_TRUE(lazy.IsRequested());
    std::atomic<int> seen{0};
    std::thread waiter([&seen, lazy] { seen = lazy.Force(); });
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(seen, 0);
    finish.Open();
    waiter.join();
    runner.join();
    EXPECT_EQ(seen, 7);
}

TEST(LazyThreads, TheEventLoopTurnsWhileTheMainThreadWaits)
{
    Gate started;
    std::atomic<bool> finish{false};
    const auto lazy = LLazy<int, false>::FromBody([&] {
        started.Open();
        while (!finish)
            std::this_thread::sleep_for(1ms);
        return 9;
    });
    std::thread runner([lazy] { lazy.Force(); });
    started.Wait();

    // The body only ends once events were handled. One of them forces again, from within the wait.
    int ticks = 0;
    int nested = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { finish = ++ticks >= 5; });
    timer.start(1);
    QTimer::singleShot(2, [&] { nested = lazy.Force(); });
    EXPECT_EQ(lazy.Force(), 9);
    EXPECT_GE(ticks, 5);
    EXPECT_EQ(nested, 9);
    runner.join();
}

TEST(LazyThreads, TwoLaziesMayWaitForEachOthersRunner)
{
    // Each thread runs one and needs the other's value from its end: a chain, no circle.
    for (int round = 0; round < 50; ++round) {
        const auto base = LLazy<int, false>::FromBody([] { return 1; });
        const auto left = base.Map([](int value) { return value + 1; });
        const auto right = base.Map([](int value) { return value + 2; });
        const auto sum = left.Map([right](int value) { return value + right.Force(); });
        std::atomic<int> total{0};
        std::vector<std::thread> threads;
        for (const auto& lazy : {sum, right, left, sum, base})
            threads.emplace_back([&total, lazy] { total += lazy.Force(); });
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(total, 5 + 3 + 2 + 5 + 1);
    }
}

TEST(LazyThreads, AssignmentRacesWithReading)
{
    std::atomic<int> runs{0};
    const auto make = [&runs](int number) {
        return LLazy<int, true>::FromBody([&runs, number] {
            ++runs;
            return number;
        });
    };
    LLazy<int, true> shared = 1;
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int t = 0; t < 3; ++t)
        readers.emplace_back([&] {
            while (!stop) {
                const LLazy<int, true> copy = shared;
                if (shared.Force() < 1 || copy.Force() != copy.Force())
                    ++wrong;
            }
        });
    constexpr int Assignments = 2000;
    for (int i = 1; i <= Assignments; ++i)
        shared = make(i);
    stop = true;
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(shared.Force(), Assignments);
    EXPECT_EQ(runs, Assignments) << "each was forced or ran when it was replaced, and none twice";
}

TEST(LazyThreads, DroppingRacesWithForcing)
{
    for (int round = 0; round < 200; ++round) {
        std::atomic<int> runs{0};
        {
            std::optional lazy = LLazy<void, true>::FromBody([&runs] { ++runs; });
            std::thread other([copy = *lazy] { copy.Force(); });
            lazy.reset();
            other.join();
        }
        ASSERT_EQ(runs, 1);
    }
}

TEST(MainThread, IsThatOfTheApplication)
{
    EXPECT_TRUE(HF::IsMainThread());
    std::thread([] { EXPECT_FALSE(HF::IsMainThread()); }).join();
    bool ran = false;
    HF::RunOnMainThreadLater([&ran] { ran = true; });
    EXPECT_FALSE(ran) << "later, not now";
    HF::LYield();
    EXPECT_TRUE(ran);
}

} // namespace
