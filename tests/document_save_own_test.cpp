#include "document/document.h"
#include "tests/support/cipher_reference.h"
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

/// While it lives, another folder is the current one.
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
    const SaveResult result = save(loaded.document); // a save that keeps the layout keeps it
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

TEST(document_save_own, the_path_stays_as_it_was_given) {
    const ScratchFolder folder;
    folder.write("file", "a 1 // one\n");
    const OtherFolder inside(folder.path());
    LoadResult loaded = load("file");
    ParserGroup& root = loaded.document.root();
    ASSERT_TRUE(set(root, "a", 2));
    ASSERT_TRUE(save(loaded.document).ok());
    EXPECT_EQ(loaded.document.path(), "file");
    ASSERT_TRUE(save(loaded.document, "other").ok());
    EXPECT_EQ(loaded.document.path(), "other");
    EXPECT_EQ(folder.read("other"), "a 2 // one\n");
    SaveOptions anew;
    anew.keep_layout = false;
    ASSERT_TRUE(save(loaded.document, {}, anew).ok());
    EXPECT_EQ(loaded.document.path(), "other");
    const OtherFolder elsewhere("/");
    ASSERT_TRUE(set(root, "a", 3));
    ASSERT_TRUE(save(loaded.document).ok());
    EXPECT_EQ(loaded.document.path(), "other");
    EXPECT_EQ(folder.read("other"), "#Brellwick_Serial_Version 1.2\n\na 3\n");
}

TEST(document_save_own, an_include_that_only_the_working_folder_has_is_a_loss_at_a_new_place) {
    const ScratchFolder folder;
    folder.write("part", "q 1\n");
    folder.write("documents/top", "#include \"part\"\na 1\n");
    std::filesystem::create_directory(folder.path("new"));
    const OtherFolder inside(folder.path());
    LoadResult loaded = load("documents/top");
    ASSERT_TRUE(loaded.ok());
    const SaveResult refused = save(loaded.document, "new/top");
    EXPECT_NE(refused.reason.find("an include would be found from the working folder alone"),
              std::string::npos)
        << refused.reason;
    ASSERT_EQ(refused.losses.size(), 1u);
    EXPECT_EQ(refused.losses[0].code, "include-not-carried");
    EXPECT_EQ(refused.losses[0].message, "the include 'part' is found from the working folder alone");
    EXPECT_FALSE(std::filesystem::exists("new/top"));
    SaveOptions lossy;
    lossy.lossy = true;
    EXPECT_EQ(save(loaded.document, "new/top", lossy).losses.size(), 1u);
    EXPECT_EQ(folder.read("new/top"), "#include \"part\"\na 1\n");
    LoadResult own = load("documents/top");
    ASSERT_TRUE(set(own.document.root(), "a", 2));
    EXPECT_TRUE(save(own.document).ok()) << "at its own place it is as it was";
    folder.write("new/part", "q 1\n");
    EXPECT_FALSE(save(own.document, "new/other").ok()) << "another file would be included";
    LoadOptions searching;
    searching.search = {"."};
    LoadResult found = load("documents/top", searching);
    std::filesystem::remove("new/part");
    EXPECT_TRUE(save(found.document, "new/third").ok());
}

TEST(document_save_own, an_empty_file_that_a_key_is_given_for_is_cut_off) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "");
    EXPECT_TRUE(load(path).ok()) << "an empty text is a document";
    LoadOptions options;
    options.key = "key";
    LoadResult loaded = load(path, options);
    ASSERT_EQ(loaded.problems.size(), 1u);
    EXPECT_EQ(loaded.problems[0].code, "cut-off");
    ASSERT_TRUE(set(loaded.document.root(), "a", 1));
    EXPECT_TRUE(is_unread(save(loaded.document)));
    EXPECT_EQ(folder.read("file"), "");
}

TEST(document_save_own, comments_of_an_enciphered_text_are_told_before_they_are_lost) {
    const ScratchFolder folder;
    SaveOptions enciphered;
    enciphered.form = Form::enciphered;
    enciphered.key = "key";
    LoadOptions options;
    options.key = "key";
    Document plain;
    ASSERT_TRUE(set(plain.root(), "a", 1));
    ASSERT_TRUE(save(plain, folder.path("plain"), enciphered).ok());
    LoadResult without = load(folder.path("plain"), options);
    ASSERT_TRUE(set(without.document.root(), "a", 2));
    EXPECT_TRUE(save(without.document).ok());
    for (const std::string text :
         {"// about a\na 1\n", "a 1 // one\nb 2", "a 1\nb 2 // last", "a 1\n// last"}) {
        const std::string path = folder.write("file", cipher_reference::enciphered_file(text, "key"));
        LoadResult loaded = load(path, options);
        ASSERT_TRUE(set(loaded.document.root(), "a", 2));
        const SaveResult refused = save(loaded.document);
        EXPECT_NE(refused.reason.find("the comments of the encrypted text would be lost"), std::string::npos)
            << refused.reason;
        ASSERT_EQ(refused.losses.size(), 1u) << text;
        EXPECT_EQ(refused.losses[0].code, "comments-lost");
        EXPECT_EQ(folder.read("file"), cipher_reference::enciphered_file(text, "key"));
        SaveOptions anew;
        anew.keep_layout = false;
        EXPECT_TRUE(save(loaded.document, {}, anew).ok());
        EXPECT_TRUE(save(loaded.document).ok()) << "they are not there any more";
    }
}

TEST(document_save_own, strings_of_any_bytes_in_a_binary_document_or_an_archive_are_no_problem) {
    const ScratchFolder folder;
    Document document;
    ASSERT_TRUE(set(document.root(), "a", std::string_view("y\xFF", 2)));
    SaveOptions options;
    options.form = Form::binary;
    ASSERT_TRUE(save(document, folder.path("binary"), options).ok());
    EXPECT_TRUE(load(folder.path("binary")).problems.empty());
    ASSERT_TRUE(set(document.root(), "a", std::string_view("x\0y\xFF", 4)));
    options.form = Form::archive;
    ASSERT_TRUE(save(document, folder.path("archive"), options).ok());
    const LoadResult again = load(folder.path("archive"));
    EXPECT_TRUE(again.problems.empty());
    EXPECT_EQ(get<std::string>(again.document.root(), "a"), std::string("x\0y\xFF", 4));
    options.form = Form::text;
    ASSERT_TRUE(save(document, folder.path("text"), options).ok());
    EXPECT_EQ(load(folder.path("text")).problems.size(), 2u) << "in a text they are";
}
