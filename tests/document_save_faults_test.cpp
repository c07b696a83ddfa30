#include "tests/support/saved_file.h"

// Words that were not read are still in the file. A save keeps them, or refuses with a reason.

using namespace bk_parser;

namespace {

class DocumentSaveFaults : public SavedFile {};

using document_save_faults = DocumentSaveFaults;

} // namespace

TEST_F(document_save_faults, words_behind_a_removed_entry_stay) {
    LoadResult loaded = load_text("z 0\na 1\n%% $$\nb 2\n");
    ASSERT_TRUE(remove(loaded.document.root(), "a"));
    expect_saved(loaded.document, "z 0\n%% $$\nb 2\n");
    LoadResult line = load_text("z 0\na 1 %% // c\nb 2\n");
    ASSERT_TRUE(remove(line.document.root(), "a"));
    expect_saved(line.document, "z 0\n%% // c\nb 2\n");
}

TEST_F(document_save_faults, words_behind_a_moved_entry_stay) {
    LoadResult loaded = load_text("z 0\na 1\n%% $$\nb 2\n");
    loaded.document.root().move_entry(1, 0);
    expect_saved(loaded.document, "a 1\n%% $$\nz 0\nb 2\n");
}

TEST_F(document_save_faults, words_before_a_new_entry_stay_before_it) {
    LoadResult loaded = load_text("f(1)\n5\nb 2\n");
    insert(loaded.document.root(), 1,
           std::make_unique<ParserEntry>(CoreString("n"), ParserEntry::TYPE_ENTRY, 0, 0))
        .add_int(1);
    expect_saved(loaded.document, "f(1)\n5\nn 1\nb 2\n");
}

TEST_F(document_save_faults, words_between_values_are_not_lost_with_a_value) {
    LoadResult loaded = load_text("z 0\na 1 %% 2 // c\nb 2\n");
    ASSERT_TRUE(remove(loaded.document.root(), "a@1"));
    expect_refused(loaded.document, "file:2");
    expect_refused(loaded.document, "the word '%%'");
    LoadResult first = load_text("a 1 %% 2\n");
    ASSERT_TRUE(remove(first.document.root(), "a@0"));
    expect_refused(first.document, "entry 'a'");
    LoadResult value = load_text("a 1 %% 2\n");
    ASSERT_TRUE(set(value.document.root(), "a@1", 7));
    expect_saved(value.document, "a 1 %% 7\n");
}

TEST_F(document_save_faults, a_value_behind_a_name_that_was_not_read_is_not_changed) {
    for (const std::string text :
         {"fullscreen true\nwidth 1024\n", "z 0\nfullscreen on // comment\nwidth 1024 768\n",
          "fullscreen 1\nwi$dth 1024\n", "fullscreen \"x\nwidth 1024\n",
          "fullscreen true\nwindow {\n  width 1024\n}\n"}) {
        LoadResult loaded = load_text(text);
        EXPECT_FALSE(loaded.ok());
        ASSERT_TRUE(remove(loaded.document.root(), "fullscreen@0"));
        loaded.document.root().get_entry("fullscreen")->add_bool(true);
        ASSERT_TRUE(set(loaded.document.root(), "width", 1024));
        expect_refused(loaded.document, "was not read, and what follows it would change with entry "
                                        "'fullscreen'; mend it and load the document again");
        SaveOptions anew;
        anew.keep_layout = false;
        EXPECT_EQ(save(loaded.document, {}, anew).losses.at(0).code, "not-read-whole");
        EXPECT_EQ(folder_.read("file"), text);
    }
    LoadResult inside = load_text("fullscreen true\nwindow {\n  width 1024\n}\n");
    ASSERT_TRUE(set(inside.document.root(), "fullscreen/width", 800));
    expect_saved(inside.document, "fullscreen true\nwindow {\n  width 800\n}\n");
}

TEST_F(document_save_faults, words_inside_of_a_removed_entry_are_not_lost_with_it) {
    LoadResult loaded = load_text("g {\n  a 1\n  %%\n}\nb 2\n");
    ASSERT_TRUE(remove(loaded.document.root(), "g"));
    expect_refused(loaded.document, "file:3");
    LoadResult refused_name = load_text("a 1\nyes[2] 5\nb 2\n");
    ASSERT_TRUE(remove(refused_name.document.root(), "a"));
    expect_saved(refused_name.document, "yes[2] 5\nb 2\n");
}

TEST_F(document_save_faults, words_inside_of_a_moved_entry_move_along) {
    LoadResult loaded = load_text("g {\n  a 1\n  %%\n}\nb 2\nc 3\n");
    loaded.document.root().move_entry(0, 2);
    ASSERT_TRUE(set(loaded.document.root(), "g/a", 7));
    expect_saved(loaded.document, "b 2\nc 3\ng {\n  a 7\n  %%\n}\n");
}

