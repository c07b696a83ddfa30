#include "core/core_memory.h"
#include "core/memory/core_poison_impl.h"
#include "core/memory/runs/core_run_impl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

// `allocate_in_order` places blocks one after another in memory.

namespace {

struct Taken {
    char* begin;
    std::size_t size;
};

Taken take(std::size_t size) {
    Taken taken{static_cast<char*>(bk::allocate_in_order(size)), size};
    std::memset(taken.begin, static_cast<int>(size % 251), size);
    return taken;
}

bool is_untouched(const Taken& taken) {
    for (std::size_t i = 0; i < taken.size; ++i) {
        if (taken.begin[i] != static_cast<char>(taken.size % 251)) {
            return false;
        }
    }
    return true;
}

std::vector<Taken> take_many(unsigned int count) {
    std::mt19937 random(count);
    std::vector<Taken> taken;
    for (unsigned int i = 0; i < count; ++i) {
        taken.push_back(take(1 + random() % 1024));
    }
    return taken;
}

void release_all(const std::vector<Taken>& taken) {
    for (const Taken& block : taken) {
        CoreMemory::release(block.begin, block.size);
    }
}

} // namespace

TEST(core_run, blocks_of_any_size_lie_one_behind_the_other) {
#if defined(BK_PARSER_NO_SLABS)
    GTEST_SKIP() << "this build has no slabs";
#endif
    CoreMemory::release(CoreMemory::allocate(1), 1); // the thread has no heap before its first block
    const std::vector<Taken> taken = take_many(10000);
    unsigned int jumps = 0;
    for (std::size_t i = 1; i < taken.size(); ++i) {
        const char* const behind = taken[i - 1].begin + taken[i - 1].size;
        jumps += taken[i].begin < behind || taken[i].begin > behind + 16 ? 1 : 0;
    }
    EXPECT_LT(jumps, 10000u * 513 / 60000) << "one a page";
    release_all(taken);
}

TEST(core_run, blocks_keep_to_themselves_whoever_gives_them_back) {
    std::vector<Taken> taken = take_many(5000);
    std::vector<Taken> others;
    std::thread([&others] { others = take_many(5000); }).join(); // the thread that allocated these has ended
    const std::vector<Taken> more = take_many(1000);
    taken.insert(taken.end(), others.begin(), others.end());
    taken.insert(taken.end(), more.begin(), more.end());
    for (const Taken& block : taken) {
        ASSERT_TRUE(is_untouched(block));
    }
    std::shuffle(taken.begin(), taken.end(), std::mt19937(1));
    const auto middle = taken.begin() + static_cast<std::ptrdiff_t>(taken.size() / 2);
    const std::vector<Taken> there(taken.begin(), middle);
    const std::vector<Taken> here(middle, taken.end());
    std::thread thread([&there] { release_all(there); });
    release_all(here);
    thread.join();
    release_all(take_many(5000));
}

TEST(core_run, a_block_is_closed_behind_its_end_and_all_of_it_when_it_is_given_back) {
#if !defined(BK_PARSER_POISONS) || defined(BK_PARSER_NO_SLABS)
    GTEST_SKIP() << "this build has no poison, or no slabs";
#endif
    CoreMemory::release(CoreMemory::allocate(1), 1);
    const Taken first = take(20);
    const Taken block = take(100);
    const Taken last = take(20);
    EXPECT_TRUE(bk::is_poisoned(block.begin + 100));
    EXPECT_TRUE(bk::is_poisoned(block.begin - 1));
    CoreMemory::release(block.begin, 40); // releases an object at the beginning of the block
    EXPECT_TRUE(bk::is_poisoned(block.begin));
    EXPECT_TRUE(bk::is_poisoned(block.begin + 99));
    EXPECT_TRUE(is_untouched(first));
    EXPECT_TRUE(is_untouched(last));
    release_all({first, last});
}
