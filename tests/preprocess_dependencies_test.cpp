#include "tests/support/document_folder.h"
#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

using Paths = std::vector<std::string>;

Paths sorted(Paths paths) {
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace

TEST(preprocess_dependencies, a_file_without_includes_has_none) {
    const DocumentFolder folder;
    EXPECT_EQ(folder.read_text("a 1\n").dependencies, Paths{});
}

TEST(preprocess_dependencies, every_included_file_is_listed_by_its_absolute_path) {
    const DocumentFolder folder;
    folder.write("x.bkd", "#include \"deep/y.bkd\"\n");
    folder.write("deep/y.bkd", "b 2\n");
    folder.write("z.bkd", "");
    EXPECT_EQ(sorted(folder.read_text("#include \"x.bkd\"\n#include \"z.bkd\"\n").dependencies),
              sorted({folder.full_path("x.bkd"), folder.full_path("deep/y.bkd"), folder.full_path("z.bkd")}));
}

TEST(preprocess_dependencies, a_file_included_twice_is_listed_once) {
    const DocumentFolder folder;
    folder.write("x.bkd", "a 1\n");
    const Reading reading = folder.read_text("#include \"x.bkd\"#include \"x.bkd\"");
    EXPECT_EQ(reading.tree, " a 1 a 1");
    EXPECT_EQ(reading.dependencies, Paths{folder.full_path("x.bkd")});
}

TEST(preprocess_dependencies, paths_are_without_steps) {
    const DocumentFolder folder;
    folder.make_folder("sub");
    folder.write("x.bkd", "a 1\n");
    EXPECT_EQ(folder.read_text("#include \"sub/../././x.bkd\"").dependencies,
              Paths{folder.full_path("x.bkd")});
}

TEST(preprocess_dependencies, relative_names_are_listed_absolute) {
    const DocumentFolder folder;
    folder.write("x.bkd", "a 1\n");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    ParserFile file(core("main.bkd"));
    const Reading reading = DocumentFolder::read_into(file, "");
    std::filesystem::current_path(before);
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.dependencies, Paths{folder.full_path("x.bkd")});
}

TEST(preprocess_dependencies, the_top_level_file_is_never_listed_even_when_a_search_path_led_to_it) {
    const DocumentFolder folder;
    folder.write("top.bkd", "#include \"x.bkd\"\n");
    folder.write("x.bkd", "a 1\n");
    ParserFile file(CoreString{});
    file.set_search_paths({core(folder.path())});
    EXPECT_EQ(DocumentFolder::read_into(file, "top.bkd").dependencies, Paths{folder.full_path("x.bkd")});
}

TEST(preprocess_dependencies, each_read_starts_with_none) {
    const DocumentFolder folder;
    folder.write("x.bkd", "a 1\n");
    folder.write("one.bkd", "#include \"x.bkd\"\n");
    folder.write("two.bkd", "b 2\n");
    ParserFile file(CoreString{});
    file.set_search_paths({core(folder.path())});
    EXPECT_EQ(DocumentFolder::read_into(file, "one.bkd").dependencies.size(), 1u);
    EXPECT_EQ(DocumentFolder::read_into(file, "two.bkd").dependencies, Paths{});
    EXPECT_EQ(DocumentFolder::read_into(file, "one.bkd").dependencies.size(), 1u);
    EXPECT_EQ(DocumentFolder::read_into(file, "missing.bkd").dependencies, Paths{});
}

TEST(preprocess_dependencies, those_of_the_last_read_are_gone_when_the_next_one_begins) {
    class Watcher : public RecordingProgress {
    public:
        explicit Watcher(const ParserFile& file) : file_(file) {}
        void begin_task(const CoreString&, const float&, const bool&) override {
            counts.push_back(file_.get_dependencies().get_count());
        }
        std::vector<unsigned int> counts;

    private:
        const ParserFile& file_;
    };
    const DocumentFolder folder;
    folder.write("x.bkd", "a 1\n");
    folder.write("one.bkd", "#include \"x.bkd\"\n");
    ParserFile file(CoreString{});
    file.set_search_paths({core(folder.path())});
    ASSERT_TRUE(file.read("one.bkd", "", nullptr));
    ASSERT_EQ(file.get_dependencies().get_count(), 1u);
    Watcher watcher(file);
    ASSERT_TRUE(file.read("one.bkd", "", &watcher));
    ASSERT_FALSE(watcher.counts.empty());
    EXPECT_EQ(watcher.counts.front(), 0u);
}

TEST(preprocess_dependencies, files_found_before_a_failure_are_listed) {
    const DocumentFolder folder;
    folder.write("x.bkd", "a 1\n");
    const Reading reading = folder.read_text("#include \"x.bkd\"\n#include \"missing.bkd\"\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.dependencies, Paths{folder.full_path("x.bkd")});
}
