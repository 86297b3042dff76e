// SPDX-License-Identifier: GPL-3.0-or-later
#include "rc/ref.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

namespace {

std::atomic<int> s_alive{0};

struct Small : rc::RefCounted
{
    explicit Small(std::uint64_t number) : RefCounted(FromPool{}), number(number) { ++s_alive; }
    ~Small() override { --s_alive; }
    static void* operator new(std::size_t size) { return rc::impl::pool_allocate(size); }
    static void operator delete(void* block) noexcept { rc::impl::pool_free(block); }
    std::uint64_t number;
};

TEST(Pool, BlocksDoNotOverlapWhateverTheirSize)
{
    std::mt19937 random(1);
    struct Block
    {
        unsigned char* memory;
        std::size_t size;
        unsigned char mark;
    };
    std::vector<Block> blocks;
    for (int i = 0; i < 20000; ++i) {
        const std::size_t size = 1 + random() % 512;
        auto* memory = static_cast<unsigned char*>(rc::impl::pool_allocate(size));
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 8, 0u);
        const auto mark = static_cast<unsigned char>(random());
        std::memset(memory, mark, size);
        blocks.push_back({memory, size, mark});
        if (i % 3 == 0) {
            std::swap(blocks[random() % blocks.size()], blocks.back());
            rc::impl::pool_free(blocks.back().memory);
            blocks.pop_back();
        }
    }
    for (const Block& block : blocks) {
        for (std::size_t i = 0; i < block.size; ++i)
            ASSERT_EQ(block.memory[i], block.mark);
        rc::impl::pool_free(block.memory);
    }
}

TEST(Pool, ObjectsEndOnOtherThreadsThanTheyBeganOn)
{
    constexpr int PerThread = 20000;
    std::vector<std::vector<rc::Ref<Small>>> made(4);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&made, t] {
            for (int i = 0; i < PerThread; ++i)
                made[t].push_back(rc::make<Small>(static_cast<std::uint64_t>(t) << 32 | i));
        });
    for (std::thread& thread : threads)
        thread.join();
    threads.clear();
    EXPECT_EQ(s_alive, 4 * PerThread);

    std::atomic<int> wrong{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&made, &wrong, t] {
            // Reads and frees what another thread made, while making more.
            std::vector<rc::Ref<Small>>& other = made[(t + 1) % 4];
            for (int i = 0; i < PerThread; ++i) {
                if (other[i]->number != (static_cast<std::uint64_t>((t + 1) % 4) << 32 | i))
                    ++wrong;
                rc::make<Small>(0);
            }
            other.clear();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(s_alive, 0);
}

TEST(Pool, AWeakReferenceKeepsTheBlock)
{
    rc::Weak<Small> weak;
    {
        const auto object = rc::make<Small>(1);
        weak = rc::Weak<Small>(object);
    }
    EXPECT_EQ(s_alive, 0);
    // Were the block free, one of these would stand in it and seem alive.
    std::vector<rc::Ref<Small>> others;
    for (std::uint64_t i = 0; i < 5000; ++i)
        others.push_back(rc::make<Small>(i));
    EXPECT_FALSE(weak.lock());
}

} // namespace
