#include "document/document.h"
#include "tests/support/losses.h"
#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

// A save names what the form cannot carry before it writes anything, and then writes nothing.

using namespace bk_parser;

namespace {

class SaveLosses : public testing::TestWithParam<Loss> {};

using save_losses = SaveLosses;

SaveOptions options_for(Form form) {
    SaveOptions options;
    options.form = form;
    options.key = "key";
    return options;
}

std::string codes_of(const SaveResult& result) {
    std::string codes;
    for (const Problem& problem : result.losses) {
        codes += problem.code + " (" + problem.message + ") ";
    }
    return codes;
}

} // namespace

TEST_P(save_losses, are_named_and_nothing_is_written_unless_the_host_takes_them) {
    const ScratchFolder folder;
    Document document;
    GetParam().make(document.root());
    SaveOptions options = options_for(GetParam().form);
    const SaveResult refused = save(document, folder.path("file"), options);
    EXPECT_FALSE(refused.ok());
    EXPECT_NE(codes_of(refused).find(GetParam().code), std::string::npos)
        << codes_of(refused) << refused.reason;
    EXPECT_FALSE(folder.exists("file"));
    options.lossy = true;
    const SaveResult taken = save(document, folder.path("file"), options);
    EXPECT_TRUE(taken.ok()) << taken.reason;
    EXPECT_FALSE(taken.losses.empty());
    EXPECT_TRUE(folder.exists("file"));
}

/// A loss in a value gives the path of its entry.
TEST_P(save_losses, begin_with_a_path_that_finds_the_entry) {
    const ScratchFolder folder;
    Document document;
    GetParam().make(document.root());
    const SaveResult refused = save(document, folder.path("file"), options_for(GetParam().form));
    for (const Problem& loss : refused.losses) {
        const std::string path = loss.message.substr(0, loss.message.find(": "));
        EXPECT_NE(find(document.root(), path), nullptr) << loss.message;
    }
}

INSTANTIATE_TEST_SUITE_P(each_loss, save_losses, testing::ValuesIn(all_losses()),
                         [](const auto& loss) { return std::string(loss.param.name); });

TEST(save_losses_kept, a_loss_in_a_kept_layout_is_named) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "#Brellwick_Serial_Version 1.2\n// c\na \"x\" 1\n");
    LoadResult loaded = load(path);
    loaded.document.root().get_entry(0)->set_string("C:\\", 0);
    const SaveResult result = save(loaded.document);
    EXPECT_FALSE(result.ok());
    EXPECT_NE(codes_of(result).find("string-ends-in-backslash (a: "), std::string::npos)
        << codes_of(result) << result.reason;
    EXPECT_EQ(folder.read("file"), "#Brellwick_Serial_Version 1.2\n// c\na \"x\" 1\n");
}

TEST(save_losses_kept, of_several_entries_of_one_name_the_right_one_is_named) {
    const ScratchFolder folder;
    const std::string path =
        folder.write("file", "shot \"010\" { a \"x\" 1 } shot \"020\" { a \"x\" 1 a \"x\" 1 }\n");
    LoadResult loaded = load(path);
    find(loaded.document.root(), "shot[\"020\"]/a[1]")->set_string("C:\\", 0);
    const SaveResult result = save(loaded.document);
    EXPECT_NE(codes_of(result).find("string-ends-in-backslash (shot[\"020\"]/a["), std::string::npos)
        << codes_of(result) << result.reason;
}

TEST(save_losses_kept, a_version_without_escapes_has_no_line_ends_in_strings) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "a \"x\"\n");
    LoadResult loaded = load(path);
    loaded.document.root().get_entry(0)->set_string("two\nlines", 0);
    const SaveResult result = save(loaded.document);
    EXPECT_NE(codes_of(result).find("string-needs-escapes"), std::string::npos)
        << codes_of(result) << result.reason;
    EXPECT_EQ(folder.read("file"), "a \"x\"\n");
}

TEST(save_losses_kept, a_version_without_escapes_has_no_quotes_in_strings) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "// c\na \"x\"\n");
    for (const char* place : {"a", "new", "group/new"}) {
        LoadResult loaded = load(path);
        set(loaded.document.root(), place, "19\"rack");
        const SaveResult result = save(loaded.document);
        EXPECT_FALSE(result.ok()) << place;
        EXPECT_NE(codes_of(result).find("string-needs-escapes"), std::string::npos)
            << codes_of(result) << result.reason;
        EXPECT_EQ(folder.read("file"), "// c\na \"x\"\n");
    }
}

TEST(save_losses_kept, quotes_in_a_version_without_escapes_are_saved_with_a_leave) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "// c\na \"x\"\n");
    LoadResult loaded = load(path);
    set(loaded.document.root(), "a", "19\"rack");
    SaveOptions options;
    options.lossy = true;
    const SaveResult result = save(loaded.document, {}, options);
    EXPECT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(result.losses.size(), 1U) << codes_of(result);
    EXPECT_EQ(folder.read("file"), "// c\na \"19\"rack\"\n");
    set(loaded.document.root(), "b", 1);
    EXPECT_TRUE(save(loaded.document).ok()) << "a string that stands in the file already stays";
}

TEST(save_losses_kept, a_string_whose_quotes_are_escaped_holds_no_include) {
    const ScratchFolder folder;
    for (const Form form : {Form::text, Form::enciphered}) {
        Document document;
        set(document.root(), "note", "see #include \"a.bkd\"");
        const SaveResult result = save(document, folder.path("file"), options_for(form));
        EXPECT_TRUE(result.ok()) << result.reason << codes_of(result);
        LoadOptions options;
        options.key = "key";
        const LoadResult again = load(folder.path("file"), options);
        EXPECT_TRUE(again.ok());
        EXPECT_EQ(content_difference(document.root(), again.document.root()), "");
    }
}

TEST(save_losses_kept, a_group_left_open_cannot_move_before_another_entry) {
    const ScratchFolder folder;
    const std::string before = "a 1\nb 1\ng {\n  c 1\n";
    const std::string path = folder.write("file", before);
    LoadResult loaded = load(path);
    ParserGroup& root = loaded.document.root();
    root.get_entry(2)->get_group(0)->add_entry("d", 0, 0)->add_int(2);
    root.move_entry(2, 0);
    const SaveResult result = save(loaded.document);
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(folder.read("file"), before);
}

TEST(save_forms, each_form_is_saved_and_becomes_the_documents_own) {
    for (const Form form : {Form::text, Form::enciphered, Form::binary, Form::archive}) {
        const ScratchFolder folder;
        Document document;
        document.root().set_text("a 1 2.5 \"x y\" g { b yes c 0x01FF00010000 } d <empty> e 1",
                                 CoreVersion(1.2), nullptr);
        const SaveResult result = save(document, folder.path("file"), options_for(form));
        ASSERT_TRUE(result.ok()) << result.reason << codes_of(result);
        EXPECT_EQ(document.form(), form);
        EXPECT_EQ(document.path().generic_string(), folder.path("file"));
        LoadOptions options;
        options.key = "key";
        const LoadResult again = load(folder.path("file"), options);
        EXPECT_EQ(again.document.form(), form);
        EXPECT_EQ(content_difference(document.root(), again.document.root()), "") << static_cast<int>(form);
        EXPECT_TRUE(save(document).ok()) << "in its own form, with its own key";
    }
}
