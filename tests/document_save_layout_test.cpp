#include "tests/support/saved_file.h"

#include <memory>

// Edits that might lose what is around an entry, or give it to another entry.

using namespace bk_parser;

namespace {

const std::string version = "#Brellwick_Serial_Version 1.2\n";

class DocumentSaveLayout : public SavedFile {};

using document_save_layout = DocumentSaveLayout;

} // namespace

TEST_F(document_save_layout, an_include_that_is_missing_does_not_vanish_from_an_entry_that_is_printed_anew) {
    LoadResult loaded = load_text(version + "g {\n#include \"missing\"\n a 1\n}\nb 1\nc 2\n");
    ASSERT_TRUE(move(loaded.document.root(), "g", "h/g"));
    expect_refused(loaded.document, "entry 'g' holds an include that was not found");
    LoadResult moved = load_text(version + "g {\n#include \"missing\"\n a 1\n}\nb 1\nc 2\n");
    moved.document.root().move_entry(0, 2);
    ASSERT_TRUE(set(moved.document.root(), "g/a", 2));
    expect_saved(moved.document, version + "b 1\nc 2\ng {\n#include \"missing\"\n a 2\n}\n");
    LoadResult values = load_text(version + "g 1\n#include \"missing\"\n 3 // c\nb 2\n");
    ASSERT_TRUE(remove(values.document.root(), "g@1"));
    expect_refused(values.document, "entry 'g' holds an include that was not found");
}

TEST_F(document_save_layout, includes_that_were_not_followed_stay_and_are_not_read) {
    folder_.write("part", "q 1\n");
    const std::string text = version + "#include \"part\"\na 1 // one\ng {\n#include \"part\"\n b 2\n}\n";
    LoadOptions options;
    options.follow_includes = false;
    LoadResult loaded = load(folder_.write("file", text), options);
    ASSERT_TRUE(set(loaded.document.root(), "a", 5));
    ASSERT_TRUE(set(loaded.document.root(), "g/b", 6));
    const std::string changed = version + "#include \"part\"\na 5 // one\ng {\n#include \"part\"\n b 6\n}\n";
    ASSERT_TRUE(save(loaded.document).ok()) << save(loaded.document).reason;
    EXPECT_EQ(folder_.read("file"), changed);
    ASSERT_TRUE(set(loaded.document.root(), "a", 7)); // after a save as well
    ASSERT_TRUE(save(loaded.document).ok());
    ASSERT_TRUE(move(loaded.document.root(), "g", "h/g"));
    expect_refused(loaded.document, "entry 'g' holds an include that was not followed");
    EXPECT_EQ(folder_.read("part"), "q 1\n");
}

TEST_F(document_save_layout, a_group_with_the_only_include_of_a_file_can_be_removed) {
    folder_.write("part", "q 1\n");
    LoadResult loaded = load_text(version + "g {\n#include \"part\"\n}\ny 2\n");
    ASSERT_TRUE(remove(loaded.document.root(), "g"));
    expect_saved(loaded.document, version + "y 2\n");
    EXPECT_EQ(folder_.read("part"), "q 1\n");
    ASSERT_TRUE(set(loaded.document.root(), "y", 3));
    expect_saved(loaded.document, version + "y 3\n");
}

TEST_F(document_save_layout,
       a_group_that_is_printed_elsewhere_does_not_take_the_only_include_of_a_file_along) {
    folder_.write("part", "// about q\nq 1\n");
    LoadResult loaded = load_text(version + "g {\n#include \"part\"\n}\ny 2\n");
    ASSERT_TRUE(move(loaded.document.root(), "g", "h/g"));
    expect_refused(loaded.document, "would not be included by");
}

TEST_F(document_save_layout, after_a_save_with_losses_the_layout_of_what_was_written_is_kept) {
    LoadResult loaded = load_text(version + "// top\na 1 // one\ng {\n  b 2 // two\n}\n");
    ParserGroup& root = loaded.document.root();
    auto raw = std::make_unique<ParserEntry>(CoreString("z"), ParserEntry::TYPE_RAW_TEXT, 0, 0);
    raw->add_string(CoreString("hello 3"));
    insert(root, 0, std::move(raw));
    find(root, "g")->get_group(0)->add_entry("c", 0, 0)->add_char('A');
    SaveOptions lossy;
    lossy.lossy = true;
    ASSERT_TRUE(save(loaded.document, {}, lossy).ok());
    const std::string end = "a 1 // one\ng {\n  b 2 // two\n  c 65\n}\n";
    EXPECT_EQ(folder_.read("file"), version + "// top\nhello 3\n" + end);
    ASSERT_TRUE(set(root, "a", 7));
    const SaveResult refused = save(loaded.document);
    EXPECT_FALSE(refused.ok());
    EXPECT_EQ(refused.losses.size(), 2u) << "the tree still holds them";
    const SaveResult again = save(loaded.document, {}, lossy);
    ASSERT_TRUE(again.ok()) << again.reason;
    const std::string changed = "a 7 // one\ng {\n  b 2 // two\n  c 65\n}\n";
    EXPECT_EQ(folder_.read("file"), version + "// top\nhello 3\n" + changed);
    ASSERT_TRUE(remove(root, "z"));
    ASSERT_TRUE(set(root, "g/c", 300)); // the type changes to int
    expect_saved(loaded.document, version + "// top\na 7 // one\ng {\n  b 2 // two\n  c 300\n}\n");
}

