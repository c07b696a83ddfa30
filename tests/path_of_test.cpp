#include "document/path.h"
#include "parser/parser_file.h"
#include "tests/support/nasty_tree.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<const ParserEntry*> found_by(const ParserGroup& root, const std::string& path) {
    std::vector<const ParserEntry*> found;
    for (const ParserEntry& entry : bk_parser::find_all(root, path)) {
        found.push_back(&entry);
    }
    return found;
}

void parse(ParserGroup& group, std::string_view text) {
    group.set_text(core(text), default_parser_serial_version, nullptr);
}

} // namespace

TEST(path_of, finds_exactly_that_entry_in_trees_of_every_kind) {
    unsigned int entry_count = 0;
    for (unsigned int seed = 0; seed < 400; ++seed) {
        ParserGroup root("root");
        NastyTree(seed).fill(root, 4);
        const bk_parser::PathIndex index(root);
        for (const bk_parser::Visit& visit : bk_parser::walk(root)) {
            const std::string path = bk_parser::path_of(root, visit.entry());
            ++entry_count;
            ASSERT_EQ(found_by(root, path), std::vector<const ParserEntry*>{&visit.entry()})
                << path << ", tree " << seed;
            ASSERT_EQ(bk_parser::find(root, path), &visit.entry());
            ASSERT_EQ(index.path_of(visit.entry()), path);
            ASSERT_EQ(bk_parser::parent_of(root, visit.entry()), &visit.parent());
            const ParserEntry* const holder = index.parent_of(visit.entry());
            ASSERT_EQ(bk_parser::parent_of(root, visit.parent()), holder);
            ASSERT_EQ(holder == nullptr, visit.depth() == 0);
        }
    }
    EXPECT_GT(entry_count, 5000u);
}

TEST(path_of, is_empty_for_an_entry_elsewhere) {
    ParserGroup root("root");
    ParserGroup other("other");
    const ParserEntry& entry = *other.add_entry("a", 0, 0);
    EXPECT_EQ(bk_parser::path_of(root, entry), "");
    EXPECT_EQ(bk_parser::PathIndex(root).path_of(entry), "");
    EXPECT_EQ(bk_parser::PathIndex(root).parent_of(entry), nullptr);
    EXPECT_EQ(bk_parser::parent_of(root, entry), nullptr);
    EXPECT_EQ(bk_parser::parent_of(root, other), nullptr);
    EXPECT_EQ(bk_parser::parent_of(root, root), nullptr);
}

TEST(path_of, prefers_a_key_to_a_template_and_a_template_to_a_number) {
    ParserGroup root("root");
    parse(root, "a<t> \"k\" a<u> \"k\" a<t> 1 a<t> \"l\" a<v> 2 only 3 ");
    std::string paths;
    for (const ParserEntry& entry : bk_parser::entries(root)) {
        paths += bk_parser::path_of(root, entry) + ' ';
    }
    EXPECT_EQ(paths, "a[0] a<u> a[2] a[\"l\"] a<v> only ");
}

TEST(path_of, names_the_value_where_an_entry_holds_several_groups) {
    ParserGroup root("root");
    ParserEntry& entry = *root.add_entry("a", 0, 0);
    entry.add_int(1);
    entry.add_group(nullptr)->add_entry("b", 0, 0);
    const ParserEntry* const second = entry.add_group(nullptr)->add_entry("b", 0, 0);
    EXPECT_EQ(bk_parser::path_of(root, *second), "a@2/b");
    entry.remove_value(1);
    EXPECT_EQ(bk_parser::path_of(root, *second), "a/b");
}

