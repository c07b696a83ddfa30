#include "tests/support/counted_faults.h"
#include "tests/support/forwarding_device.h"
#include "tests/support/loaded_document.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>
#endif

// The problem of a file that cannot be read gives the system's reason.

using bk_parser::load;
using bk_parser::LoadResult;

namespace {

/// Forbids reading every path that has this ending.
class ForbiddingDevice : public ForwardingDevice {
public:
    explicit ForbiddingDevice(std::string ending) : ending_(std::move(ending)) {}

    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        if (!path.ends_with(ending_)) {
            return ForwardingDevice::open_for_reading(path);
        }
#if defined(_WIN32)
        SetLastError(ERROR_ACCESS_DENIED);
#else
        errno = EACCES;
#endif
        return nullptr;
    }

private:
    std::string ending_;
};

/// Opens files, but every read fails without a reason.
class FailingReads : public ForwardingDevice {
public:
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return std::make_unique<Handle>(ForwardingDevice::open_for_reading(path));
    }

private:
    class Handle : public ForwardingHandle {
    public:
        using ForwardingHandle::ForwardingHandle;
        core_int64 read(char*, std::size_t) override { return -1; }
    };
};

Lines only(const std::string& file, const std::string& message) {
    return {file + ": error: " + message + " [unreadable]"};
}

} // namespace

TEST(document_files, that_are_missing_are_told) {
    const ScratchFolder folder;
    const std::string path = folder.path("x.bkd");
    const LoadResult result = load(path);
    EXPECT_EQ(told(result), only("x.bkd", path + ": no such file"));
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(result.document.root().get_entries().get_count(), 0u);
    EXPECT_EQ(told(load("")), only("", "'': no such file"));
}

TEST(document_files, that_are_directories_are_told) {
    const ScratchFolder folder;
    const std::string path = folder.make_folder("shots");
    EXPECT_EQ(told(load(path)), only("shots", path + ": is a directory"));
}

TEST(document_files, that_may_not_be_read_are_told) {
    const ScratchFolder folder;
    const std::string path = folder.write("x.bkd", "a 1");
    const ForbiddingDevice device("x.bkd");
    EXPECT_EQ(told(load(path)), only("x.bkd", path + ": permission denied"));
    const std::string including = folder.write("main.bkd", "b 2\n#include \"x.bkd\"\n");
    EXPECT_EQ(told(load(including)),
              Lines{"main.bkd:2:1: error: " + path + ": permission denied [unreadable]"});
}

TEST(document_files, whose_device_gives_no_reason_are_told_all_the_same) {
    const ScratchFolder folder;
    const std::string path = folder.write("x.bkd", "a 1");
    const FailingReads device;
    EXPECT_EQ(told(load(path)), only("x.bkd", path + ": cannot be read"));
}

#if !defined(_WIN32)

TEST(document_files, behind_a_circle_of_links_are_told) {
    const ScratchFolder folder;
    const std::string path = folder.path("x.bkd");
    std::filesystem::create_symlink("y.bkd", path);
    std::filesystem::create_symlink("x.bkd", folder.path("y.bkd"));
    EXPECT_EQ(told(load(path)), only("x.bkd", path + ": too many levels of symbolic links"));
}

TEST(document_files, behind_a_file_or_of_too_long_a_name_are_told) {
    const ScratchFolder folder;
    const std::string path = folder.write("x.bkd", "a 1") + "/y";
    EXPECT_EQ(told(load(path)), only("y", path + ": a part of the path is not a directory"));
    const std::string name(300, 'n');
    EXPECT_EQ(told(load(folder.path(name))), only(name, folder.path(name) + ": file name too long"));
}

#endif

TEST(document_files, are_loaded_whole_or_told_whatever_call_of_the_system_fails) {
    const ScratchFolder folder;
    folder.write("part.bkd", "b 2\n");
    const std::string path = folder.write("main.bkd", "a 1\n#include \"part.bkd\"\nc 3\n");
    const std::string whole = tree_of(load(path));
    ASSERT_EQ(whole, " a 1 b 2 c 3");
    int faults = 0;
    for (int n = 1; n < 100; ++n) {
        FaultAtCall device(n);
        const LoadResult result = load(path);
        faults += device.has_failed() ? 1 : 0;
        EXPECT_EQ(tree_of(result) == whole, result.ok()) << n;
        if (!device.has_failed()) {
            EXPECT_TRUE(result.ok());
            break;
        }
    }
    EXPECT_GE(faults, 6);
}

TEST(document_files, errno_is_the_callers) {
    errno = 77;
    static_cast<void>(load("/nowhere/x.bkd"));
    EXPECT_EQ(errno, 77);
}
