#include "tests/support/edit_board.h"

#include "parser/parser_word.h"

#include <gtest/gtest.h>

// Memory runs out at each request of every constructor, copy and edit. std::bad_alloc is thrown, and nothing
// has changed.

namespace {

struct Edit {
    const char* name;
    void (*run)(EditBoard& board);
};

ParserEntry& plain_entry(EditBoard& b) {
    return *b.values.get_entry("a");
}
ParserEntry& shared_entry(EditBoard& b) {
    return *b.values.get_entry("b");
}

char bytes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
const CoreString literal("0x0102030000000000");
const CoreString quoted("\"a string between quotes\"");

const Edit edits[] = {
    {"rename", [](EditBoard& b) { plain_entry(b).rename(b.long_text); }},
    {"set a first template", [](EditBoard& b) { plain_entry(b).set_template(b.long_text); }},
    {"set another template", [](EditBoard& b) { b.fielded.set_template(b.long_text); }},
    {"add_bool", [](EditBoard& b) { plain_entry(b).add_bool(true); }},
    {"add_char", [](EditBoard& b) { plain_entry(b).add_char('x'); }},
    {"add_int", [](EditBoard& b) { plain_entry(b).add_int(3); }},
    {"add_int to a shared entry", [](EditBoard& b) { shared_entry(b).add_int(3); }},
    {"add_double", [](EditBoard& b) { plain_entry(b).add_double(2.5); }},
    {"add_string", [](EditBoard& b) { plain_entry(b).add_string(b.long_text); }},
    {"add_string to a shared entry", [](EditBoard& b) { b.sharer.add_string(b.long_text); }},
    {"add_binary_data", [](EditBoard& b) { plain_entry(b).add_binary_data(bytes, 12); }},
    {"add a string word",
     [](EditBoard& b) {
         plain_entry(b).add_word(ParserWord(quoted, true, CoreVersion(1.2)), ParserValue::TYPE_STRING);
     }},
    {"add a literal",
     [](EditBoard& b) {
         plain_entry(b).add_word(ParserWord(literal, true, CoreVersion(1.2)), ParserValue::TYPE_BINARY_DATA);
     }},
    {"add another word",
     [](EditBoard& b) {
         plain_entry(b).add_word(ParserWord(literal, true, CoreVersion(1.2)), ParserValue::TYPE_WORD);
     }},
    {"add a new group to an entry", [](EditBoard& b) { plain_entry(b).add_group(nullptr); }},
    {"add a group to an entry",
     [](EditBoard& b) {
         plain_entry(b).add_group(b.adopted.get());
         static_cast<void>(b.adopted.release());
     }},
    {"add a group to a shared entry",
     [](EditBoard& b) {
         b.sharer.add_group(b.adopted.get());
         static_cast<void>(b.adopted.release());
     }},
    {"ask an empty entry for its group", [](EditBoard& b) { b.empty.get_group(0); }},
    {"add_vec2d",
     [](EditBoard& b) {
         plain_entry(b).add_vec2d({1.5, 2.5});
     }},
    {"add_vec2i",
     [](EditBoard& b) {
         plain_entry(b).add_vec2i({1, 2});
     }},
    {"add_vec3d",
     [](EditBoard& b) {
         plain_entry(b).add_vec3d({1.5, 2.5, 3.5});
     }},
    {"add_vec4d",
     [](EditBoard& b) {
         plain_entry(b).add_vec4d({1.5, 2.5, 3.5, 4.5});
     }},
    {"add_vec4d to an empty entry",
     [](EditBoard& b) {
         b.empty.add_vec4d({1.5, 2.5, 3.5, 4.5});
     }},
    {"add_vec4d to a shared entry",
     [](EditBoard& b) {
         b.sharer.add_vec4d({1.5, 2.5, 3.5, 4.5});
     }},
    {"set_string", [](EditBoard& b) { shared_entry(b).set_string(b.long_text, 1); }},
    {"set_string to a part of itself",
     [](EditBoard& b) { shared_entry(b).set_string(shared_entry(b).get_string(1), 0); }},
    {"set_binary_data", [](EditBoard& b) { plain_entry(b).set_binary_data(bytes, 12, 0); }},
    {"remove a value", [](EditBoard& b) { shared_entry(b).remove_value(1); }},
    {"remove values",
     [](EditBoard& b) {
         b.sharer.remove_value(CoreList<unsigned int>{0, 2});
     }},
    {"share an entry", [](EditBoard& b) { b.empty = b.fielded; }},
    {"share an entry of the tree", [](EditBoard& b) { b.fielded = plain_entry(b); }},
    {"share a shared entry", [](EditBoard& b) { b.fielded = b.sharer; }},
    {"copy fields over others",
     [](EditBoard& b) {
         ParserEntry source(b.name, ParserEntry::TYPE_ENTRY, 8, 9);
         source.set_template(b.long_text);
         b.fielded = source;
     }},
    {"copy an entry from another", [](EditBoard& b) { b.empty.copy_from(b.fielded); }},
    {"copy values from another", [](EditBoard& b) { b.fielded.copy_from(shared_entry(b)); }},
    {"copy a group from another", [](EditBoard& b) { b.fielded.copy_from(*b.group.get_entry("c")); }},
    {"construct entries",
     [](EditBoard& b) {
         const ParserEntry made(b.name, ParserEntry::TYPE_ENTRY, 0, 0);
         const ParserEntry copied(b.fielded);
         const ParserEntry deep(*b.group.get_entry("c"));
     }},

    {"add an entry", [](EditBoard& b) { b.group.add_entry(b.name, 1, 2); }},
    {"add entries until the list grows",
     [](EditBoard& b) {
         b.group.add_entry(b.name, 1, 2);
         if (b.group.get_entries().get_count() == 9) { // one at a time: whole or without effect
             b.group.remove_entry(8u);
         }
     }},
    {"add a keyword", [](EditBoard& b) { b.group.add_entry(b.keyword, 1, 2); }},
    {"adopt an entry",
     [](EditBoard& b) {
         b.odd.add_entry(*b.adopted_entry);
         static_cast<void>(b.adopted_entry.release());
     }},
    {"adopt a keyword",
     [](EditBoard& b) {
         b.dest.add_entry(*b.adopted_keyword);
         static_cast<void>(b.adopted_keyword.release());
     }},
    {"add a group under a name", [](EditBoard& b) { b.odd.add_group(b.name); }},
    {"add a group under a keyword", [](EditBoard& b) { b.odd.add_group(b.keyword); }},
    {"adopt a group",
     [](EditBoard& b) {
         b.group.add_group(b.adopted.get());
         static_cast<void>(b.adopted.release());
     }},
    {"adopt a group under a keyword",
     [](EditBoard& b) {
         b.odd.add_group(b.refused.get());
         static_cast<void>(b.refused.release());
     }},
    {"share a group", [](EditBoard& b) { b.dest = b.group; }},
    {"copy a group over another", [](EditBoard& b) { b.dest.set(b.group); }},
    {"construct groups",
     [](EditBoard& b) {
         const ParserGroup made(b.name);
         const ParserGroup copied(b.group);
     }},
    {"move an entry", [](EditBoard& b) { b.odd.move_entry(0u, 3u); }},
    {"move an entry to the end", [](EditBoard& b) { b.odd.move_entry(0u, b.odd); }},
    {"move an entry away", [](EditBoard& b) { b.odd.move_entry(1u, b.dest); }},
    {"move a keyword away", [](EditBoard& b) { b.group.move_entry(1u, b.odd); }},
    {"move the ordinary ones away", [](EditBoard& b) { b.odd.move_entries(b.dest); }},
    {"move the ordinary ones to the end", [](EditBoard& b) { b.odd.move_entries(b.odd); }},
    {"move the ordinary ones to an odd group", [](EditBoard& b) { b.group.move_entries(b.odd); }},
    {"move all away", [](EditBoard& b) { b.odd.move_entries(b.dest, 1); }},
    {"move all to an odd group", [](EditBoard& b) { b.group.move_entries(b.odd, 1); }},
    {"remove entries",
     [](EditBoard& b) {
         b.odd.remove_entries(CoreBasicArray<unsigned int>{0, 3});
     }},
    {"remove entries of a name", [](EditBoard& b) { b.odd.remove_entry(CoreString("p")); }},
    {"remove an entry", [](EditBoard& b) { b.odd.remove_entry(1u); }},
    {"remove no entry", [](EditBoard& b) { b.odd.remove_entry(100u); }},

    {"construct values",
     [](EditBoard& b) {
         const ParserValue string(b.long_text);
         const ParserValue group(static_cast<ParserGroup*>(nullptr));
         const ParserValue data(bytes, 12);
         const ParserValue word(ParserValue::TYPE_WORD, b.long_text);
         const ParserValue decoded(ParserValue::TYPE_BINARY_DATA, literal);
         const ParserValue named(ParserValue::TYPE_GROUP, b.long_text);
         const ParserValue copies[] = {ParserValue(string), ParserValue(data), ParserValue(word),
                                       ParserValue(named)};
     }},
    {"set the string of a value", [](EditBoard& b) { b.string_value.set_string(b.long_text); }},
    {"set the bytes of a value", [](EditBoard& b) { b.int_value.set_binary_data(bytes, 12); }},

    {"ask a word for its text", [](EditBoard& b) { b.other_word.get_string(); }},
    {"ask a word for its name", [](EditBoard& b) { b.word.is_identifier(); }},
    {"assign a word",
     [](EditBoard& b) {
         ParserWord source(b.word_text, true, CoreVersion(1.2));
         source.is_identifier();
         source.get_string();
         b.other_word = source;
     }},
    {"copy a word", [](EditBoard& b) { const ParserWord copy(b.other_word); }},

    {"add to a vector", [](EditBoard& b) { b.strings.add(b.long_text); }},
    {"add an element of its own", [](EditBoard& b) { b.strings.add(b.strings[1]); }},
    {"add a range",
     [](EditBoard& b) {
         const CoreString more[] = {b.long_text, b.name, b.keyword};
         b.strings.add_range(more, 3);
     }},
    {"make room", [](EditBoard& b) { b.strings.make_room(10); }},
    {"reserve", [](EditBoard& b) { b.strings.reserve(10); }},
    {"assign a vector",
     [](EditBoard& b) {
         b.strings = CoreVector<CoreString>{b.name, b.long_text};
     }},
    {"resize an array", [](EditBoard& b) { b.array.resize(9); }},
    {"add to a list", [](EditBoard& b) { b.list.add(b.long_text); }},
    {"add to a set", [](EditBoard& b) { b.set.add(b.long_text); }},
    {"add to a set until it grows", [](EditBoard& b) { b.set.add(b.name); }},
    {"assign a set", [](EditBoard& b) { b.set = b.other_set; }},
    {"copy a set", [](EditBoard& b) { const CoreSet<CoreString> copy(b.set); }},
    {"assign a string", [](EditBoard& b) { b.string = b.long_text; }},
    {"append to a string", [](EditBoard& b) { b.string += b.long_text; }},
    {"append a string to itself", [](EditBoard& b) { b.string += b.string; }},
    {"append a number",
     [](EditBoard& b) {
         b.string.resize(31);
         b.string.resize(28); // its block is full now
         b.string += 123456;
     }},
    {"resize a string", [](EditBoard& b) { b.string.resize(1000); }},
    {"reserve in a string", [](EditBoard& b) { b.string.reserve(1000); }},
    {"cut a part out of a string", [](EditBoard& b) { b.string.sub_string(1, 20); }},
    {"compose a message", [](EditBoard& b) { b.stream += b.long_text; }},

    {"add a new word to an archive", [](EditBoard& b) { b.archive += b.name; }},
    {"add a known word to an archive", [](EditBoard& b) { b.archive += b.long_text; }},
    {"assign an archive", [](EditBoard& b) { b.archive = b.other_archive; }},
    {"copy an archive", [](EditBoard& b) { const ParserArchive copy(b.archive); }},
    {"construct files",
     [](EditBoard& b) {
         const ParserFile named(b.long_text);
         const ParserFile copied(b.file);
     }},
    {"adopt a root",
     [](EditBoard& b) {
         const ParserFile rooted(*b.adopted);
         static_cast<void>(b.adopted.release());
     }},
    {"assign a file", [](EditBoard& b) { b.file = b.other_file; }},
    {"set the name of a file", [](EditBoard& b) { b.file.set_filename(b.other_file.get_filename()); }},
    {"set search paths", [](EditBoard& b) { b.file.set_search_paths(b.strings); }},
};

/// Runs the edit with request n failing. False when it makes fewer requests.
bool fails_at(std::size_t n, const Edit& edit, bool for_good) {
    const long live = FailingMemory::live();
    bool has_failed = false;
    {
        CountingLog log;
        EditBoard board;
        const std::string before = board.describe();
        bool has_thrown = false;
        FailingMemory::fail_at(n, for_good);
        try {
            edit.run(board);
        } catch (const std::bad_alloc&) {
            has_thrown = true;
        }
        has_failed = FailingMemory::disarm();
        EXPECT_EQ(has_thrown, has_failed) << edit.name << ", request " << n;
        if (has_thrown) {
            EXPECT_EQ(board.describe(), before) << edit.name << ", request " << n;
            EXPECT_EQ(log.out_of_memory, 0) << "an exception says it";
            EXPECT_NO_THROW(edit.run(board)) << edit.name;
        }
    }
    EXPECT_EQ(FailingMemory::live(), live) << edit.name << ", request " << n << " left blocks behind";
    return has_failed;
}

} // namespace

TEST(memory_out_of_an_edit, everything_is_as_it_was_at_each_request) {
    for (const Edit& edit : edits) {
        for (const bool for_good : {false, true}) {
            std::size_t n = 1;
            while (fails_at(n, edit, for_good)) {
                ++n;
            }
            EXPECT_LT(n, 100u) << edit.name;
        }
    }
}
