// SPDX-License-Identifier: GPL-3.0-or-later
#include "rc/ref.h"
#include "rc/spin_flag.h"

#include <gtest/gtest.h>

#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

/// What happened to a Probe, in order: d Destroy, ~ destructor.
struct Probe : rc::RefCounted
{
    explicit Probe(std::string& events) : events(events) {}
    ~Probe() override { events += '~'; }
    void Destroy() override { events += 'd'; }
    std::string& events;
};

TEST(Counts, DestroyThenDestructorWithTheLastStrongReference)
{
    std::string events;
    rc::Ptr<Probe> first = rc::make<Probe>(events);
    EXPECT_EQ(first->StrongCount(), 1);
    {
        const rc::Ref<Probe> second(first);
        rc::Ptr<const Probe> third = second;
        EXPECT_EQ(first->StrongCount(), 3);
        const rc::Ptr<const Probe> moved = std::move(third);
        EXPECT_EQ(first->StrongCount(), 3);
        EXPECT_FALSE(third);
    }
    EXPECT_EQ(first->StrongCount(), 1);
    EXPECT_EQ(events, "");
    first.reset();
    EXPECT_EQ(events, "d~");
}

TEST(Counts, ReferencesMoveAndAssignWithoutLosingTheObject)
{
    std::string a, b;
    rc::Ref<Probe> x = rc::make<Probe>(a);
    const rc::Ref<Probe> moved = std::move(x);
    EXPECT_EQ(x.get(), moved.get()) << "a Ref is never null, moved from or not";
    x = x;
    EXPECT_EQ(a, "");
    x = rc::make<Probe>(b);
    EXPECT_EQ(a, "");
    EXPECT_EQ(x->StrongCount(), 1);

    rc::Ptr<Probe> p(x);
    p = std::move(p);
    ASSERT_TRUE(p);
    p = p;
    EXPECT_EQ(x->StrongCount(), 2);
    Probe* raw = p.release();
    EXPECT_EQ(x->StrongCount(), 2);
    raw->ReleaseStrong();
    EXPECT_EQ(x->StrongCount(), 1);
}

TEST(Weak, ResolvesOnlyWhileTheObjectLives)
{
    std::string events;
    rc::Weak<Probe> weak;
    EXPECT_FALSE(weak.lock());
    {
        const rc::Ref<Probe> strong = rc::make<Probe>(events);
        weak = rc::Weak<Probe>(strong);
        const rc::Weak<Probe> copy = weak;
        EXPECT_EQ(copy.lock(), strong);
    }
    EXPECT_EQ(events, "d~") << "a weak reference keeps the memory, not the object";
    EXPECT_FALSE(weak.lock());
}

/// Hands itself out from Destroy, once.
struct Phoenix : rc::RefCounted
{
    Phoenix(std::optional<rc::Ref<Phoenix>>& nest, std::string& events) : nest(nest), events(events) {}
    ~Phoenix() override { events += '~'; }
    void Destroy() override
    {
        events += 'd';
        nest = rc::self(this);
    }
    std::optional<rc::Ref<Phoenix>>& nest;
    std::string& events;
};

TEST(Destroy, MayHandOutAReferenceAndRunsOnce)
{
    std::string events;
    std::optional<rc::Ref<Phoenix>> nest;
    rc::Ptr<Phoenix> first = rc::make<Phoenix>(nest, events);
    const rc::Weak<Phoenix> weak(first);
    first.reset();
    ASSERT_TRUE(nest);
    EXPECT_EQ(events, "d");
    EXPECT_TRUE(weak.lock());
    EXPECT_EQ((*nest)->StrongCount(), 1);
    nest.reset();
    EXPECT_EQ(events, "d~");
    EXPECT_FALSE(weak.lock());
}

struct AsksForItself : rc::RefCounted
{
    explicit AsksForItself(std::string& text) : text(text) {}
    ~AsksForItself() override
    {
        try {
            rc::self(this);
        } catch (const std::logic_error& error) {
            text = error.what();
        }
    }
    std::string& text;
};

TEST(Self, IsRefusedInADestructorWithAnExplanation)
{
    std::string text;
    { rc::make<AsksForItself>(text); }
    const std::string expected = "[rc::impl::self] Unable to create a new reference to self from a destructor. "
                                 "Move code to the 'Destroy' method.\n";
    EXPECT_EQ(text.substr(0, expected.size()), expected);
    EXPECT_GT(text.size(), expected.size()) << "the place is described";
    EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 1 + 25);
}

struct Side
{
    virtual ~Side() = default;
    int number = 7;
};
struct Both : Side, Probe
{
    using Probe::Probe;
};

TEST(Cast, FindsTheOtherBaseAndSharesTheCount)
{
    std::string events;
    {
        const rc::Ref<Probe> plain = rc::make<Probe>(events);
        const rc::Ref<Probe> both = rc::make<Both>(events);
        EXPECT_FALSE(rc::cast<Both>(plain));
        const rc::Ptr<Both> found = rc::cast<Both>(both);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->number, 7);
        EXPECT_EQ(both->StrongCount(), 2);
        EXPECT_FALSE(rc::cast<Both>(rc::Ptr<Probe>()));
    }
    EXPECT_EQ(events, "d~d~") << "an object whose counts are not at its start ends as well";
}

TEST(Threads, CountsComeOutEvenAndTheObjectEndsOnce)
{
    for (int round = 0; round < 50; ++round) {
        std::string events;
        rc::Ptr<Probe> object = rc::make<Probe>(events);
        const rc::Weak<Probe> weak(object);
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&weak, &wrong, held = object]() mutable {
                for (int i = 0; i < 500; ++i) {
                    rc::Ptr<Probe> copy = held;
                    if (weak.lock() != copy)
                        ++wrong;
                }
                held.reset();
                for (int i = 0; i < 500; ++i)
                    weak.lock(); // while the others let go, and while Destroy runs
            });
        object.reset();
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(wrong, 0);
        ASSERT_EQ(events, "d~");
        ASSERT_FALSE(weak.lock());
    }
}

TEST(Threads, SpinFlagExcludes)
{
    rc::SpinFlag flag;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                const std::lock_guard guard(flag);
                ++counter;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 8000);
}

} // namespace
