#include "tests/support/saved_file.h"

#include <memory>

// A comment moves with the entry that it is about, whatever edit is made.

using namespace bk_parser;

namespace {

class DocumentSaveComments : public SavedFile {};

using document_save_comments = DocumentSaveComments;

void insert_copy(ParserGroup& root, unsigned int position, unsigned int of, int value) {
    auto copy = std::make_unique<ParserEntry>(*root.get_entries()[of]);
    copy->set_int(value, 0);
    insert(root, position, std::move(copy));
}

} // namespace

TEST_F(document_save_comments, of_an_entry_that_moved_and_changed_stay_with_it) {
    LoadResult loaded = load_text("g { // about g\n  // about a\n  a 1 // one\n  b 2 // two\n} // end of g\n"
                                  "c 3 // three\nd 4\n");
    ASSERT_TRUE(set(loaded.document.root(), "g/b", 7));
    loaded.document.root().move_entry(0, 2);
    expect_saved(loaded.document,
                 "c 3 // three\nd 4\n"
                 "g { // about g\n  // about a\n  a 1 // one\n  b 7 // two\n} // end of g\n");
}

TEST_F(document_save_comments, of_several_entries_that_moved_and_changed_stay_with_them) {
    LoadResult loaded =
        load_text("a 1 // one\ng {\n  x 1 // in g\n  y 2 // in g, too\n}\nh {\n  // in h\n  z 3\n}\n");
    ParserGroup& root = loaded.document.root();
    ASSERT_TRUE(set(root, "a", 7));
    root.move_entry(0, 2);
    root.move_entry(0, 1);
    ASSERT_TRUE(set(root, "g/y", 8));
    ASSERT_TRUE(set(root, "h/z", 9));
    find(root, "g")->get_group(0)->move_entry(0, 1);
    expect_saved(loaded.document, "h {\n  // in h\n  z 9\n}\n"
                                  "g {\n  y 8 // in g, too\n  x 1 // in g\n}\na 7 // one\n");
}

TEST_F(document_save_comments, of_moved_entries_in_moved_groups_stay_with_them) {
    LoadResult loaded =
        load_text("a 1\nb 2\ng {\n\th {\n\t\tx 1 // one\n\t\ty 2 // two\n\t}\n\tz 3 // three\n\tw 4\n}\n");
    ParserGroup& root = loaded.document.root();
    ParserGroup& g = *find(root, "g")->get_group(0);
    ParserGroup& h = *find(root, "g/h")->get_group(0);
    ASSERT_TRUE(set(root, "g/h/x", 7));
    h.move_entry(0, 1);
    g.move_entry(0, 2);
    root.move_entry(2, 0);
    expect_saved(loaded.document,
                 "g {\n\tz 3 // three\n\tw 4\n\th {\n\t\ty 2 // two\n\t\tx 7 // one\n\t}\n}\na 1\nb 2\n");
}

TEST_F(document_save_comments, inside_of_an_entry_that_moves_on_a_line_stay_with_it) {
    LoadResult loaded = load_text("r { g { // about g\n    a 1\n  } b 2 c 3 }\n");
    find(loaded.document.root(), "r")->get_group(0)->move_entry(0, 2);
    expect_saved(loaded.document, "r { b 2 c 3 g { // about g\n    a 1\n  } }\n");
}

TEST_F(document_save_comments, behind_an_entry_that_moves_into_another_line_stay_behind_it) {
    LoadResult loaded = load_text("k 1 // about k\nz() p(2) // about p\n");
    loaded.document.root().move_entry(0, 1);
    expect_saved(loaded.document, "z() k 1 // about k\n p(2) // about p\n");
}

TEST_F(document_save_comments, beside_an_include_move_with_the_group_that_holds_both) {
    folder_.write("part", "q 1 // in part\n");
    LoadResult loaded = load_text("g {\n  // about the part\n  #include \"part\"\n  a 1\n}\nb 2\nc 3\n");
    ASSERT_TRUE(set(loaded.document.root(), "g/q", 5));
    ASSERT_TRUE(set(loaded.document.root(), "g/a", 6));
    loaded.document.root().move_entry(0, 2);
    expect_saved(loaded.document, "b 2\nc 3\ng {\n  // about the part\n  #include \"part\"\n  a 6\n}\n");
    EXPECT_EQ(folder_.read("part"), "q 5 // in part\n");
}

