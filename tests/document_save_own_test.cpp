#include "document/document.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

// Which file a save replaces, and when it refuses to.

using namespace bk_parser;

namespace {

constexpr const char* version = "#Brellwick_Serial_Version 1.2\n";

SaveOptions anew(Form form = Form::text) {
    SaveOptions options;
    options.keep_layout = false;
    options.form = form;
    options.key = "key";
    return options;
}

LoadResult load_keyed(const std::string& path) {
    LoadOptions options;
    options.key = "key";
    return load(path, options);
}

bool is_unread(const SaveResult& result) {
    return !result.ok() && std::any_of(result.losses.begin(), result.losses.end(), [](const Problem& loss) {
        return loss.code == "not-read-whole" && !loss.message.empty();
    });
}

/// Goes to another folder until the end.
class OtherFolder {
public:
    explicit OtherFolder(const std::string& folder) : old_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~OtherFolder() { std::filesystem::current_path(old_); }
    OtherFolder(const OtherFolder&) = delete;
    OtherFolder& operator=(const OtherFolder&) = delete;

private:
    std::filesystem::path old_;
};

} // namespace

TEST(document_save_memory, a_document_from_memory_holds_its_includes_and_is_not_one_of_them) {
    const ScratchFolder folder;
    folder.write("one", "q 1 // about\n");
    folder.write("two", "r 1\n");
    LoadOptions options;
    options.search = {folder.path()};
    LoadResult parsed = parse(std::string(version) + "a 5\n#include \"one\"\n#include \"two\"\n", options);
    ASSERT_TRUE(parsed.ok());
    const SaveResult refused = save(parsed.document, folder.path("one"));
    EXPECT_NE(refused.reason.find("is included by the document"), std::string::npos) << refused.reason;
    EXPECT_EQ(folder.read("one"), "q 1 // about\n");
    const SaveResult result = save(parsed.document, folder.path("out"));
    ASSERT_TRUE(result.ok()) << result.reason;
    const auto again = load(folder.path("out"));
    EXPECT_EQ(content_difference(parsed.document.root(), again.document.root()), "");
    EXPECT_EQ(folder.read("out").find("#include"), std::string::npos);
    ASSERT_TRUE(set(parsed.document.root(), "z", 1));
    ASSERT_TRUE(save(parsed.document).ok());
    const auto last = load(folder.path("out"));
    EXPECT_EQ(content_difference(parsed.document.root(), last.document.root()), "");
}

TEST(document_save_own, a_path_that_was_relative_stays_the_file_that_was_loaded) {
    const ScratchFolder folder;
    folder.write("other/file", "zzz 99\n");
    for (const bool keeps : {true, false}) {
        folder.write("file", std::string(version) + "a 1\n");
        LoadResult loaded;
        {
            const OtherFolder here(folder.path());
            loaded = load("file");
        }
        ASSERT_TRUE(set(loaded.document.root(), "a", 2));
        const OtherFolder here(folder.path("other"));
        SaveOptions options;
        options.keep_layout = keeps;
        const SaveResult result = save(loaded.document, {}, options);
        ASSERT_TRUE(result.ok()) << result.reason;
        EXPECT_NE(folder.read("file").find("a 2"), std::string::npos);
        EXPECT_EQ(folder.read("other/file"), "zzz 99\n");
    }
}

TEST(document_save_own, a_file_that_changed_on_the_disk_is_refused_in_every_form) {
    for (const Form form : {Form::text, Form::enciphered, Form::binary, Form::archive}) {
        const ScratchFolder folder;
        const std::string path = folder.path("file");
        LoadResult first = parse("a 1\n");
        ASSERT_TRUE(save(first.document, path, anew(form)).ok());
        LoadResult loaded = load_keyed(path);
        LoadResult other = load_keyed(path);
        ASSERT_TRUE(set(other.document.root(), "a", 77));
        ASSERT_TRUE(save(other.document, path, anew(form)).ok());
        ASSERT_TRUE(set(loaded.document.root(), "b", 1));
        const std::string before = folder.read("file");
        for (const Form to : {form, Form::text, Form::binary}) {
            const SaveResult result = save(loaded.document, path, anew(to));
            EXPECT_NE(result.reason.find("has changed on the disk"), std::string::npos) << result.reason;
        }
        EXPECT_EQ(folder.read("file"), before);
        EXPECT_TRUE(save(loaded.document, folder.path("elsewhere"), anew(form)).ok());
    }
}

TEST(document_save_own, a_stored_form_that_is_cut_off_is_not_replaced_by_what_was_read_of_it) {
    for (const Form form : {Form::binary, Form::archive}) {
        const ScratchFolder folder;
        const std::string path = folder.path("file");
        LoadResult first = parse("a 1\nb \"hello world\"\ng { c 3 d 4 }\n");
        ASSERT_TRUE(save(first.document, path, anew(form)).ok());
        const std::string whole = folder.read("file");
        const std::string cut = whole.substr(0, whole.size() - 6);
        folder.write("file", cut);
        LoadResult loaded = load_keyed(path);
        ASSERT_FALSE(loaded.ok());
        SaveOptions lossy;
        lossy.lossy = true;
        EXPECT_TRUE(is_unread(save(loaded.document)));
        EXPECT_TRUE(is_unread(save(loaded.document, {}, lossy)));
        EXPECT_TRUE(is_unread(save(loaded.document, folder.path("new"))));
        EXPECT_EQ(folder.read("file"), cut);
        EXPECT_TRUE(save(loaded.document, folder.path("new"), lossy).ok());
    }
}

TEST(document_save_own, text_behind_a_brace_that_closes_nothing_is_not_lost) {
    const ScratchFolder folder;
    const std::string text = std::string(version) + "a 1\n}\nb 2\n";
    const std::string path = folder.write("file", text);
    LoadResult loaded = load(path);
    ASSERT_TRUE(set(loaded.document.root(), "a", 5));
    EXPECT_TRUE(is_unread(save(loaded.document, {}, anew())));
    EXPECT_EQ(folder.read("file"), text);
    const SaveResult result = save(loaded.document); // a kept layout keeps it
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder.read("file"), std::string(version) + "a 5\n}\nb 2\n");
}

TEST(document_save_own, an_include_that_is_missing_is_kept_by_its_directive_alone) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", std::string(version) + "a 1\n#include \"missing\"\nb 2\n");
    LoadResult loaded = load(path);
    ASSERT_TRUE(set(loaded.document.root(), "a", 5));
    EXPECT_TRUE(is_unread(save(loaded.document, {}, anew())));
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    const std::string after = std::string(version) + "a 5\n#include \"missing\"\nb 2\n";
    EXPECT_EQ(folder.read("file"), after);
    EXPECT_TRUE(is_unread(save(loaded.document, folder.path("new"), anew())));
    folder.write("missing", "surprise 1\n");
    ASSERT_TRUE(set(loaded.document.root(), "a", 6));
    const SaveResult refused = save(loaded.document);
    EXPECT_NE(refused.reason.find("missing: would be included"), std::string::npos) << refused.reason;
    EXPECT_EQ(folder.read("file"), after);
}

TEST(document_save_own, an_include_that_was_missing_and_is_there_at_the_new_place_is_refused) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", std::string(version) + "a 1\n#include \"missing\"\n");
    folder.write("other/missing", "surprise 1\n");
    LoadResult loaded = load(path);
    const SaveResult refused = save(loaded.document, folder.path("other/file"));
    EXPECT_NE(refused.reason.find("missing: would be included"), std::string::npos) << refused.reason;
    EXPECT_FALSE(folder.exists("other/file"));
}
