#include "core/core_memory.h"
#include "core/memory/core_slab_page_impl.h"
#include "core/memory/runs/core_run_impl.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

// Pages of blocks from `allocate_in_order`, which places them one after another.

namespace {

constexpr std::size_t block_size = 1024;

using Page = std::vector<unsigned char*>;

unsigned char* take() {
    return static_cast<unsigned char*>(bk::allocate_in_order(block_size));
}

/// Allocates `count` pages of blocks, and returns the blocks of each page.
std::vector<Page> take_pages(std::size_t count) {
    // Gives the thread a heap.
    CoreMemory::release(CoreMemory::allocate(block_size), block_size);
    std::vector<Page> pages;
    const bk::SlabPage* last = nullptr;
    while (pages.size() < count) {
        unsigned char* const block = take();
        if (bk::SlabPage::of(block) != last) {
            last = bk::SlabPage::of(block);
            pages.emplace_back();
        }
        pages.back().push_back(block);
    }
    return pages;
}

void give_back(unsigned char* block) {
    CoreMemory::release(block, block_size);
}

} // namespace

TEST(core_run, the_last_block_of_a_page_goes_when_its_thread_has_given_up_the_page) {
    constexpr std::size_t more_than_a_thread_keeps = 600;
    for (int round = 0; round < 3; ++round) {
        const std::vector<Page> pages = take_pages(more_than_a_thread_keeps);
        for (const Page& page : pages) {
            for (std::size_t i = 1; i < page.size(); ++i) {
                give_back(page[i]);
            }
        }
        for (const Page& page : pages) {
            give_back(page[0]);
        }
        std::vector<unsigned char*> blocks;
        for (std::size_t i = 0; i < 2000; ++i) {
            blocks.push_back(take());
            std::memset(blocks.back(), static_cast<int>(i % 251), block_size);
        }
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            ASSERT_EQ(blocks[i][0], i % 251);
            ASSERT_EQ(blocks[i][block_size - 1], i % 251);
            give_back(blocks[i]);
        }
    }
}
