#include "core/core_memory.h"
#include "core/memory/core_assert_impl.h"
#include "core/memory/core_poison_impl.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

// Checks that catch misuse of the slabs. Free blocks are poisoned for the address sanitizer. Sanitizer and
// Debug builds test invariants.

namespace {

class slab_poison : public testing::Test {
protected:
    void SetUp() override {
#if !defined(BK_PARSER_POISONS) || defined(BK_PARSER_NO_SLABS)
        GTEST_SKIP() << "this build has no poison, or no slabs";
#endif
        GTEST_FLAG_SET(death_test_style, "threadsafe");
    }
    static bool is_open(const char* block, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            if (bk::is_poisoned(block + i)) {
                return false;
            }
        }
        return true;
    }
};

char* take(std::size_t size) {
    return static_cast<char*>(CoreMemory::allocate(size));
}

char read(const volatile char* place) {
    return *place;
}

} // namespace

TEST_F(slab_poison, a_block_is_open_to_its_last_byte_and_closed_behind_it) {
    std::vector<char*> blocks;
    std::vector<std::size_t> sizes;
    for (std::size_t size = 1; size <= CoreMemory::largest_slab_block; size += size < 300 ? 1 : 997) {
        char* const block = take(size);
        EXPECT_TRUE(is_open(block, size)) << size;
        if (size % 16 != 0) {
            EXPECT_TRUE(bk::is_poisoned(block + size)) << size;
        }
        blocks.push_back(block);
        sizes.push_back(size);
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        CoreMemory::release(blocks[i], sizes[i]);
    }
}

TEST_F(slab_poison, a_free_block_is_closed_and_open_again_when_it_is_taken_again) {
    char* const neighbour = take(64);
    char* const block = take(64);
    CoreMemory::release(block, 64);
    EXPECT_TRUE(bk::is_poisoned(block));
    EXPECT_TRUE(bk::is_poisoned(block + 63));
    EXPECT_TRUE(is_open(neighbour, 64));
    char* const again = take(40);
    EXPECT_TRUE(is_open(again, 40));
    CoreMemory::release(again, 40);
    CoreMemory::release(neighbour, 64);
}

TEST_F(slab_poison, what_another_thread_gave_back_is_closed_behind_its_link) {
    char* const neighbour = take(64);
    char* const block = take(64);
    std::thread([&] { CoreMemory::release(block, 64); }).join();
    EXPECT_TRUE(bk::is_poisoned(block + 8));
    EXPECT_TRUE(bk::is_poisoned(block + 63));
    EXPECT_TRUE(is_open(neighbour, 64));
    CoreMemory::release(neighbour, 64);
}

TEST_F(slab_poison, whoever_reads_a_free_block_is_reported) {
    char* const neighbour = take(64);
    char* const block = take(64);
    CoreMemory::release(block, 64);
    EXPECT_DEATH(read(block), "use-after-poison");
    EXPECT_DEATH(read(block + 63), "use-after-poison");
    CoreMemory::release(neighbour, 64);
}

TEST_F(slab_poison, whoever_gives_a_block_back_twice_is_reported) {
    char* const neighbour = take(64);
    char* const block = take(64);
    CoreMemory::release(block, 64);
    EXPECT_DEATH(CoreMemory::release(block, 64), "does not hold");
    CoreMemory::release(neighbour, 64);
}

TEST(assertions, a_condition_that_does_not_hold_ends_the_process_where_conditions_are_tested) {
#if defined(BK_PARSER_ASSERTIONS)
    BK_ASSERT(true);
    EXPECT_DEATH(BK_ASSERT(1 + 1 == 3), "slab_nets_impl_test.cpp:[0-9]+: does not hold: 1 \\+ 1 == 3");
#else
    bool is_tested = false;
    BK_ASSERT(is_tested = true);
    EXPECT_FALSE(is_tested);
#endif
}
