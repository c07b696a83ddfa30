#include "document/document.h"
#include "document/save/apply/text_edits_impl.h"
#include "document/save/apply/text_splice_impl.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

// A save changes the text of the document's own file in place.

using namespace bk_parser;

namespace {

// 6 MB. The block of such a text consists of whole chunks, and grows in another way.
constexpr int large_lines = 400000;

std::string large_text() {
    std::string text = "#Brellwick_Serial_Version 1.2\n";
    for (int i = 0; i < large_lines; ++i) {
        text += "value " + std::to_string(i) + " \n";
    }
    return text;
}

/// Sorted edits that do not overlap.
std::vector<Edit> random_edits(std::mt19937& random, std::size_t size) {
    const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    std::vector<Edit> edits;
    std::size_t at = below(size + 1);
    do {
        Edit& edit = edits.emplace_back();
        edit.begin = at;
        edit.end = at + below(size - at + 1);
        edit.text.assign(below(30), '+');
        at = edit.end + 1;
    } while (at < size && random() % 4 != 0);
    return edits;
}

void expect_saved(const std::function<void(ParserGroup&)>& change, const std::string& before,
                  const std::string& after) {
    const ScratchFolder folder;
    const std::string path = folder.write("large.bkd", before);
    LoadResult loaded = load(path);
    change(loaded.document.root());
    const SaveResult saved = save(loaded.document);
    EXPECT_TRUE(saved.ok()) << saved.reason;
    EXPECT_TRUE(folder.read("large.bkd") == after);
}

std::string replaced(std::string text, const std::string& old, const std::string& now) {
    return text.replace(text.find(old), old.size(), now);
}

} // namespace

TEST(save_splice, a_splice_in_place_gives_the_text_that_the_edits_give) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 60, ' ');
        for (char& character : text) {
            character = static_cast<char>('a' + random() % 26);
        }
        const std::vector<Edit> edits = random_edits(random, text.size());
        CoreString spliced{std::string_view(text)};
        const TextSplice splice = bk_parser::splice(spliced, edits);
        EXPECT_EQ(spliced.get_view(), edited(text, edits));
        EXPECT_EQ(spliced.get_view().substr(0, splice.begin), text.substr(0, splice.begin));
        EXPECT_EQ(spliced.get_view().substr(splice.new_end), text.substr(splice.old_end));
    }
}

TEST(save_splice, a_large_document_becomes_longer) {
    const std::string before = large_text();
    const std::string name(3000000, 'x');
    expect_saved([&](ParserGroup& root) { root.get_entry(7)->set_string(name.c_str(), 0); }, before,
                 replaced(before, "value 7 ", "value \"" + name + "\" "));
}

TEST(save_splice, a_large_document_becomes_shorter) {
    const std::string before = large_text();
    expect_saved([](ParserGroup& root) { root.get_entry(large_lines - 5)->set_int(1, 0); }, before,
                 replaced(before, "value 399995 ", "value 1 "));
}

TEST(save_splice, changes_at_both_ends_of_a_large_document_are_saved) {
    const std::string before = large_text();
    const std::string after =
        replaced(replaced(before, "value 0 ", "value 100 "), "value 399999 ", "value 2 ");
    expect_saved(
        [](ParserGroup& root) {
            root.get_entry(0)->set_int(100, 0);
            root.get_entry(large_lines - 1)->set_int(2, 0);
        },
        before, after);
}

TEST(save_splice, what_cannot_be_proven_leaves_the_file_and_says_why) {
    const ScratchFolder folder;
    const std::string before = "#Brellwick_Serial_Version 1.2\na { b 1 \n";
    const std::string path = folder.write("open.bkd", before);
    LoadResult loaded = load(path);
    loaded.document.root().add_entry("added", 0, 0)->add_int(1);
    const SaveResult saved = save(loaded.document);
    EXPECT_NE(saved.reason.find("group 'a' at"), std::string::npos) << saved.reason;
    EXPECT_NE(saved.reason.find("is not closed"), std::string::npos) << saved.reason;
    EXPECT_EQ(folder.read("open.bkd"), before);
}