TEST_F(document_save_comments, of_the_value_before_stay_when_the_last_value_goes) {
    LoadResult loaded = load_text("a 1, // one\n  2 // two\nb 3\n");
    ASSERT_TRUE(remove(loaded.document.root(), "a@1"));
    expect_saved(loaded.document, "a 1 // one\nb 3\n");
    LoadResult leading = load_text("a 1 // one\n  , 2 // two\n  , 3 // three\nb 3\n");
    ASSERT_TRUE(remove(leading.document.root(), "a@2"));
    expect_saved(leading.document, "a 1 // one\n  , 2 // two\nb 3\n");
    LoadResult call = load_text("f(1, // one\n  2) // two\n");
    ASSERT_TRUE(remove(call.document.root(), "f@1"));
    expect_saved(call.document, "f(1 // one\n  ) // two\n");
    LoadResult two = load_text("g { a 1 // one\n    2 // two\n    3 } b 3\n");
    ASSERT_TRUE(remove(two.document.root(), "g/a@2"));
    ASSERT_TRUE(remove(two.document.root(), "g/a@1"));
    expect_saved(two.document, "g { a 1 // one\n    } b 3\n");
}

TEST_F(document_save_comments, of_the_value_behind_stay_when_one_before_it_goes) {
    LoadResult loaded = load_text("a 1 // one\n  // about two\n  2 // two\n  // about three\n  3\n");
    ASSERT_TRUE(remove(loaded.document.root(), "a@0"));
    expect_saved(loaded.document, "a\n  // about two\n  2 // two\n  // about three\n  3\n");
    LoadResult middle = load_text("a 1 // one\n  // about two\n  2, // two\n  // about three\n  3\n");
    ASSERT_TRUE(remove(middle.document.root(), "a@1"));
    expect_saved(middle.document, "a 1 // one\n  // about two\n  // about three\n  3\n");
}

TEST_F(document_save_comments, of_the_values_stay_when_the_group_behind_them_goes) {
    LoadResult loaded = load_text("g 1 // one\n{\n  b 1\n}\nc 1\n");
    ASSERT_TRUE(remove(loaded.document.root(), "g@1"));
    expect_saved(loaded.document, "g 1 // one\nc 1\n");
}

TEST_F(document_save_comments, stay_with_the_original_when_a_changed_copy_is_put_before_it) {
    LoadResult loaded = load_text("a 1 // about a\nb 2 // about b\n");
    insert_copy(loaded.document.root(), 0, 0, 7);
    expect_saved(loaded.document, "a 7\na 1 // about a\nb 2 // about b\n");
    LoadResult last = load_text("a 1 // about a\nb 2 // about b\n");
    insert_copy(last.document.root(), 1, 1, 7);
    insert_copy(last.document.root(), 0, 2, 8);
    expect_saved(last.document, "b 8\na 1 // about a\nb 7\nb 2 // about b\n");
    LoadResult same = load_text("a 1 // about a\nb 2 // about b\n");
    insert_copy(same.document.root(), 1, 0, 7);
    expect_saved(same.document, "a 1 // about a\na 7\nb 2 // about b\n");
}

TEST_F(document_save_comments, of_a_group_stay_with_the_original_when_a_changed_copy_is_put_before_it) {
    LoadResult loaded = load_text("g { // about g\n  h {\n    a 1 // about a\n  }\n}\nb 2 // about b\n");
    ParserGroup& root = loaded.document.root();
    auto copy = std::make_unique<ParserEntry>(*root.get_entries()[0]);
    ASSERT_TRUE(set(*copy->get_group(0), "h/a", 7));
    insert(root, 0, std::move(copy));
    expect_saved(loaded.document, "g {\n  h {\n    a 7\n  }\n}\n"
                                  "g { // about g\n  h {\n    a 1 // about a\n  }\n}\nb 2 // about b\n");
}

