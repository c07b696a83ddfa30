#include "core/core_memory.h"
#include "core/memory/system/core_chunk_impl.h"
#include "parser/parser_file.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <thread>
#include <vector>

// The operating system refuses the n-th chunk that the slabs ask for, and all later ones. This file defines
// the functions that give chunks, which a static library allows.

namespace {

std::size_t chunks_left = SIZE_MAX;
std::size_t chunks_asked = 0;

// Not in the thread's object, because MinGW frees the memory of that object before it runs the destructor.
bool is_refused = false;

/// The allocated chunks by their aligned addresses.
std::map<void*, std::unique_ptr<char[]>>& chunk_memory() {
    static std::map<void*, std::unique_ptr<char[]>> memory;
    return memory;
}

} // namespace

void* bk::take_chunks(std::size_t size) noexcept {
    ++chunks_asked;
    if (chunks_left == 0) {
        return nullptr;
    }
    --chunks_left;
    auto memory = std::make_unique<char[]>(size + chunk_size);
    void* place = memory.get();
    std::size_t room = size + chunk_size;
    std::align(chunk_size, size, place, room);
    chunk_memory()[place] = std::move(memory);
    return place;
}

/// Fails, like a system that cannot move memory.
void* bk::grow_chunks(void*, std::size_t, std::size_t) noexcept {
    return nullptr;
}

void bk::give_chunks_back(void* chunks, std::size_t) noexcept {
    chunk_memory().erase(chunks);
}

namespace {

/// A text that needs several chunks.
CoreString long_text() {
    CoreString text;
    for (int i = 0; i < 60000; ++i) {
        text += "entry ";
        text += i;
        text += " ";
    }
    return text;
}

class chunk_out : public testing::Test {
protected:
    void SetUp() override {
#if defined(BK_PARSER_NO_SLABS)
        GTEST_SKIP() << "the library was built without slabs";
#endif
    }
    ~chunk_out() override {
        chunks_left = SIZE_MAX;
    }
};

} // namespace

TEST_F(chunk_out, a_parse_that_gets_no_further_chunk_keeps_what_it_read) {
    const CoreString text = long_text();
    unsigned int most = 0;
    for (std::size_t chunks = 0;; ++chunks) {
        const std::size_t in_use = chunk_memory().size();
        bool result = false;
        unsigned int count = 0;
        {
            RecordingLog log;
            ParserGroup group("root");
            chunks_left = chunks;
            result = group.set_text(text, default_parser_serial_version, nullptr);
            chunks_left = SIZE_MAX;
            count = group.get_entries().get_count();
            EXPECT_EQ(log.messages.empty(), result);
            if (count != 0) {
                EXPECT_EQ(group.get_entry(count - 1)->get_int(0), static_cast<int>(count) - 1);
            }
        }
        EXPECT_LE(chunk_memory().size(), in_use + 8) << "eight empty chunks may be kept";
        EXPECT_GE(count, most);
        most = count;
        if (result) {
            EXPECT_EQ(count, 60000u);
            EXPECT_GE(chunks, 2u);
            return;
        }
    }
}

TEST_F(chunk_out, a_large_block_that_cannot_grow_stays_as_it_is) {
    constexpr std::size_t size = std::size_t{8} << 20;
    auto* block = static_cast<char*>(CoreMemory::allocate(size));
    std::memset(block, 1, size);
    chunks_left = 0;
    EXPECT_THROW(static_cast<void>(CoreMemory::grow(block, size, size, 2 * size)), std::bad_alloc);
    EXPECT_EQ(std::count(block, block + size, 1), std::ptrdiff_t{size});
    chunks_left = SIZE_MAX;
    block = static_cast<char*>(CoreMemory::grow(block, size, size, 2 * size));
    std::memset(block + size, 2, size);
    EXPECT_EQ(std::count(block, block + size, 1), std::ptrdiff_t{size});
    CoreMemory::release(block, 2 * size);
    EXPECT_EQ(chunk_memory().count(block), 0u);
}

TEST_F(chunk_out, a_large_block_that_cannot_be_had_is_an_exception_of_its_own_request_alone) {
    chunks_left = 0;
    const std::size_t asked = chunks_asked;
    EXPECT_THROW(static_cast<void>(CoreMemory::allocate(std::size_t{8} << 20)), std::bad_alloc);
    EXPECT_EQ(chunks_asked, asked + 1);
    chunks_left = SIZE_MAX;
    void* const block = CoreMemory::allocate(std::size_t{8} << 20);
    std::memset(block, 1, std::size_t{8} << 20);
    CoreMemory::release(block, std::size_t{8} << 20);
}

TEST_F(chunk_out, eight_chunks_that_are_empty_are_kept_for_what_comes_next_and_the_others_go_back) {
    constexpr std::size_t size = CoreMemory::largest_slab_block;
    constexpr std::size_t blocks_of_a_chunk = bk::chunk_size / size;
    std::size_t in_use = 0;
    std::size_t asked = 0;
    for (int round = 0; round < 5; ++round) {
        std::vector<void*> blocks;
        for (std::size_t i = 0; i < 11 * blocks_of_a_chunk; ++i) {
            blocks.push_back(CoreMemory::allocate(size));
        }
        const std::size_t most = chunk_memory().size();
        for (void* const block : blocks) {
            CoreMemory::release(block, size);
        }
        EXPECT_LE(chunk_memory().size() + 3, most) << round;
        if (round != 0) {
            EXPECT_EQ(chunk_memory().size(), in_use) << round;
        }
        in_use = chunk_memory().size();
        asked = chunks_asked;
        for (int i = 0; i < 100; ++i) {
            CoreMemory::release(CoreMemory::allocate(size), size);
        }
        EXPECT_EQ(chunks_asked, asked) << round;
    }
    // Fills the pages of the chunks in use, so that the next block needs an empty chunk.
    std::vector<void*> filling;
    while (chunks_asked == asked) {
        filling.push_back(CoreMemory::allocate(size));
    }
    CoreMemory::release(filling.back(), size);
    filling.pop_back();
    asked = chunks_asked;
    for (int i = 0; i < 100; ++i) {
        CoreMemory::release(CoreMemory::allocate(size), size);
    }
    EXPECT_EQ(chunks_asked, asked) << "a chunk was given back and asked for again";
    for (void* const block : filling) {
        CoreMemory::release(block, size);
    }
    EXPECT_LE(chunk_memory().size(), in_use + 8);
}

TEST_F(chunk_out, a_thread_at_its_end_that_gets_no_chunk_is_told) {
    struct AtTheEnd {
        ~AtTheEnd() {
            std::vector<void*> taken;
            chunks_left = 0;
            try {
                for (int i = 0; i < 10000; ++i) {
                    taken.push_back(CoreMemory::allocate(CoreMemory::largest_slab_block));
                }
            } catch (const std::bad_alloc&) {
                is_refused = true;
            }
            chunks_left = SIZE_MAX;
            for (void* const block : taken) {
                CoreMemory::release(block, CoreMemory::largest_slab_block);
            }
        }
    };
    is_refused = false;
    const std::size_t in_use = chunk_memory().size();
    std::thread([&] {
        static thread_local AtTheEnd user;
        static_cast<void>(&user);
        CoreMemory::release(CoreMemory::allocate(1), 1);
    }).join();
    EXPECT_TRUE(is_refused);
    EXPECT_LE(chunk_memory().size(), in_use + 8);
}
