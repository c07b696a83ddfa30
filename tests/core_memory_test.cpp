#include "core/core_memory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

namespace {

struct Block {
    unsigned char* data;
    std::size_t size;
    unsigned char mark;
};

Block take(std::size_t size, unsigned char mark) {
    Block block{static_cast<unsigned char*>(CoreMemory::allocate(size)), size, mark};
    std::memset(block.data, mark, size);
    return block;
}

bool holds_its_mark(const Block& block) {
    for (std::size_t i = 0; i < block.size; ++i) {
        if (block.data[i] != block.mark) {
            return false;
        }
    }
    return true;
}

void give_back(const Block& block) {
    CoreMemory::release(block.data, block.size);
}

TEST(core_memory, blocks_of_every_size_are_aligned_for_any_object) {
    constexpr std::size_t small = 2000;
    constexpr std::size_t stride = 61;
    std::vector<Block> blocks;
    for (std::size_t size = 1; size <= 2 * CoreMemory::largest_slab_block;
         size += size < small ? 1 : stride) {
        blocks.push_back(take(size, static_cast<unsigned char>(size)));
        if (size >= 16) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back().data) % 16, 0u) << size;
        }
    }
    for (const Block& block : blocks) {
        EXPECT_TRUE(holds_its_mark(block)) << block.size;
        give_back(block);
    }
}

TEST(core_memory, releasing_nothing_is_legal) {
    CoreMemory::release(nullptr, 0);
    CoreMemory::release(nullptr, 100);
    Block block = take(100, 1);
    EXPECT_TRUE(holds_its_mark(block));
    give_back(block);
}

TEST(core_memory, a_block_that_grows_keeps_what_is_asked_for) {
    constexpr std::size_t mebibyte = std::size_t{1} << 20;
    const std::size_t sizes[] = {0,
                                 1,
                                 16,
                                 1024,
                                 1025,
                                 4096,
                                 mebibyte,
                                 2 * mebibyte,
                                 4 * mebibyte,
                                 4 * mebibyte + 1,
                                 5 * mebibyte,
                                 6 * mebibyte,
                                 9 * mebibyte,
                                 40 * mebibyte};
    for (const std::size_t size : sizes) {
        for (const std::size_t grown : sizes) {
            if (grown < size) {
                continue;
            }
            Block block = size == 0 ? Block{nullptr, 0, 7} : take(size, 7);
            block.data = static_cast<unsigned char*>(CoreMemory::grow(block.data, size, size, grown));
            EXPECT_TRUE(holds_its_mark(block)) << size << " to " << grown;
            std::memset(block.data, 8, grown);
            give_back({block.data, grown, 8});
        }
    }
}

TEST(core_memory, a_block_that_grows_step_by_step_never_mixes_with_its_neighbours) {
    std::vector<Block> blocks = {take(1, 1), take(3000, 2), take(std::size_t{3} << 20, 3)};
    for (int step = 0; step < 8; ++step) {
        for (Block& block : blocks) {
            const std::size_t grown = block.size + block.size / 2 + 1;
            const std::size_t kept = block.size - block.size / 3;
            block.data = static_cast<unsigned char*>(CoreMemory::grow(block.data, block.size, kept, grown));
            std::memset(block.data + kept, block.mark, grown - kept);
            block.size = grown;
        }
        for (const Block& block : blocks) {
            ASSERT_TRUE(holds_its_mark(block)) << "step " << step << ", " << block.size;
        }
    }
    for (const Block& block : blocks) {
        give_back(block);
    }
}

TEST(core_memory, blocks_that_are_alive_at_the_same_time_do_not_overlap) {
    std::mt19937 random(3);
    std::vector<Block> blocks;
    for (int step = 0; step < 50000; ++step) {
        if (blocks.empty() || random() % 3 != 0) {
            blocks.push_back(
                take(1 + random() % (random() % 8 == 0 ? 20000 : 150), static_cast<unsigned char>(random())));
        } else {
            std::swap(blocks[random() % blocks.size()], blocks.back());
            ASSERT_TRUE(holds_its_mark(blocks.back())) << "step " << step;
            give_back(blocks.back());
            blocks.pop_back();
        }
    }
    for (const Block& block : blocks) {
        EXPECT_TRUE(holds_its_mark(block));
        give_back(block);
    }
}