TEST_F(document_save_comments, inside_and_behind_an_entry_go_with_it_to_another_group) {
    LoadResult loaded =
        load_text("g {\n  a 1\n  s \"one\" {\n    x   0x1F // why\n    // inside\n    y 2\n  } // tail\n}\n"
                  "h {\n    deep {\n        z 1\n    }\n}\n");
    ASSERT_TRUE(move(loaded.document.root(), "g/s", "h/deep/s"));
    expect_saved(loaded.document,
                 "g {\n  a 1\n}\n"
                 "h {\n    deep {\n        z 1\n        s \"one\" {\n          x   0x1F // why\n"
                 "          // inside\n          y 2\n        } // tail\n    }\n}\n");
    ASSERT_TRUE(move(loaded.document.root(), "h/deep/s", "g/s"));
    expect_saved(loaded.document,
                 "g {\n  a 1\n  s \"one\" {\n    x   0x1F // why\n    // inside\n    y 2\n  } // tail\n}\n"
                 "h {\n    deep {\n        z 1\n    }\n}\n");
}

TEST_F(document_save_comments, inside_an_entry_are_kept_when_the_group_around_it_goes) {
    LoadResult loaded = load_text("a 1\ng {\n  s {\n    x 1 // why\n  }\n}\nb 2\n");
    ParserGroup& root = loaded.document.root();
    std::unique_ptr<ParserEntry> inner = take(*root.get_entry("g")->get_group(0), 0);
    ASSERT_NE(inner, nullptr);
    insert(root, 1, std::move(inner));
    ASSERT_TRUE(remove(root, "g"));
    expect_saved(loaded.document, "a 1\ns {\n  x 1 // why\n}\nb 2\n");
}

TEST_F(document_save_comments, go_with_an_entry_into_an_included_file_and_out_of_it) {
    folder_.write("part", "p {\n  q 1 // in the part\n}\n");
    LoadResult loaded = load_text("a {\n  b 0x02 // in the file\n  c 3\n}\n#include \"part\"\n");
    ASSERT_TRUE(move(loaded.document.root(), "a/b", "p/b"));
    expect_saved(loaded.document, "a {\n  c 3\n}\n#include \"part\"\n");
    EXPECT_EQ(folder_.read("part"), "p {\n  q 1 // in the part\n  b 0x02 // in the file\n}\n");
    ASSERT_TRUE(move(loaded.document.root(), "p/q", "a/q"));
    expect_saved(loaded.document, "a {\n  c 3\n  q 1 // in the part\n}\n#include \"part\"\n");
    EXPECT_EQ(folder_.read("part"), "p {\n  b 0x02 // in the file\n}\n");
}

TEST_F(document_save_comments, of_an_entry_that_moved_to_another_group_and_changed_are_not_kept) {
    LoadResult loaded = load_text("g {\n  a 1 // one\n  b 2\n}\nh {\n  c 3\n}\n");
    ASSERT_TRUE(move(loaded.document.root(), "g/a", "h/a"));
    ASSERT_TRUE(set(loaded.document.root(), "h/a", 7));
    expect_saved(loaded.document, "g {\n  b 2\n}\nh {\n  c 3\n  a 7\n}\n");
}

TEST_F(document_save_comments, stay_with_the_original_when_a_copy_goes_to_another_group) {
    LoadResult loaded = load_text("g {\n  a 1 // one\n}\nh {\n  c 3\n}\n");
    ParserGroup& root = loaded.document.root();
    insert(*root.get_entry("h")->get_group(0), 0,
           std::make_unique<ParserEntry>(*root.get_entry("g")->get_group(0)->get_entry("a")));
    expect_saved(loaded.document, "g {\n  a 1 // one\n}\nh {\n  a 1\n  c 3\n}\n");
}