TEST(path_of, does_not_name_by_a_key_that_is_long_or_has_control_characters) {
    ParserGroup root("root");
    root.add_entry("a", 0, 0)->add_string(core(std::string(65, 'x')));
    root.add_entry("a", 0, 0)->add_string(core("a\nb"));
    root.add_entry("a", 0, 0)->add_string(core(std::string(64, 'x')));
    EXPECT_EQ(bk_parser::path_of(root, *root.get_entry(0u)), "a[0]");
    EXPECT_EQ(bk_parser::path_of(root, *root.get_entry(1u)), "a[1]");
    EXPECT_EQ(bk_parser::path_of(root, *root.get_entry(2u)), "a[\"" + std::string(64, 'x') + "\"]");
}

TEST(path_name, is_quoted_when_it_is_not_bare) {
    EXPECT_EQ(bk_parser::path_name("light.1"), "light.1");
    EXPECT_EQ(bk_parser::path_name("#key"), "#key");
    EXPECT_EQ(bk_parser::path_name(""), "\"\"");
    EXPECT_EQ(bk_parser::path_name("1a"), "\"1a\"");
    EXPECT_EQ(bk_parser::path_name("*"), "\"*\"");
    EXPECT_EQ(bk_parser::path_name("a b"), "\"a b\"");
    EXPECT_EQ(bk_parser::path_string("\"\\\n\r\t\x01\x7F"), R"("\"\\\n\r\t\x01\x7F")");
    EXPECT_EQ(bk_parser::path_string("é\xC3"), "\"é\\xC3\"");
}

TEST(path_name, of_every_byte_finds_an_entry_of_that_name) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string name = {'a', static_cast<char>(byte)};
        ParserGroup root("root");
        root.add_entry("a", 0, 0)->rename(core(name));
        EXPECT_NE(bk_parser::find(root, bk_parser::path_name(name)), nullptr) << byte;
    }
}

TEST(path, is_parsed_once_and_copied_and_moved) {
    ParserGroup root("root");
    parse(root, "a { b 1 } ");
    bk_parser::Path path("a/b");
    const bk_parser::Path copy = path;
    const bk_parser::Path moved = std::move(path);
    EXPECT_TRUE(copy.ok());
    EXPECT_EQ(copy.error(), nullptr);
    EXPECT_EQ(copy.text(), "a/b");
    EXPECT_NE(bk_parser::find(root, copy), nullptr);
    EXPECT_EQ(bk_parser::find(root, copy), bk_parser::find(root, moved));
    path = bk_parser::Path("a//b");
    EXPECT_FALSE(path.ok());
    EXPECT_EQ(path.error()->offset, 2u);
    EXPECT_EQ(bk_parser::find(root, path), nullptr);
    EXPECT_EQ(bk_parser::find_group(root, path), nullptr);
    EXPECT_TRUE(found_by(root, "a//b").empty());
}

TEST(path, may_be_longer_than_the_text_that_it_was_made_of_lives) {
    ParserGroup root("root");
    parse(root, "abcdefghijklmnopqrstuvwxyz 1 ");
    auto found = bk_parser::find_all(root, std::string("abcdefghijklmnopqrstuvwxyz"));
    EXPECT_EQ(std::ranges::distance(found), 1);
}

TEST(path, a_group_is_found_by_the_entry_that_holds_it) {
    ParserGroup root("root");
    parse(root, "a 1 2 { b 1 } ");
    const ParserGroup* const group = root.get_entry("a")->get_group(2);
    EXPECT_EQ(bk_parser::find_group(root, "a"), group);
    EXPECT_EQ(bk_parser::find_group(root, "a@2"), group);
    EXPECT_EQ(bk_parser::find_group(root, "a@1"), nullptr);
    EXPECT_EQ(bk_parser::find_group(root, "a@3"), nullptr);
    EXPECT_EQ(bk_parser::find_group(root, "a/b"), nullptr);
    EXPECT_EQ(bk_parser::find_group(root, "b"), nullptr);
}

