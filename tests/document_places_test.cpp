#include "document/document.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace bk_parser;

LoadOptions keeping() {
    LoadOptions options;
    options.keep_sources = true;
    return options;
}

/// Each entry as "name:line:column".
std::string places_of(const Document& document) {
    std::string result;
    for (const Visit& visit : walk(document.root())) {
        const EntryPlace place = place_of(document, visit.entry());
        result += std::string(visit.entry().get_name().get_view()) + ":" + std::to_string(place.line) + ":" +
                  std::to_string(place.column) + " ";
    }
    return result;
}

TEST(document_places, every_entry_stands_where_its_name_begins) {
    const LoadResult loaded =
        parse("a 1 b 2         c 3   d{ e 4 }\r\n// f\r\n\tg(1)  \"\xC3\x98\" h<t> 5\r#i 6 j 7", keeping());
    EXPECT_EQ(places_of(loaded.document), "a:1:1 b:1:5 c:1:17 d:1:23 e:1:26 g:3:2 h:3:12 #i:4:1 j:4:6 ");
}

TEST(document_places, entries_of_one_letter_are_told_apart) {
    EXPECT_EQ(places_of(parse("a 1 b{c 2 d{e 1}f{}}g 3", keeping()).document),
              "a:1:1 b:1:5 c:1:7 d:1:11 e:1:13 f:1:17 g:1:21 ");
}

TEST(document_places, an_entry_of_an_include_stands_in_that_file) {
    const ScratchFolder folder;
    const std::string top = folder.write("top.bkd", "a 1\n#include \"part.bkd\" b 2\n");
    const std::string part = folder.write("part.bkd", "\n  c 3");
    const LoadResult loaded = load(top, keeping());
    const EntryPlace b = place_of(loaded.document, *find(loaded.document.root(), "b"));
    const EntryPlace c = place_of(loaded.document, *find(loaded.document.root(), "c"));
    EXPECT_EQ(b.file.string(), top);
    EXPECT_EQ(b.line, 2U);
    EXPECT_EQ(b.column, 21U);
    EXPECT_EQ(b.offset, 24U);
    EXPECT_EQ(c.file.string(), part);
    EXPECT_EQ(c.line, 2U);
    EXPECT_EQ(c.column, 3U);
}

TEST(document_places, without_kept_sources_and_of_new_entries_no_place_is_known) {
    const auto other = parse("a 1");
    EXPECT_FALSE(place_of(parse("a 1").document, *find(other.document.root(), "a")).is_known());
    LoadResult loaded = parse("a 1", keeping());
    EXPECT_FALSE(place_of(loaded.document, *add(loaded.document.root(), "b", 2)).is_known());
}

} // namespace
