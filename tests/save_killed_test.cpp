#if defined(__linux__)

#include "tests/support/killed_child.h"
#include "tests/support/sanitizer.h"
#include "tests/support/saved_forms.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/syscall.h>

// A process that saves is killed before and after each of its system calls. The disk must then have the
// complete old document or the complete new one. The only other file that may be left is one whose name shows
// that it is temporary.

namespace {

using namespace killed_child;

bool renames(long call) {
    bool result = call == SYS_renameat2;
#if defined(SYS_rename)
    result = result || call == SYS_rename;
#endif
#if defined(SYS_renameat)
    result = result || call == SYS_renameat;
#endif
    return result;
}

class SaveKilled : public testing::TestWithParam<SavedForm> {
protected:
    SaveKilled() {
        old_.get_root().set_text("title \"old\" ", default_parser_serial_version, nullptr);
        CoreString text("title \"new\" ");
        for (int i = 0; i < 20000; ++i) {
            text += "entry 1234567 ";
        }
        new_.get_root().set_text(text, default_parser_serial_version, nullptr);
    }
    std::string store(ParserFile& file) const {
        GetParam().save(file, target());
        file.get_root().remove_entry("#Brellwick_Serial_Version");
        return folder_.read("document");
    }
    CoreString target() const { return folder_.core_path("document"); }
    /// The names of the files beside the document. Removes them.
    std::vector<std::string> take_rest() const {
        std::vector<std::string> rest;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            if (entry.path().filename() != "document") {
                rest.push_back(entry.path().filename().string());
            }
        }
        for (const std::string& name : rest) {
            std::filesystem::remove(folder_.path(name));
        }
        return rest;
    }

    const ScratchFolder folder_;
    ParserFile old_{CoreString()};
    ParserFile new_{CoreString()};
};

using save_killed = SaveKilled;

} // namespace

TEST_P(save_killed, at_any_system_call_leaves_the_whole_old_document_or_the_whole_new_one) {
    const std::string new_bytes = store(new_);
    const std::string old_bytes = store(old_);
    std::vector<long> calls;
    bool replaced = false;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        if (replaced) {
            ASSERT_EQ(store(old_), old_bytes);
        }
        const End end = run_killed_at(
            n, [this] { GetParam().save(new_, target()); }, calls);
        if (end == End::not_traced) {
            GTEST_SKIP() << "this process may not trace another one";
        }
        const std::string bytes = folder_.read("document");
        EXPECT_TRUE(bytes == new_bytes || bytes == old_bytes)
            << "place " << n << ": " << bytes.size() << " bytes";
#if !defined(                                                                                                \
    BK_PARSER_SANITIZED_MEMORY) // the sanitizer makes calls of its own, so place n varies between runs
        EXPECT_TRUE(bytes == new_bytes || !replaced) << "place " << n << ": once it is replaced it stays so";
#endif
        replaced = bytes == new_bytes;
        const std::vector<std::string> rest = take_rest();
        EXPECT_LE(rest.size(), 1u);
        for (const std::string& name : rest) {
            EXPECT_TRUE(name.starts_with(".bk_parser_new_")) << name;
            EXPECT_FALSE(replaced) << "nothing is left beside the new document";
        }
        if (end == End::done) {
            EXPECT_TRUE(replaced);
            EXPECT_GT(n, 10);
            return;
        }
    }
}

TEST_P(save_killed, the_bytes_are_on_the_disk_before_the_name_is_and_the_name_after_that) {
    store(old_);
    std::vector<long> calls;
    if (run_killed_at(
            0, [this] { GetParam().save(new_, target()); }, calls) != End::done) {
        GTEST_SKIP() << "this process may not trace another one";
    }
    ASSERT_FALSE(calls.empty());
    const auto rename = std::find_if(calls.begin(), calls.end(), renames);
    ASSERT_NE(rename, calls.end());
    EXPECT_EQ(std::find_if(rename + 1, calls.end(), renames), calls.end());
    const auto flush = std::find(calls.begin(), rename, SYS_fsync);
    ASSERT_NE(flush, rename);
    EXPECT_EQ(std::find(flush, rename, SYS_write), rename) << "nothing is written after the flush";
    EXPECT_NE(std::find(rename, calls.end(), SYS_fsync), calls.end()) << "the folder is flushed as well";
}

INSTANTIATE_TEST_SUITE_P(each_form, save_killed, testing::ValuesIn(saved_forms()),
                         [](const auto& form) { return form.param.name; });

#endif
