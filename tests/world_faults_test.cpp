#include "tests/support/counted_faults.h"
#include "tests/support/recording_log.h"
#include "tests/support/saved_forms.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

// Each call by which a document reaches the disk fails once. The disk must then have the complete old
// document or the complete new one, and no other file. A document that is read must be complete or refused.

namespace {

constexpr int more_than_any_needs = 200;

CoreString scene(const char* title) {
    CoreString text("scene { title \"");
    text += title;
    text += "\" data 0x01020306000000 } ";
    for (int i = 0; i < 500; ++i) {
        text += "object { number ";
        text += i;
        text += " material \"grey plastic\" } ";
    }
    return text;
}

class WorldFaults : public testing::TestWithParam<SavedForm> {
protected:
    WorldFaults() {
        fill(old_, "old");
        fill(new_, "new");
    }
    static void fill(ParserFile& file, const char* title) {
        file.get_root().set_text(scene(title), default_parser_serial_version, nullptr);
    }
    static void remove_version(ParserFile& file) {
        file.get_root().remove_entry("#Brellwick_Serial_Version");
    }
    CoreString target() const { return folder_.core_path("document"); }
    /// The document on the disk.
    std::string stored() const { return folder_.exists("document") ? folder_.read("document") : "nothing"; }
    std::string store(ParserFile& file) const {
        const RecordingLog log(0);
        GetParam().save(file, target());
        remove_version(file);
        return stored();
    }

    const ScratchFolder folder_;
    ParserFile old_{CoreString()};
    ParserFile new_{CoreString()};
};

using world_faults = WorldFaults;

} // namespace

TEST_P(world_faults, a_save_over_an_old_document_stores_the_new_one_or_leaves_the_old_one) {
    const std::string new_bytes = store(new_);
    const std::string old_bytes = store(old_);
    ASSERT_NE(new_bytes, old_bytes);
    int kept = 0;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        ASSERT_EQ(store(old_), old_bytes);
        RecordingLog log;
        bool is_stored = false;
        bool has_failed = false;
        {
            const FaultAtCall device(n);
            is_stored = GetParam().save(new_, target()) && log.is_empty();
            has_failed = device.has_failed();
        }
        remove_version(new_);
        if (stored() != new_bytes) {
            EXPECT_EQ(stored(), old_bytes) << "call " << n;
            EXPECT_FALSE(is_stored) << "call " << n;
            ++kept;
        }
        EXPECT_EQ(folder_.count(), 1u) << "call " << n << " left a file behind";
        if (!has_failed) {
            EXPECT_TRUE(is_stored);
            EXPECT_EQ(stored(), new_bytes);
            EXPECT_GT(kept, 4) << "creating, writing, flushing, closing and replacing";
            return;
        }
    }
}

TEST_P(world_faults, a_save_where_nothing_was_stores_the_document_or_leaves_nothing) {
    const std::string new_bytes = store(new_);
    for (int n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        std::filesystem::remove(folder_.path("document"));
        bool has_failed = false;
        {
            const RecordingLog log;
            const FaultAtCall device(n);
            GetParam().save(new_, target());
            has_failed = device.has_failed();
        }
        remove_version(new_);
        EXPECT_TRUE(stored() == new_bytes || stored() == "nothing") << "call " << n;
        EXPECT_EQ(folder_.count(), stored() == "nothing" ? 0u : 1u) << "call " << n;
        if (!has_failed) {
            EXPECT_EQ(stored(), new_bytes);
            return;
        }
    }
}

TEST_P(world_faults, a_load_gives_the_whole_document_or_says_that_it_does_not) {
    store(new_);
    const std::string whole = printed(new_.get_root());
    int refused = 0;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        const RecordingLog log;
        ParserGroup root("root");
        bool is_loaded = false;
        bool has_failed = false;
        {
            const FaultAtCall device(n);
            is_loaded = GetParam().load(root, target());
            has_failed = device.has_failed();
        }
        if (is_loaded) {
            EXPECT_TRUE(printed(root) == whole) << "call " << n;
        } else {
            ++refused;
            EXPECT_EQ(printed(root), "") << "call " << n;
        }
        if (!has_failed) {
            EXPECT_TRUE(is_loaded);
            EXPECT_GT(refused, 2) << "looking, opening and reading";
            return;
        }
    }
}

TEST_P(world_faults, reads_and_writes_that_move_a_few_bytes_each_change_nothing) {
    const std::string new_bytes = store(new_);
    const std::string whole = printed(new_.get_root());
    store(old_);
    const ShortCalls device(3);
    RecordingLog log;
    EXPECT_TRUE(GetParam().save(new_, target()));
    remove_version(new_);
    EXPECT_TRUE(stored() == new_bytes);
    ParserGroup root("root");
    EXPECT_TRUE(GetParam().load(root, target()));
    EXPECT_TRUE(printed(root) == whole);
    EXPECT_TRUE(log.is_empty());
}

INSTANTIATE_TEST_SUITE_P(each_form, world_faults, testing::ValuesIn(saved_forms()),
                         [](const auto& form) { return form.param.name; });

TEST(world_faults_of_includes, a_document_with_includes_is_read_whole_or_not_at_all) {
    const ScratchFolder folder;
    folder.write("one.bkd", "a 1\n#include \"two.bkd\"\nc 3\n");
    folder.write("two.bkd", "b 2 // a comment\n");
    folder.write("main.bkd",
                 "#Brellwick_Serial_Version 1.2\n#include \"one.bkd\"\n#include \"two.bkd\"\nd 4\n");
    int refused = 0;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        RecordingLog log;
        ParserFile file(folder.core_path("main.bkd"));
        file.set_search_paths({folder.core_path("")});
        bool is_read = false;
        bool has_failed = false;
        {
            const FaultAtCall device(n);
            is_read = file.read("", "", nullptr);
            has_failed = device.has_failed();
        }
        EXPECT_EQ(printed(file.get_root()), is_read ? " a 1 b 2 c 3 b 2 d 4" : "") << "call " << n;
        EXPECT_EQ(file.get_serial_version().get_value(), is_read ? 1.2 : 0.0) << "call " << n;
        EXPECT_EQ(log.is_empty(), is_read) << "call " << n;
        refused += is_read ? 0 : 1;
        if (!has_failed) {
            EXPECT_TRUE(is_read);
            EXPECT_GT(refused, 11);
            return;
        }
    }
}
