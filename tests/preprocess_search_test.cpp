#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using Messages = std::vector<std::string>;

CoreVector<CoreString> search_paths(const std::vector<std::string>& paths) {
    CoreVector<CoreString> result;
    for (const std::string& path : paths) {
        result.add(core(path));
    }
    return result;
}

} // namespace

TEST(preprocess_search, the_first_folder_that_has_the_file_gives_it) {
    const DocumentFolder folder;
    folder.write("one/x.bkd", "from 1\n");
    folder.write("two/x.bkd", "from 2\n");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    EXPECT_EQ(folder.read_document("main.bkd", {"one", "two"}).tree, " from 1");
    EXPECT_EQ(folder.read_document("main.bkd", {"two", "one"}).tree, " from 2");
}

TEST(preprocess_search, folders_without_the_file_are_passed_over) {
    const DocumentFolder folder;
    folder.make_folder("empty");
    folder.write("two/x.bkd", "from 2\n");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    EXPECT_EQ(folder.read_document("main.bkd", {"missing", "empty", "two"}).tree, " from 2");
}

TEST(preprocess_search, a_search_path_may_end_in_a_slash) {
    const DocumentFolder folder;
    folder.write("one/x.bkd", "from 1\n");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    const Reading reading = folder.read_document("main.bkd", {"one/"});
    EXPECT_EQ(reading.tree, " from 1");
    EXPECT_EQ(reading.dependencies, Messages{folder.full_path("one/x.bkd")});
}

TEST(preprocess_search, a_name_may_have_folders_in_it) {
    const DocumentFolder folder;
    folder.write("one/deep/er/x.bkd", "from 1\n");
    folder.write("main.bkd", "#include \"deep/er/x.bkd\"\n");
    EXPECT_EQ(folder.read_document("main.bkd", {"one"}).tree, " from 1");
}

TEST(preprocess_search, an_absolute_name_is_found_as_it_stands) {
    const DocumentFolder folder;
    const std::string path = folder.write("one/x.bkd", "from 1\n");
    folder.write("main.bkd", "#include \"" + path + "\"\n");
    EXPECT_EQ(folder.read_document("main.bkd", {}).tree, " from 1");
    EXPECT_EQ(folder.read_document("main.bkd", {"two"}).tree, " from 1");
}

TEST(preprocess_search, a_relative_name_is_last_looked_for_in_the_working_folder) {
    const DocumentFolder folder;
    folder.write("work/x.bkd", "from 1\n");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path("work"));
    EXPECT_EQ(folder.read_document("main.bkd", {"missing"}).tree, " from 1");
    folder.write("first/x.bkd", "from 2\n");
    EXPECT_EQ(folder.read_document("main.bkd", {"first"}).tree, " from 2");
    std::filesystem::current_path(before);
}

TEST(preprocess_search, an_empty_search_path_tries_the_name_as_it_stands) {
    const DocumentFolder folder;
    const std::string path = folder.write("x.bkd", "from 1\n");
    ParserFile file(CoreString{});
    file.set_search_paths(search_paths({"", folder.path("missing")}));
    EXPECT_EQ(DocumentFolder::read_into(file, path).tree, " from 1");
}

TEST(preprocess_search, the_top_level_file_is_found_along_the_search_paths_too) {
    const DocumentFolder folder;
    folder.write("one/top.bkd", "from 1\n");
    ParserFile file(CoreString{});
    file.set_search_paths(search_paths({folder.path("missing"), folder.path("one")}));
    const Reading reading = DocumentFolder::read_into(file, "top.bkd");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.tree, " from 1");
    EXPECT_EQ(plain(file.get_filename()), "top.bkd");
}

TEST(preprocess_search, an_include_is_never_looked_for_beside_the_file_that_names_it) {
    const DocumentFolder folder;
    folder.write("one/x.bkd", "from 1\n");
    folder.write("one/main.bkd", "#include \"x.bkd\"\n");
    const Reading reading = folder.read_document("one/main.bkd", {"two"});
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, not_found("x.bkd", 2));
}

TEST(preprocess_search, a_directory_is_not_a_file_and_the_search_goes_on) {
    const DocumentFolder folder;
    folder.make_folder("one/x.bkd");
    folder.write("two/x.bkd", "from 2\n");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    EXPECT_EQ(folder.read_document("main.bkd", {"one", "two"}).tree, " from 2");
}

TEST(preprocess_search, an_include_that_is_nowhere_but_a_directory_is_not_found) {
    const DocumentFolder folder;
    folder.make_folder("one/x.bkd");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    const Reading reading = folder.read_document("main.bkd", {"one"});
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, not_found("x.bkd", 2));
}

TEST(preprocess_search, an_include_without_a_name_is_not_found) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("#include \"\"\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, not_found("", 2));
}

TEST(preprocess_search, a_top_level_file_that_is_missing_is_reported_with_each_place_by_its_name) {
    ParserFile file(CoreString{});
    file.set_search_paths(search_paths({"/nowhere/one", "/nowhere/two/"}));
    const Reading reading = DocumentFolder::read_into(file, "missing.bkd");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.version, 0.0);
    EXPECT_EQ(reading.messages,
              (Messages{"File 'missing.bkd' not found.\n", "  Looked for:\n", "    - 'missing.bkd'\n",
                        "    - 'missing.bkd'\n", "    - 'missing.bkd'\n"}));
}

TEST(preprocess_search, without_search_paths_one_place_is_reported) {
    ParserFile file(CoreString{});
    EXPECT_EQ(DocumentFolder::read_into(file, "/nowhere/x").messages, not_found("/nowhere/x", 1));
}

TEST(preprocess_search, messages_are_composed_from_verbosity_2_on) {
    RecordingLog log(1);
    ParserFile file(CoreString{});
    EXPECT_FALSE(file.read("/nowhere/x", "", nullptr));
    EXPECT_TRUE(log.is_empty());
}

TEST(preprocess_search, a_file_without_a_name_is_not_found) {
    ParserFile file(CoreString{});
    EXPECT_EQ(DocumentFolder::read_into(file, "").messages, not_found("", 1));
}
