#if defined(__linux__)

#include "tests/support/recording_log.h"
#include "tests/support/saved_forms.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>
#include <sys/mount.h>
#include <sys/resource.h>

// The disk is full, or a file may not grow further. The old document must stay, and no other file may be
// left.

namespace {

class DiskFull : public testing::TestWithParam<SavedForm> {
protected:
    DiskFull() { small_.get_root().set_text("title \"old\" ", default_parser_serial_version, nullptr); }

    /// Saves a small document, and then one for which there is no room.
    void expect_the_old_document_to_stay(const std::string& path, const std::string& folder,
                                         const std::function<void()>& limit,
                                         const std::function<void()>& lift) {
        const CoreString target{std::string_view(path)};
        ParserFile large{CoreString()};
        // Entries of different texts, so that the archive is large, too.
        for (int i = 0; i < 20000; ++i) {
            large.get_root()
                .add_entry("entry", 0, 0)
                ->add_string(CoreString(std::string_view("a text of its own, number " + std::to_string(i))));
        }
        ASSERT_TRUE(GetParam().save(small_, target));
        RecordingLog log;
        limit();
        const bool is_stored = GetParam().save(large, target) && log.is_empty();
        lift();
        EXPECT_FALSE(is_stored);
        ParserGroup root("root");
        EXPECT_TRUE(GetParam().load(root, target));
        EXPECT_EQ(printed(root), " title \"old\"");
        std::filesystem::directory_iterator entries(folder);
        EXPECT_EQ(std::distance(begin(entries), end(entries)), 1) << "nothing stands beside it";
    }

    ParserFile small_{CoreString()};
};

/// A disk in memory of 256 KiB. Does not exist if this process may not mount one.
class SmallDisk {
public:
    explicit SmallDisk(const std::string& path) : path_(path) {
        is_mounted_ = ::mount("bk_parser", path.c_str(), "tmpfs", 0, "size=256k") == 0;
    }
    ~SmallDisk() {
        if (is_mounted_) {
            ::umount2(path_.c_str(), MNT_DETACH);
        }
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool is_mounted() const { return is_mounted_; }

private:
    std::string path_;
    bool is_mounted_ = false;
};

using disk_full = DiskFull;

} // namespace

TEST_P(disk_full, a_document_larger_than_the_disk_leaves_the_old_one) {
    const ScratchFolder folder;
    folder.make_folder("disk");
    const SmallDisk disk(folder.path("disk"));
    if (!disk.is_mounted()) {
        GTEST_SKIP() << "this process may not mount a disk: " << std::strerror(errno);
    }
    expect_the_old_document_to_stay(
        folder.path("disk/document"), folder.path("disk"), [] {}, [] {});
}

TEST_P(disk_full, a_file_that_may_not_grow_so_far_leaves_the_old_one) {
    const ScratchFolder folder;
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN); // a write then fails as on a full disk
    expect_the_old_document_to_stay(
        folder.path("document"), folder.path(),
        [&] {
            const rlimit small{100000, before.rlim_max};
            ::setrlimit(RLIMIT_FSIZE, &small);
        },
        [&] { ::setrlimit(RLIMIT_FSIZE, &before); });
    std::signal(SIGXFSZ, SIG_DFL);
}

INSTANTIATE_TEST_SUITE_P(each_form, disk_full, testing::ValuesIn(saved_forms()),
                         [](const auto& form) { return form.param.name; });

#endif