TEST(path, an_entry_without_values_gets_no_group_by_being_searched) {
    ParserGroup root("root");
    const ParserEntry& entry = *root.add_entry("a", 0, 0);
    EXPECT_EQ(bk_parser::find(root, "a/b"), nullptr);
    EXPECT_EQ(bk_parser::find(root, "a[b=1]"), nullptr);
    EXPECT_EQ(bk_parser::path_of(root, entry), "a");
    EXPECT_EQ(entry.get_value_count(), 0u);
}

TEST(path, slots_that_are_empty_are_passed_over) {
    ParserGroup root("root");
    parse(root, "a 1 b 2 a 3 ");
    const std::unique_ptr<ParserEntry> detached(root.get_entry(0u));
    root.detach_entry(0);
    EXPECT_EQ(bk_parser::find(root, "a")->get_int(0), 3);
    EXPECT_EQ(bk_parser::find(root, "*[0]")->get_int(0), 2);
    EXPECT_EQ(bk_parser::path_of(root, *root.get_entries()[2]), "a");
    EXPECT_EQ(std::ranges::distance(bk_parser::entries(root)), 2);
    EXPECT_EQ(std::ranges::distance(bk_parser::walk(root)), 2);
    root.remove_entry(0u);
}

TEST(path_error, has_a_place_and_a_caret_that_counts_characters) {
    const std::string path = "é[\"ü\"]x";
    const auto quoted = "\"é\"[\"ü\"]x";
    EXPECT_EQ(bk_parser::path_error(path)->message,
              "unexpected 'é'; a step is a name; other texts than names stand in quotes");
    EXPECT_EQ(bk_parser::path_error(path)->length, 2u);
    const auto error = bk_parser::path_error(quoted);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->offset, 10u);
    EXPECT_EQ(bk_parser::to_text(*error, quoted),
              "unexpected 'x'; write '/' between two steps\n\"é\"[\"ü\"]x\n        ^\n");
}

TEST(path_error, is_a_problem_with_a_column) {
    const std::string path = "\"é\"/";
    const bk_parser::Problem problem = bk_parser::to_problem(*bk_parser::path_error(path), path);
    EXPECT_EQ(problem.code, "malformed-path");
    EXPECT_EQ(problem.severity, bk_parser::Severity::error);
    EXPECT_EQ(problem.line, 1u);
    EXPECT_EQ(problem.column, 5u);
    EXPECT_EQ(problem.offset, 5u);
    EXPECT_EQ(problem.source_line, path);
    EXPECT_FALSE(problem.message.empty());
}

TEST(path_error, draws_control_characters_on_one_line) {
    const std::string path = "a\nb";
    EXPECT_EQ(bk_parser::to_text(*bk_parser::path_error(path), path),
              "unexpected byte; write '/' between two steps\na?b\n ^\n");
    EXPECT_TRUE(bk_parser::path_error(std::string_view("a\0", 2)));
}

TEST(path_error, a_step_has_at_most_64_brackets) {
    std::string path = "light";
    for (int i = 0; i < 64; ++i) {
        path += i % 2 == 0 ? "[power>50]" : "[0]";
    }
    EXPECT_FALSE(bk_parser::path_error(path));
    EXPECT_FALSE(bk_parser::path_error(path + '/' + path));
    const auto error = bk_parser::path_error(path + "[power]");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->message, "too many brackets; a step has at most 64");
    EXPECT_EQ(error->offset, path.size());
    EXPECT_EQ(error->length, 1u);
}

TEST(path_error, every_cut_of_a_path_is_well_formed_or_has_a_place_in_it) {
    const std::string path = "a<t>[\"k\\x41\"][b/\"c\"@1 >= -1.5e+3][2]/**/#k[@0=\"x\"]/\"q\\n\"@12";
    EXPECT_FALSE(bk_parser::path_error(path));
    for (std::size_t length = 0; length <= path.size(); ++length) {
        const auto error = bk_parser::path_error(path.substr(0, length));
        if (error) {
            EXPECT_LE(error->offset, length);
            EXPECT_GE(error->length, 1u);
            EXPECT_FALSE(error->message.empty());
        }
    }
}