TEST_F(document_save_comments, directly_above_an_entry_move_with_it_in_its_group) {
    const std::string text =
        "#Brellwick_Serial_Version 1.2\n// the file\n\n// about a\n// more about a\na 1\n// about b\n"
        "b 2 // behind b\n\n// about c\nc 3\n";
    LoadResult down = load_text(text);
    down.document.root().move_entry(0, 2);
    expect_saved(
        down.document,
        "#Brellwick_Serial_Version 1.2\n// the file\n\n// about b\nb 2 // behind b\n\n// about c\nc 3\n"
        "// about a\n// more about a\na 1\n");
    LoadResult up = load_text(text);
    up.document.root().move_entry(2, 0);
    expect_saved(
        up.document,
        "#Brellwick_Serial_Version 1.2\n// the file\n\n// about c\nc 3\n// about a\n// more about a\na 1\n"
        "// about b\nb 2 // behind b\n\n");
    LoadResult bare = load_text("// about a\na 1\n\nb 2\nc 3");
    bare.document.root().move_entry(2, 0);
    expect_saved(bare.document, "c 3\n// about a\na 1\n\nb 2");
    LoadResult last = load_text("a 1\r\nb 2\r\n// about c\r\nc 3");
    last.document.root().move_entry(2, 0);
    expect_saved(last.document, "// about c\r\nc 3\r\na 1\r\nb 2");
}

TEST_F(document_save_comments, directly_above_an_entry_go_with_it_to_another_group) {
    LoadResult loaded = load_text("g {\n  // of g\n\n  // about a\n  // and more\n  a 1 // one\n  b 2\n}\n"
                                  "h {\n    // about c\n    c 3\n}\n");
    ASSERT_TRUE(move(loaded.document.root(), "g/a", "h/a"));
    expect_saved(loaded.document, "g {\n  // of g\n\n  b 2\n}\nh {\n    // about c\n    c 3\n    // about a\n"
                                  "    // and more\n    a 1 // one\n}\n");
    ParserGroup& root = loaded.document.root();
    insert(*find_group(root, "g"), 0, take(*find_group(root, "h"), 0));
    expect_saved(loaded.document, "g {\n  // about c\n  c 3\n  // of g\n\n  b 2\n}\nh {\n    // about a\n"
                                  "    // and more\n    a 1 // one\n}\n");
}

TEST_F(document_save_comments, above_an_entry_stay_where_they_are_when_it_goes_into_a_line) {
    LoadResult loaded = load_text("// about a\na 1\ng { b 2 }\n");
    ASSERT_TRUE(move(loaded.document.root(), "a", "g/a"));
    expect_saved(loaded.document, "// about a\ng { b 2 a 1 }\n");
}

TEST_F(document_save_comments, of_another_indentation_above_an_entry_stay_where_they_are) {
    LoadResult loaded = load_text("a 1\n  // no one's\n// about b\nb 2\nc 3\n");
    loaded.document.root().move_entry(1, 2);
    expect_saved(loaded.document, "a 1\n  // no one's\nc 3\n// about b\nb 2\n");
}

TEST_F(document_save_comments, inside_a_word_are_not_lost_with_it) {
    const std::string text = "power 60.0// watts\ncolour 1 1 1\nname// of it\nx 2\n";
    const std::string reason = "' has a word that goes on after a comment or a directive";
    LoadResult loaded = load_text(text);
    ASSERT_TRUE(loaded.ok());
    ASSERT_TRUE(set(loaded.document.root(), "power", 70.0));
    expect_refused(loaded.document, "entry 'power" + reason);
    loaded = load_text(text);
    ASSERT_TRUE(bk_parser::remove(loaded.document.root(), "power@0"));
    expect_refused(loaded.document, "entry 'power" + reason);
    loaded = load_text(text);
    ASSERT_TRUE(rename(loaded.document.root(), "namex", "n"));
    expect_refused(loaded.document, "entry 'n" + reason);
    loaded = load_text(text);
    ASSERT_TRUE(set(loaded.document.root(), "power@1", 2));
    ASSERT_TRUE(set(loaded.document.root(), "namex", 3));
    expect_saved(loaded.document, "power 60.0// watts\ncolour 2 1 1\nname// of it\nx 3\n");
}
