#include "tests/support/loaded_document.h"
#include "tests/support/recording_log.h"
#include "tests/support/stored_forms.h"

#include <gtest/gtest.h>

#include <utility>

using bk_parser::Document;
using bk_parser::Form;
using bk_parser::load;
using bk_parser::LoadOptions;
using bk_parser::LoadResult;

namespace {

constexpr std::string_view scene = "light { power 60.5 name \"a lamp\" } shot \"010\" camera 1 2 3";

LoadOptions with_key(const char* key) {
    LoadOptions options;
    options.key = key;
    return options;
}

void expect_scene(const LoadResult& result, Form form) {
    EXPECT_EQ(told(result), Lines{});
    EXPECT_TRUE(result.ok());
    EXPECT_FALSE(result.cancelled);
    EXPECT_EQ(result.document.form(), form);
    EXPECT_EQ(tree_of(result), " light { power 60.5 name \"a lamp\" } shot \"010\" camera 1 2 3");
}

} // namespace

TEST(document_load, every_form_is_found_from_the_first_bytes) {
    const ScratchFolder folder;
    StoredForms forms(scene);
    expect_scene(load(folder.write("a", forms.text())), Form::text);
    expect_scene(load(folder.write("b", forms.binary())), Form::binary);
    expect_scene(load(folder.write("c", forms.archive())), Form::archive);
    expect_scene(load(folder.write("d", forms.enciphered("lantern")), with_key("lantern")), Form::enciphered);
}

TEST(document_load, every_form_is_parsed_from_memory) {
    StoredForms forms(scene);
    expect_scene(bk_parser::parse(scene), Form::text);
    expect_scene(bk_parser::parse(forms.binary()), Form::binary);
    expect_scene(bk_parser::parse(forms.archive()), Form::archive);
    expect_scene(bk_parser::parse(forms.enciphered("lantern"), with_key("lantern")), Form::enciphered);
}

TEST(document_load, a_document_knows_its_file) {
    const ScratchFolder folder;
    const std::filesystem::path path = folder.write("main.bkd", scene);
    EXPECT_EQ(load(path).document.path(), path);
    EXPECT_TRUE(bk_parser::parse(scene).document.path().empty());
}

TEST(document_load, an_empty_file_is_an_empty_document_without_problems) {
    const ScratchFolder folder;
    EXPECT_TRUE(load(folder.write("main.bkd", "")).ok());
    EXPECT_TRUE(bk_parser::parse("").ok());
    EXPECT_TRUE(bk_parser::parse("// nothing but a comment").ok());
}

TEST(document_load, a_text_has_no_problems_that_the_application_reads_without_faults) {
    const LoadResult result =
        bk_parser::parse("#Brellwick_Serial_Version 1.2\nobject<mesh> \"a\"\n{\n  x[2] 1 2\n}\n"
                         "call(1, 2)\n#use yes\nnone <empty>\n");
    EXPECT_EQ(told(result), Lines{});
}

TEST(document_load, text_of_the_first_version_has_no_escapes) {
    const LoadResult first = bk_parser::parse("a \"x\\n\"");
    EXPECT_EQ(first.document.root().get_entry(0)->get_string(0), CoreString("x\\n"));
    const LoadResult later = bk_parser::parse("#Brellwick_Serial_Version 1.2\na \"x\\n\"");
    EXPECT_EQ(later.document.root().get_entry(0)->get_string(0), CoreString("x\n"));
}

TEST(document_load, nothing_is_logged) {
    const ScratchFolder folder;
    folder.write("bad.bkd", "] b");
    folder.write("main.bkd",
                 "1 a 1 { b } = #include \"missing.bkd\"\n#include \"bad.bkd\"\nyes[2] 1 c ( d 1 (2)\n");
    StoredForms forms(scene);
    RecordingLog log;
    EXPECT_FALSE(load(folder.path("main.bkd")).ok());
    EXPECT_FALSE(load(folder.path("nothing")).ok());
    EXPECT_FALSE(bk_parser::parse(forms.binary().substr(0, 40)).ok());
    EXPECT_FALSE(bk_parser::parse(forms.archive().substr(0, 60)).ok());
    EXPECT_FALSE(bk_parser::parse(forms.enciphered("lantern")).ok());
    EXPECT_EQ(log.messages, std::vector<LoggedMessage>{});
}

TEST(document_load, a_document_that_was_moved_from_is_an_empty_one) {
    LoadResult result = bk_parser::parse(scene);
    ParserGroup* const root = &result.document.root();
    Document taken(std::move(result.document));
    EXPECT_EQ(&taken.root(), root);
    EXPECT_EQ(result.document.root().get_entry_count(), 0u); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(result.document.form(), Form::text);
    EXPECT_TRUE(result.document.path().empty());
    EXPECT_TRUE(result.document.dependencies().empty());
    result.document.root().add_entry(CoreString("a"), 0, 0);
    taken = std::move(result.document);
    EXPECT_EQ(taken.root().get_entry_count(), 1u);
}

TEST(document_load, the_version_entry_of_a_stored_form_is_no_part_of_the_tree) {
    StoredForms forms("a 1");
    // Must be first: it adds the entry to the tree that the other forms store.
    const std::string enciphered = forms.enciphered("k");
    EXPECT_EQ(tree_of(bk_parser::parse(enciphered, with_key("k"))), " a 1");
    EXPECT_EQ(tree_of(bk_parser::parse(forms.binary())), " a 1");
    EXPECT_EQ(tree_of(bk_parser::parse(forms.archive())), " a 1");
}

TEST(document_load, an_allowed_warning_is_not_told) {
    LoadOptions options;
    EXPECT_EQ(bk_parser::parse("a 1;", options).problems.size(), 1u);
    options.allow = {"text-after-number"};
    const LoadResult result = bk_parser::parse("a 1;", options);
    EXPECT_EQ(told(result), Lines{});
    EXPECT_TRUE(result.ok());
}

TEST(document_load, the_entries_have_the_lines_of_the_expanded_text) {
    const LoadResult result = bk_parser::parse("a 1 // joins\nb 2\nc 3\n");
    EXPECT_EQ(result.document.root().get_entry(1)->get_line(), 1u);
    EXPECT_EQ(result.document.root().get_entry(2)->get_line(), 2u);
}
