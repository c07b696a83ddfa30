#if defined(__linux__)

#include "core/files/sys_device_impl.h"
#include "core/memory/system/core_chunk_impl.h"
#include "core/sys_device.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

// Rare results of the system: memory at odd addresses, long links, deep folders.

TEST(system_corners, chunks_are_aligned_and_zero_wherever_the_system_puts_them) {
    std::vector<void*> pages;
    std::vector<char*> chunks;
    for (int i = 0; i < 8; ++i) {
        // Puts a page between two chunks, so that the next chunk would begin at an odd address.
        pages.push_back(::mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        auto* const chunk = static_cast<char*>(bk::take_chunks(bk::chunk_size));
        ASSERT_NE(chunk, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(chunk) % bk::chunk_size, 0u);
        EXPECT_TRUE(std::all_of(chunk, chunk + bk::chunk_size, [](char byte) { return byte == 0; }));
        std::fill(chunk, chunk + bk::chunk_size, '\1');
        chunks.push_back(chunk);
    }
    for (char* const chunk : chunks) {
        bk::give_chunks_back(chunk, bk::chunk_size);
    }
    for (void* const page : pages) {
        ::munmap(page, 4096);
    }
}

TEST(system_corners, chunks_that_are_larger_than_any_memory_are_not_there) {
    EXPECT_EQ(bk::take_chunks(std::size_t{1} << 60), nullptr);
}

TEST(system_corners, chunks_that_grow_stay_aligned_keep_what_they_hold_and_are_followed_by_zeros) {
    std::size_t size = bk::chunk_size;
    auto* chunks = static_cast<char*>(bk::take_chunks(size));
    ASSERT_NE(chunks, nullptr);
    for (std::size_t step = 0; step < 8; ++step) {
        std::fill(chunks, chunks + size, '\1');
        const std::size_t grown = size + step % 3 * bk::chunk_size;
        chunks = static_cast<char*>(bk::grow_chunks(chunks, size, grown));
        ASSERT_NE(chunks, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(chunks) % bk::chunk_size, 0u);
        EXPECT_EQ(std::count(chunks, chunks + size, '\1'), static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(std::count(chunks + size, chunks + grown, '\0'), static_cast<std::ptrdiff_t>(grown - size));
        size = grown;
    }
    EXPECT_EQ(bk::grow_chunks(chunks, size, std::size_t{1} << 60), nullptr);
    std::fill(chunks, chunks + size, '\2'); // checks that they are still mapped
    bk::give_chunks_back(chunks, size);
}

TEST(system_corners, chunks_that_the_kernel_does_not_move_stay_where_they_are) {
    constexpr std::size_t size = 2 * bk::chunk_size;
    constexpr int kept = 7;
    auto* const chunks = static_cast<char*>(bk::take_chunks(size));
    ASSERT_NE(chunks, nullptr);
    std::fill(chunks, chunks + size, '\1');
    // Splits them into two mappings, which cannot grow as one.
    ASSERT_EQ(::madvise(chunks, 4096, MADV_DONTDUMP), 0);
    errno = kept;
    EXPECT_EQ(bk::grow_chunks(chunks, size, 2 * size), nullptr);
    EXPECT_EQ(errno, kept);
    EXPECT_EQ(std::count(chunks, chunks + size, '\1'), static_cast<std::ptrdiff_t>(size));
    bk::give_chunks_back(chunks, size);
}

TEST(system_corners, a_link_may_lead_to_a_name_of_any_length) {
    const ScratchFolder folder;
    std::string target = folder.path();
    while (target.size() < 1000) {
        target += "/.";
    }
    target += "/data";
    std::filesystem::create_symlink(target, folder.path("link"));
    EXPECT_EQ(bk::platform_device().resolve_links(folder.path("link")), target);
}

TEST(system_corners, the_current_folder_may_be_as_deep_as_folders_go) {
    const std::filesystem::path before = std::filesystem::current_path();
    const ScratchFolder folder;
    std::string path = folder.path();
    while (path.size() < 700) {
        path += "/a_folder_with_a_name_of_some_length";
    }
    std::filesystem::create_directories(path);
    std::filesystem::current_path(path);
    const std::string current = bk::platform_device().current_folder();
    std::filesystem::current_path(before);
    EXPECT_EQ(current, path);
}

TEST(system_corners, a_current_folder_that_is_gone_has_no_name) {
    const std::filesystem::path before = std::filesystem::current_path();
    const ScratchFolder folder;
    std::filesystem::current_path(folder.make_folder("gone"));
    std::filesystem::remove(folder.path("gone"));
    const std::string current = bk::platform_device().current_folder();
    std::filesystem::current_path(before);
    EXPECT_EQ(current, "");
}

#endif