TEST_F(document_save_layout, after_a_save_anew_with_losses_the_layout_of_what_was_written_is_kept) {
    LoadResult loaded = load_text(version + "a 1\ng {\n  b 2\n}\n");
    ParserGroup& root = loaded.document.root();
    root.add_entry("c", 0, 0)->add_char('A');
    SaveOptions lossy;
    lossy.lossy = true;
    lossy.keep_layout = false;
    ASSERT_TRUE(save(loaded.document, {}, lossy).ok());
    const std::string once = folder_.read("file");
    ASSERT_TRUE(set(root, "c", 300));
    std::string expected = once;
    expected.replace(expected.find("65"), 2, "300");
    expect_saved(loaded.document, expected);
}

TEST_F(document_save_layout, an_entry_of_another_document_does_not_take_the_comments_of_a_removed_one) {
    LoadResult loaded = load_text(version + "a 1 // about a\nb 2 // about b\n");
    LoadResult other = parse("zz 9\n");
    auto entry = take(other.document.root(), 0u);
    ASSERT_NE(entry, nullptr);
    ASSERT_TRUE(remove(loaded.document.root(), "a"));
    insert(loaded.document.root(), 0, std::move(entry));
    expect_saved(loaded.document, version + "zz 9\nb 2 // about b\n");
}

TEST_F(document_save_layout, an_entry_of_another_document_with_the_values_of_a_removed_one_is_no_rename) {
    for (const std::string body : {"1", "{\n  x 1\n}", "<empty>"}) {
        LoadResult loaded = load_text("a " + body + " // about a\nb 2 // about b\n");
        LoadResult other = parse("zz " + body + "\n");
        auto entry = take(other.document.root(), 0u);
        ASSERT_TRUE(remove(loaded.document.root(), "a"));
        insert(loaded.document.root(), 0, std::move(entry));
        expect_saved(loaded.document, "zz " + body + "\nb 2 // about b\n");
    }
}

TEST_F(document_save_layout, an_entry_that_is_renamed_again_and_again_keeps_its_comments) {
    LoadResult loaded = load_text("a 1 // about it\n");
    ParserGroup& root = loaded.document.root();
    ASSERT_TRUE(rename(root, "a", "b"));
    ASSERT_TRUE(rename(root, "b", "c"));
    expect_saved(loaded.document, "c 1 // about it\n");
    ASSERT_TRUE(rename(root, "c", "a"));
    expect_saved(loaded.document, "a 1 // about it\n");
    SaveOptions anew;
    anew.keep_layout = false;
    ASSERT_TRUE(rename(root, "a", "d"));
    ASSERT_TRUE(save(loaded.document, {}, anew).ok());
    std::string text = folder_.read("file");
    text.replace(text.find("d 1"), 3, "e 1");
    ASSERT_TRUE(rename(root, "d", "e"));
    auto copy = std::make_unique<ParserEntry>(*root.get_entries()[0]);
    ASSERT_TRUE(remove(root, "e"));
    insert(root, 0, std::move(copy));
    expect_saved(loaded.document, text);
}

TEST_F(document_save_layout, a_renamed_group_in_which_something_changed_keeps_its_comments) {
    LoadResult loaded = load_text(version + "g { // about g\n  a 1 // one\n  b 2 // two\n}\n");
    ASSERT_TRUE(rename(loaded.document.root(), "g", "h"));
    ASSERT_TRUE(set(loaded.document.root(), "h/b", 3));
    expect_saved(loaded.document, version + "h { // about g\n  a 1 // one\n  b 3 // two\n}\n");
}

TEST_F(document_save_layout, a_new_line_in_a_file_whose_lines_end_in_a_return_alone_is_refused) {
    LoadResult loaded = load_text("a 1\rb 2 // q\rg {\r  c 3\r}\r");
    ASSERT_TRUE(set(loaded.document.root(), "n", 1));
    expect_refused(loaded.document, "its lines end in a carriage return alone");
    LoadResult value = load_text("a 1\rb 2\r");
    ASSERT_TRUE(set(value.document.root(), "a", 5));
    expect_saved(value.document, "a 5\rb 2\r");
}

TEST_F(document_save_layout, a_byte_order_mark_stays_when_the_first_entry_goes) {
    LoadResult loaded = load_text("\xEF\xBB\xBF"
                                  "a 1\nb 2\n");
    ASSERT_TRUE(remove(loaded.document.root(), "a"));
    expect_saved(loaded.document, "\xEF\xBB\xBF"
                                  "b 2\n");
}

TEST_F(document_save_layout, long_lines_are_not_searched_for_their_ends_at_each_entry) {
    // The time limit of the test ends a save that is quadratic in the length of the line. With 400,000
    // entries, such a save would take an hour.
    std::string text = version;
    constexpr int count = 400000;
    for (int i = 0; i < count; ++i) {
        text += "a 1 ";
    }
    LoadOptions options;
    options.limits = ParserLimits();
    LoadResult loaded = load(folder_.write("file", text + "\n"), options);
    for (ParserEntry* const entry : loaded.document.root().get_entries()) {
        entry->set_int(7, 0);
    }
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder_.read("file").find('1', version.size()), std::string::npos);
}
