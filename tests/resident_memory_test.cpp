#include "core/core_memory.h"
#include "core/core_version.h"
#include "parser/parser_group.h"
#include "tests/support/live_document.h"
#include "tests/support/resident_memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr double mebibyte = 1024.0 * 1024.0;

CoreString lines(unsigned int count) {
    std::string text;
    for (unsigned int i = 0; i < count; ++i) {
        text += "group { name \"entry number " + std::to_string(i) + "\" place 0.5 1.25 " +
                std::to_string(i) + " }\n";
    }
    return CoreString(text);
}

std::unique_ptr<ParserGroup> parsed(const CoreString& text) {
    auto root = std::make_unique<ParserGroup>("root");
    root->set_text(text, CoreVersion(1.2), nullptr);
    return root;
}

TEST(resident_memory, what_a_large_document_took_is_given_back_when_it_dies) {
    const CoreString text = lines(100000);
    // After this, the library keeps 16 MiB for the next document.
    parsed(lines(50000)).reset();
    const double before = resident_memory();
    if (before < 0.0) {
        GTEST_SKIP() << "resident memory cannot be told here";
    }
    auto root = parsed(text);
    EXPECT_GT(resident_memory(), before + 20.0 * mebibyte) << "the document's memory is not seen";
    root.reset();
    EXPECT_LT(resident_memory(), 1.1 * before);
}

TEST(resident_memory, what_printing_and_storing_a_large_document_took_is_given_back) {
    const CoreString text = lines(100000);
    parsed(lines(50000)).reset();
    const double before = resident_memory();
    if (before < 0.0) {
        GTEST_SKIP() << "resident memory cannot be told here";
    }
    {
        const auto root = parsed(text);
        CoreString printed;
        root->get_text(printed, false, true, 1);
        const CoreVector<char> bytes = root->get_binary(false);
        ParserGroup decoded("root");
        core_uint64 position = 0;
        ASSERT_TRUE(decoded.set_binary(bytes, position));
        ASSERT_EQ(decoded.get_entry_count(), root->get_entry_count());
    }
    EXPECT_LT(resident_memory(), 1.1 * before);
}

TEST(resident_memory, blocks_of_threads_that_have_ended_are_given_back) {
    constexpr unsigned int thread_count = 8;
    constexpr unsigned int block_count = 900;
    constexpr std::size_t size = CoreMemory::largest_slab_block;
    const double before = resident_memory();
    if (before < 0.0) {
        GTEST_SKIP() << "resident memory cannot be told here";
    }
    std::vector<std::vector<void*>> blocks(thread_count);
    // Without it, one thread could take over the memory of another.
    std::latch all_have_taken(thread_count);
    std::vector<std::thread> threads;
    for (std::vector<void*>& taken : blocks) {
        threads.emplace_back([&taken, &all_have_taken] {
            for (unsigned int i = 0; i < block_count; ++i) {
                taken.push_back(CoreMemory::allocate(size));
                std::memset(taken.back(), 1, size);
            }
            all_have_taken.arrive_and_wait();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_GT(resident_memory(), before + 80.0 * mebibyte) << "the blocks' memory is not seen";
    for (const std::vector<void*>& taken : blocks) {
        for (void* const block : taken) {
            CoreMemory::release(block, size);
        }
    }
    // Each heap keeps a chunk, and a few blocks are not yet freed.
    EXPECT_LT(resident_memory(), before + 6.0 * thread_count * mebibyte);
}

TEST(resident_memory, a_document_that_is_edited_on_and_on_takes_no_more) {
    LiveDocument document(1);
    for (unsigned int i = 0; i < 200000; ++i) {
        document.edit();
    }
    const double before = resident_memory();
    if (before < 0.0) {
        GTEST_SKIP() << "resident memory cannot be told here";
    }
    for (unsigned int i = 0; i < 1000000; ++i) {
        document.edit();
    }
    EXPECT_LT(resident_memory(), before + 4.0 * mebibyte); // a leak of 5 bytes per edit would exceed that
}

} // namespace