TEST(core_memory, a_block_is_given_back_on_another_thread_than_the_one_that_took_it) {
    std::vector<Block> blocks;
    for (int i = 0; i < 20000; ++i) {
        blocks.push_back(take(16 + static_cast<std::size_t>(i % 64) * 16, static_cast<unsigned char>(i)));
    }
    bool intact = true;
    std::thread([&] {
        for (const Block& block : blocks) {
            intact = intact && holds_its_mark(block);
            give_back(block);
        }
    }).join();
    EXPECT_TRUE(intact);
}

TEST(core_memory, threads_take_and_give_back_at_the_same_time) {
    std::vector<unsigned char> intact(4, 0);
    std::vector<std::thread> threads;
    for (unsigned int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &intact] {
            std::mt19937 random(t);
            std::vector<Block> blocks;
            bool good = true;
            for (int step = 0; step < 20000; ++step) {
                blocks.push_back(
                    take(1 + random() % 300, static_cast<unsigned char>(t * 40 + random() % 40)));
                if (random() % 2 == 0) {
                    std::swap(blocks[random() % blocks.size()], blocks.back());
                    good = good && holds_its_mark(blocks.back());
                    give_back(blocks.back());
                    blocks.pop_back();
                }
            }
            for (const Block& block : blocks) {
                good = good && holds_its_mark(block);
                give_back(block);
            }
            intact[t] = good ? 1 : 0;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(intact, std::vector<unsigned char>(4, 1));
}

/// Passes blocks between threads. Usually another thread allocated the block that a thread takes out.
class Exchange {
public:
    Block swap(Block block, std::mt19937& random) {
        const std::lock_guard lock(mutex_);
        if (blocks_.size() < 500) {
            blocks_.push_back(block);
            return {nullptr, 0, 0};
        }
        std::swap(blocks_[random() % blocks_.size()], block);
        return block;
    }
    std::vector<Block> rest() { return std::move(blocks_); }

private:
    std::mutex mutex_;
    std::vector<Block> blocks_;
};

TEST(core_memory, blocks_wander_between_threads_that_begin_and_end) {
    constexpr unsigned int thread_count = 4;
    Exchange exchange;
    std::atomic<bool> intact = true;
    for (unsigned int round = 0; round < 8; ++round) {
        std::vector<std::thread> threads;
        for (unsigned int t = 0; t < thread_count; ++t) {
            threads.emplace_back([&, seed = round * thread_count + t] {
                std::mt19937 random(seed);
                for (unsigned int step = 0; step < 1500 + 300 * (seed % thread_count); ++step) {
                    const std::size_t size = random() % 4 == 0 ? 9000 + random() % 7000 : 1 + random() % 90;
                    const Block other = exchange.swap(take(size, static_cast<unsigned char>(step)), random);
                    intact = intact && holds_its_mark(other);
                    give_back(other);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    for (const Block& block : exchange.rest()) {
        intact = intact && holds_its_mark(block);
        give_back(block);
    }
    EXPECT_TRUE(intact);
}

std::mutex early_lock;
std::map<std::thread::id, Block> early_blocks;

/// After the library has given up the heap of the thread, allocates blocks, and frees one that the thread
/// allocated before. The object itself is empty, because MinGW frees its memory before it runs the
/// destructor.
struct GivesBackAtTheEnd {
    ~GivesBackAtTheEnd() {
        std::vector<Block> late;
        for (unsigned int i = 0; i < 3000; ++i) {
            late.push_back(take(40 + i % 2 * 9000, static_cast<unsigned char>(i)));
        }
        Block early;
        {
            const std::lock_guard lock(early_lock);
            early = early_blocks.at(std::this_thread::get_id());
        }
        EXPECT_TRUE(holds_its_mark(early));
        give_back(early);
        for (const Block& block : late) {
            EXPECT_TRUE(holds_its_mark(block));
            give_back(block);
        }
        ++ended_thread_count;
    }
    static inline std::atomic<unsigned int> ended_thread_count = 0;
};

TEST(core_memory, a_thread_takes_and_gives_back_at_its_very_end) {
    constexpr unsigned int thread_count = 4;
    std::vector<std::thread> threads;
    for (unsigned int t = 0; t < thread_count; ++t) {
        threads.emplace_back([] {
            // Destroyed after the library's object of the thread, which the first block makes.
            static thread_local GivesBackAtTheEnd user;
            static_cast<void>(&user);
            const Block early = take(40, 7);
            const std::lock_guard lock(early_lock);
            early_blocks[std::this_thread::get_id()] = early;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(GivesBackAtTheEnd::ended_thread_count, thread_count);
}

} // namespace
