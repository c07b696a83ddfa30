#include "core/core_memory.h"
#include "core/memory/core_slab_impl.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
#endif

// What happens to the heap of a thread that has ended, however the thread was made.

namespace {

constexpr std::size_t block_size = 40;

class thread_end : public testing::Test {
protected:
    void SetUp() override {
#if defined(BK_PARSER_NO_SLABS)
        GTEST_SKIP() << "the library was built without slabs";
#endif
    }
};

/// Keeps a block in use, so that the page of the heap is not empty when the thread ends.
bk::SlabHeap* heap_after_use(void*& kept) {
    kept = CoreMemory::allocate(block_size);
    CoreMemory::release(CoreMemory::allocate(block_size), block_size);
    return bk::SlabHeap::of_this_thread();
}

TEST_F(thread_end, a_thread_takes_over_the_heap_of_one_that_has_ended) {
    std::set<bk::SlabHeap*> heaps;
    std::set<void*> kept;
    for (int i = 0; i < 50; ++i) {
        std::thread([&] {
            void* block = nullptr;
            heaps.insert(heap_after_use(block));
            kept.insert(block);
        }).join();
    }
    EXPECT_EQ(heaps.size(), 1u);
    EXPECT_EQ(heaps.count(nullptr), 0u);
    EXPECT_EQ(kept.size(), 50u);
    std::set<bk::SlabPage*> pages;
    for (void* const block : kept) {
        pages.insert(bk::SlabPage::of(block));
        CoreMemory::release(block, block_size);
    }
    EXPECT_EQ(pages.size(), 1u) << "the page of a thread that has ended serves the next";
}

std::mutex seen_lock;
std::map<std::thread::id, bk::SlabHeap*> seen_at_the_end;

/// Has no members, because some runtimes free a thread's thread_local objects before they run their
/// destructors.
struct AllocatesAtTheEnd {
    ~AllocatesAtTheEnd() {
        void* const block = CoreMemory::allocate(block_size);
        std::memset(block, 1, block_size);
        {
            const std::lock_guard lock(seen_lock);
            seen_at_the_end[std::this_thread::get_id()] = bk::SlabHeap::of_this_thread();
        }
        CoreMemory::release(block, block_size);
    }
};

TEST_F(thread_end, a_thread_local_object_that_allocates_last_gets_no_second_heap) {
    std::set<bk::SlabHeap*> heaps;
    for (int i = 0; i < 50; ++i) {
        std::thread([&] {
            // Destroyed after the library has given up the heap.
            static thread_local AllocatesAtTheEnd user;
            static_cast<void>(&user);
            void* block = nullptr;
            heaps.insert(heap_after_use(block));
            CoreMemory::release(block, block_size);
        }).join();
    }
    EXPECT_EQ(heaps.size(), 1u);
    EXPECT_FALSE(seen_at_the_end.empty());
    for (const auto& [thread, heap] : seen_at_the_end) {
        EXPECT_TRUE(heap == nullptr || heaps.count(heap) == 1);
    }
}

#if defined(_WIN32)

DWORD WINAPI use_heap(void* heap) {
    void* block = nullptr;
    *static_cast<bk::SlabHeap**>(heap) = heap_after_use(block);
    CoreMemory::release(block, block_size);
    return 0;
}

TEST_F(thread_end, threads_of_the_system_give_their_heaps_up_as_well) {
    std::set<bk::SlabHeap*> heaps;
    for (int i = 0; i < 50; ++i) {
        bk::SlabHeap* heap = nullptr;
        HANDLE const thread = CreateThread(nullptr, 0, use_heap, &heap, 0, nullptr);
        ASSERT_NE(thread, nullptr);
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
        heaps.insert(heap);
    }
    EXPECT_EQ(heaps.size(), 1u);
    EXPECT_EQ(heaps.count(nullptr), 0u);
}

TEST_F(thread_end, allocating_leaves_the_last_error_of_the_system_alone) {
    CoreMemory::release(CoreMemory::allocate(block_size), block_size);
    SetLastError(ERROR_FILE_NOT_FOUND);
    CoreMemory::release(CoreMemory::allocate(block_size), block_size);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    SetLastError(NO_ERROR);
}

#endif

} // namespace