TEST_F(document_save_faults, words_of_an_include_are_not_lost_with_its_directive) {
    folder_.write("part", "q 1\n%%\n");
    LoadResult loaded = load_text("g {\n#include \"part\"\n}\nb 2\n");
    ASSERT_TRUE(remove(loaded.document.root(), "g"));
    expect_refused(loaded.document, "part:2");
}

TEST_F(document_save_faults, words_between_values_are_not_written_again_with_a_new_value) {
    LoadResult loaded = load_text("a 1, %% 2\n");
    loaded.document.root().get_entry("a")->add_int(3);
    expect_saved(loaded.document, "a 1, %% 2, 3\n");
}

TEST_F(document_save_faults, a_word_that_would_be_read_beside_a_change_is_named) {
    LoadResult loaded = load_text("z 0\nf(1)\n5\nb 2\n");
    ASSERT_TRUE(remove(loaded.document.root(), "f"));
    expect_refused(loaded.document, "perhaps because of the word '5' at " + folder_.full_path("file") + ":3");
}

TEST_F(document_save_faults, a_group_left_open_is_named_when_something_cannot_stand_behind_it) {
    LoadResult loaded = load_text("a 1\ng {\n  h 1 {\n    a 1\n");
    ASSERT_TRUE(set(loaded.document.root(), "new", 2));
    expect_refused(loaded.document, "more would be read than there is, because group 'g' at " +
                                        folder_.full_path("file") +
                                        ":2 is not closed: put its '}' where it ends");
    folder_.write("part", "\n\nq {\n  r 1\n");
    LoadResult included = load_text("a 1\n#include \"part\"\n");
    ASSERT_TRUE(set(included.document.root(), "new", 2));
    expect_refused(included.document, "group 'q' at " + folder_.full_path("part") + ":3 is not closed");
}

TEST_F(document_save_faults, words_that_a_new_layout_would_not_hold_are_named_and_need_a_leave) {
    folder_.write("part", "\nq 1 $$\n");
    LoadResult loaded = load_text("a 1\n%% b 2\n#include \"part\"\n");
    SaveOptions anew;
    anew.keep_layout = false;
    for (const std::string& path : {std::string(), folder_.full_path("other")}) {
        const SaveResult result = save(loaded.document, path, anew);
        EXPECT_NE(result.reason.find("was not read whole, see the losses"), std::string::npos)
            << result.reason;
        ASSERT_EQ(result.losses.size(), 2u);
        EXPECT_EQ(result.losses[0].code, "not-read-whole");
        EXPECT_EQ(result.losses[0].message, "the word '%%' at " + folder_.path("file") + ":2 was not read");
        EXPECT_EQ(result.losses[1].message, "the word '$$' at " + folder_.path("part") + ":2 was not read");
    }
    EXPECT_FALSE(std::filesystem::exists(folder_.full_path("other")));
    SaveOptions binary;
    binary.form = Form::binary;
    EXPECT_EQ(save(loaded.document, folder_.full_path("other"), binary).losses.size(), 2u);
    anew.lossy = true;
    EXPECT_EQ(save(loaded.document, {}, anew).losses.size(), 2u);
    EXPECT_EQ(folder_.read("file"), "#Brellwick_Serial_Version 1.2\n\na 1\nb 2\nq 1\n");
    anew.lossy = false;
    EXPECT_TRUE(save(loaded.document, {}, anew).losses.empty()) << "they are not there any more";
}

TEST_F(document_save_faults, the_lines_of_words_that_were_not_read_are_those_of_the_last_save) {
    LoadResult loaded = load_text("a 1\nb 2\n%%\n");
    ASSERT_TRUE(remove(loaded.document.root(), "a"));
    expect_saved(loaded.document, "b 2\n%%\n");
    SaveOptions anew;
    anew.keep_layout = false;
    const SaveResult result = save(loaded.document, {}, anew);
    ASSERT_EQ(result.losses.size(), 1u);
    EXPECT_EQ(result.losses[0].message, "the word '%%' at " + folder_.full_path("file") + ":2 was not read");
}

TEST_F(document_save_faults, a_hundred_words_that_were_not_read_are_named_and_the_others_counted) {
    std::string text = "a 1\n";
    for (int i = 0; i < 102; ++i) {
        text += "%%\n";
    }
    LoadResult loaded = load_text(text);
    SaveOptions anew;
    anew.keep_layout = false;
    const SaveResult result = save(loaded.document, {}, anew);
    ASSERT_EQ(result.losses.size(), 101u);
    EXPECT_EQ(result.losses[100].message, "2 more words were not read");
}
