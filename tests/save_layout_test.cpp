#include "document/document.h"
#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <vector>

// Changes and saves a document that was loaded from text. Each row has the file before, the change, and the
// file after it.

using namespace bk_parser;

namespace {

using Edit = std::function<void(ParserGroup&)>;

struct Row {
    const char* name;
    std::string_view before;
    Edit edit;
    std::string_view after;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

ParserEntry& entry(ParserGroup& group, const char* name) {
    for (ParserEntry* const one : group.get_entries()) {
        if (one->get_name() == name) {
            return *one;
        }
    }
    throw std::out_of_range(name);
}

ParserGroup& group(ParserGroup& parent, const char* name) {
    ParserEntry& holder = entry(parent, name);
    return *holder.get_group(holder.get_value_count() - 1);
}

ParserEntry& add(ParserGroup& parent, const char* name) {
    return *parent.add_entry(name, 0, 0);
}

Edit set_int(const char* name, int value, unsigned int i = 0) {
    return [=](ParserGroup& root) { entry(root, name).set_int(value, i); };
}

Edit add_int(const char* name, int value) {
    return [=](ParserGroup& root) { add(root, name).add_int(value); };
}

Edit add_int_at(const char* name, int value, unsigned int at) {
    return [=](ParserGroup& root) {
        add(root, name).add_int(value);
        root.move_entry(root.get_entries().get_count() - 1, at);
    };
}

Edit in_group(const char* name, const Edit& edit) {
    return [=](ParserGroup& root) { edit(group(root, name)); };
}

Edit remove(unsigned int position) {
    return [=](ParserGroup& root) { root.remove_entry(position); };
}

Edit move(unsigned int from, unsigned int to) {
    return [=](ParserGroup& root) { root.move_entry(from, to); };
}

Edit both(const Edit& first, const Edit& second) {
    return [=](ParserGroup& root) {
        first(root);
        second(root);
    };
}

const Edit nothing = [](ParserGroup&) {};

const std::vector<Row>& rows() {
    static const std::vector<Row> all = {
        {"nothing_changed", "\xEF\xBB\xBF// c\r\n a = 1,2 // d\n\n\tb{c 1}", nothing,
         "\xEF\xBB\xBF// c\r\n a = 1,2 // d\n\n\tb{c 1}"},
        {"an_empty_file", "", nothing, ""},
        {"a_value", "a 1\nb 2\n", set_int("b", 7), "a 1\nb 7\n"},
        {"a_value_to_itself", "a 0001\n", set_int("a", 1), "a 0001\n"},
        {"a_double_to_itself", "a 80.00\n", [](ParserGroup& root) { entry(root, "a").set_double(80.0, 0); },
         "a 80.00\n"},
        {"a_value_before_a_comment", "a 1 // one\nb 2\n", set_int("a", 7), "a 7 // one\nb 2\n"},
        {"a_value_behind_an_operator", "a   =\t1\n", set_int("a", 7), "a   =\t7\n"},
        {"a_value_in_a_list_with_commas", "a 1, 2 ,3\n", set_int("a", 7, 1), "a 1, 7 ,3\n"},
        {"a_value_on_a_line_of_its_own", "a\n  1 // x\n  2 // y\n", set_int("a", 7, 1),
         "a\n  1 // x\n  7 // y\n"},
        {"a_value_without_a_last_line_end", "a 1", set_int("a", 7), "a 7"},
        {"a_value_between_carriage_returns", "a 1\r\nb 2\r\n", set_int("a", 7), "a 7\r\nb 2\r\n"},
        {"a_value_behind_a_mark",
         "\xEF\xBB\xBF"
         "a 1\nb 2\n",
         set_int("b", 7),
         "\xEF\xBB\xBF"
         "a 1\nb 7\n"},
        {"a_value_in_a_group", "g {\n  a 1 // one\n}\n", in_group("g", set_int("a", 7)),
         "g {\n  a 7 // one\n}\n"},
        {"a_value_in_a_group_on_one_line", "g{a 1}\n", in_group("g", set_int("a", 7)), "g{a 7}\n"},
        {"a_value_in_a_group_in_a_group", "g { h {\n a 1 } }", in_group("g", in_group("h", set_int("a", 7))),
         "g { h {\n a 7 } }"},
        {"a_value_in_arguments", "f( 1 ,2 )\n", set_int("f", 7, 1), "f( 1 ,7 )\n"},
        {"a_value_of_a_keyword", "#k 1 // x\n", set_int("#k", 7), "#k 7 // x\n"},
        {"an_int_to_a_string", "#Brellwick_Serial_Version 1.2\na 1\n",
         [](ParserGroup& root) { entry(root, "a").set_string("x\"y", 0); },
         "#Brellwick_Serial_Version 1.2\na \"x\\\"y\"\n"},
        {"a_string_in_an_old_version", "a \"C:\\x\" \n",
         [](ParserGroup& root) { entry(root, "a").set_string("D:\\y", 0); }, "a \"D:\\y\" \n"},
        {"the_same_string_with_odd_escapes", "#Brellwick_Serial_Version 1.2\na \"\\a\\b\"\n",
         [](ParserGroup& root) { entry(root, "a").set_string("ab", 0); },
         "#Brellwick_Serial_Version 1.2\na \"\\a\\b\"\n"},
        {"bytes", "a 0x01020300000000 // wrong sum\n",
         [](ParserGroup& root) {
             char data[] = {1, 2};
             entry(root, "a").set_binary_data(data, 2, 0);
         },
         "a 0x010203000000 // wrong sum\n"},
        {"the_same_bytes_with_a_wrong_sum", "a 0x010200000000\n",
         [](ParserGroup& root) {
             char data[] = {1, 2};
             entry(root, "a").set_binary_data(data, 2, 0);
         },
         "a 0x010200000000\n"},
        {"a_value_behind", "a 1 // x\n", [](ParserGroup& root) { entry(root, "a").add_int(2); },
         "a 1 2 // x\n"},
        {"a_value_behind_others_with_commas", "a 1,2\n",
         [](ParserGroup& root) { entry(root, "a").add_int(3); }, "a 1,2,3\n"},
        {"a_value_behind_others_on_lines", "a 1,\n  2 // x\n",
         [](ParserGroup& root) { entry(root, "a").add_int(3); }, "a 1,\n  2, 3 // x\n"},
        {"an_argument_behind", "f(1)\n", [](ParserGroup& root) { entry(root, "f").add_int(2); }, "f(1, 2)\n"},
        {"the_first_argument", "f()\n", [](ParserGroup& root) { entry(root, "f").add_int(2); }, "f(2)\n"},
        {"the_first_value", "a <empty> // x\nb 1\n",
         [](ParserGroup& root) {
             entry(root, "a").add_int(2);
             entry(root, "a").add_int(3);
         },
         "a 2 3 // x\nb 1\n"},
        {"a_value_removed", "a 1 2 3\n", [](ParserGroup& root) { entry(root, "a").remove_value(1); },
         "a 1 3\n"},
        {"the_first_value_removed", "a 1, 2 3\n",
         [](ParserGroup& root) { entry(root, "a").remove_value(0u); }, "a 2 3\n"},
        {"the_last_value_removed", "a 1, 2, 3 // x\n",
         [](ParserGroup& root) { entry(root, "a").remove_value(2); }, "a 1, 2 // x\n"},
        {"all_values_removed", "a 1, 2 // x\nb 1\n", [](ParserGroup& root) { entry(root, "a").reset(); },
         "a <empty> // x\nb 1\n"},
        {"all_arguments_removed", "f(1, 2)\n", [](ParserGroup& root) { entry(root, "f").reset(); }, "f()\n"},
        {"a_value_removed_from_lines_with_comments", "a 1, // one\n  2, // two\n  3 // three\n",
         [](ParserGroup& root) { entry(root, "a").remove_value(1); }, "a 1, // one\n  3 // three\n"},
        {"values_in_another_order", "a 1, 2, 3\n",
         [](ParserGroup& root) { entry(root, "a").move_value(0, 2); }, "a 2, 3, 1\n"},
        {"a_name", "a 1 // x\n", [](ParserGroup& root) { entry(root, "a").rename("bb"); }, "bb 1 // x\n"},
        {"a_name_before_an_operator", "a= 1\n", [](ParserGroup& root) { entry(root, "a").rename("b"); },
         "b= 1\n"},
        {"a_name_of_a_group", "a { b 1 }\n", [](ParserGroup& root) { entry(root, "a").rename("c"); },
         "c { b 1 }\n"},
        {"a_name_of_a_call", "f(1)\n", [](ParserGroup& root) { entry(root, "f").rename("g"); }, "g(1)\n"},
        {"a_template_added", "a 1\n", [](ParserGroup& root) { entry(root, "a").set_template("t"); },
         "a<t> 1\n"},
        {"a_template_removed", "a<t> 1\n", [](ParserGroup& root) { entry(root, "a").set_template(""); },
         "a 1\n"},
        {"a_name_under_a_template", "a<t> 1\n", [](ParserGroup& root) { entry(root, "a").rename("b"); },
         "b<t> 1\n"},
        {"an_array_count", "a[2] 1 2\n",
         [](ParserGroup& root) {
             entry(root, "a").add_int(3);
             entry(root, "a").set_array(true, 3);
         },
         "a[3] 1 2 3\n"},
        {"an_array_no_more", "a[] 1 2\n", [](ParserGroup& root) { entry(root, "a").set_array(false, 0); },
         "a 1 2\n"},
        {"a_spelled_array_count", "a[002] 1 2\n", set_int("a", 7), "a[002] 7 2\n"},
        {"a_new_entry_at_the_end", "a 1\nb 2 // x\n", add_int("c", 3), "a 1\nb 2 // x\nc 3\n"},
        {"a_new_entry_behind_no_line_end", "a 1\nb 2 // x", add_int("c", 3), "a 1\nb 2 // x\nc 3"},
        {"a_new_entry_before_last_comments", "a 1\n\n// end\n", add_int("c", 3), "a 1\nc 3\n\n// end\n"},
        {"a_new_entry_at_the_begin", "#Brellwick_Serial_Version 1.2\n// c\na 1\n", add_int_at("n", 3, 0),
         "#Brellwick_Serial_Version 1.2\n// c\nn 3\na 1\n"},
        {"a_new_entry_between", "a 1\n\n// about b\nb 2\n", add_int_at("n", 3, 1),
         "a 1\nn 3\n\n// about b\nb 2\n"},
        {"a_new_entry_in_a_file_of_carriage_returns", "a 1\r\nb 2\r\n", add_int_at("n", 3, 1),
         "a 1\r\nn 3\r\nb 2\r\n"},
        {"a_new_entry_in_an_empty_file", "", add_int("c", 3), "c 3\n"},
        {"a_new_entry_in_a_file_of_comments", "// nothing\n", add_int("c", 3), "// nothing\nc 3\n"},
        {"a_new_entry_in_a_group", "g {\n  a 1\n}\n", in_group("g", add_int("c", 3)),
         "g {\n  a 1\n  c 3\n}\n"},
        {"a_new_entry_in_a_group_of_tabs", "g {\n\ta 1 // x\n}\n", in_group("g", add_int("c", 3)),
         "g {\n\ta 1 // x\n\tc 3\n}\n"},
        {"a_new_entry_before_all_others_of_a_group", "g { // x\n  // about a\n  a 1\n}\n",
         in_group("g", add_int_at("c", 3, 0)), "g { // x\n  c 3\n  // about a\n  a 1\n}\n"},
        {"a_new_entry_in_a_group_on_one_line", "g { a 1 b 2 }\n", in_group("g", add_int_at("c", 3, 1)),
         "g { a 1 c 3 b 2 }\n"},
        {"a_new_entry_at_the_end_of_a_group_on_one_line", "g {a 1}\n", in_group("g", add_int("c", 3)),
         "g {a 1 c 3 }\n"},
        {"a_new_entry_in_an_empty_group", "g {}\n", in_group("g", add_int("c", 3)), "g { c 3 }\n"},
        {"a_new_entry_in_an_empty_group_of_lines", "g {\n}\n", in_group("g", add_int("c", 3)),
         "g {\n    c 3\n}\n"},
        {"a_new_group", "h {\n  a 1\n}\n",
         [](ParserGroup& root) { add(*root.add_group("g"), "x").add_int(1); },
         "h {\n  a 1\n}\ng {\n  x 1\n}\n"},
        {"a_new_group_in_a_group", "h {\n  a 1\n}\n",
         in_group("h", [](ParserGroup& h) { add(*h.add_group("g"), "x").add_int(1); }),
         "h {\n  a 1\n  g {\n    x 1\n  }\n}\n"},
        {"a_new_group_behind_values", "a 1 // x\n",
         [](ParserGroup& root) { add(*entry(root, "a").add_group(nullptr), "x").add_int(1); },
         "a 1 {\n    x 1\n} // x\n"},
        {"several_new_entries", "a 1\n", both(add_int("b", 2), add_int("c", 3)), "a 1\nb 2\nc 3\n"},
        {"an_entry_removed", "a 1\nb 2 // x\nc 3\n", remove(1), "a 1\nc 3\n"},
        {"the_comment_above_stays", "a 1\n// about b\nb 2\nc 3\n", remove(1), "a 1\n// about b\nc 3\n"},
        {"the_first_entry_removed", "// head\na 1\nb 2\n", remove(0), "// head\nb 2\n"},
        {"the_last_entry_removed_without_a_line_end", "a 1\nb 2", remove(1), "a 1"},
        {"the_last_entry_replaced_without_a_line_end", "a 1 // x\nb 2", both(remove(1), add_int("n", 3)),
         "a 1 // x\nn 3"},
        {"the_last_entry_replaced_without_a_line_end_between_carriage_returns", "a 1\r\nb 2 // x",
         both(remove(1), add_int("n", 3)), "a 1\r\nn 3"},
        {"the_last_entries_removed_without_a_line_end", "a 1\nb 2\nc 3", both(remove(2), remove(1)), "a 1"},
        {"the_last_entry_moved_without_a_line_end", "a 1\nb 2\nc 3 // x", move(2, 0), "c 3 // x\na 1\nb 2"},
        {"an_entry_moved_to_the_end_without_a_line_end", "a 1 // x\nb 2\nc 3", both(remove(2), move(0, 1)),
         "b 2\na 1 // x"},
        {"an_entry_added_behind_a_byte_order_mark", "\xEF\xBB\xBF", add_int("n", 3),
         "\xEF\xBB\xBF"
         "n 3"},
        {"the_only_entry_removed", "a 1\n", remove(0), ""},
        {"an_entry_removed_on_a_line", "a 1 b 2 c 3\n", remove(1), "a 1 c 3\n"},
        {"two_entries_removed_on_a_line", "a 1 b 2 c 3 // x\n", both(remove(2), remove(1)), "a 1 // x\n"},
        {"the_first_entry_of_a_line_removed", "  a 1 b 2\n", remove(0), "  b 2\n"},
        {"an_entry_removed_in_a_group_on_one_line", "g { a 1 b 2 }\n", in_group("g", remove(1)),
         "g { a 1 }\n"},
        {"all_entries_removed_in_a_group", "g {\n  a 1\n  b 2\n}\n",
         in_group("g", both(remove(1), remove(0))), "g {\n}\n"},
        {"a_group_removed", "a 1\ng {\n  b 1 // x\n} // end\nc 1\n", remove(1), "a 1\nc 1\n"},
        {"a_group_value_removed", "g 1 {\n  b 1\n} // end\nc 1\n",
         [](ParserGroup& root) { entry(root, "g").remove_value(1); }, "g 1 // end\nc 1\n"},
        {"entries_in_another_order", "a 1 // one\nb 2 // two\nc 3 // three\n", move(0, 2),
         "b 2 // two\nc 3 // three\na 1 // one\n"},
        {"an_entry_moved_up", "a 1\nb 2\nc 3 // three\n", move(2, 0), "c 3 // three\na 1\nb 2\n"},
        {"an_entry_moved_and_changed", "a = 1\nb 2\n", both(set_int("a", 7), move(0, 1)), "b 2\na = 7\n"},
        {"a_group_moved", "g {\n  a 1 // x\n\n  b 2\n}\nc 3\n", move(0, 1),
         "c 3\ng {\n  a 1 // x\n\n  b 2\n}\n"},
        {"an_entry_moved_on_a_line", "g { a 1 b 2 c 3 }\n", in_group("g", move(0, 2)), "g { b 2 c 3 a 1 }\n"},
        {"an_entry_moved_into_a_group", "a 1\ng {\n  b 2\n}\n",
         [](ParserGroup& root) { root.move_entry(0, group(root, "g")); }, "g {\n  b 2\n  a 1\n}\n"},
        {"a_fault_beside_a_change", "a 1 : 2\nb 3\n", set_int("b", 7), "a 1 : 2\nb 7\n"},
        {"a_group_left_open", "g {\n  a 1\n", in_group("g", set_int("a", 7)), "g {\n  a 7\n"},
        {"an_entry_added_to_a_group_left_open", "g {\n  a 1\n", in_group("g", add_int("b", 2)),
         "g {\n  a 1\n  b 2\n"},
        {"what_is_behind_the_end", "a 1\n}\nb 2\n", add_int("c", 3), "a 1\nc 3\n}\nb 2\n"},
        {"two_entries_of_one_name", "a 1\na 2\na 3\n", remove(1), "a 1\na 3\n"},
        {"a_replaced_entry", "a 1 // x\nb 2\n", both(remove(0), add_int_at("n", 3, 0)), "n 3\nb 2\n"},
        {"a_string_under_a_version_that_is_none", "#Brellwick_Serial_Version \na 1\n",
         [](ParserGroup& root) { entry(root, "a").set_string("x\\", 0); },
         "#Brellwick_Serial_Version \na \"x\\\\\"\n"},
        {"an_entry_removed_between_blank_lines", "a 1\n\nb 2 // x\n\nc 3\n", remove(1), "a 1\n\nc 3\n"},
        {"an_entry_removed_between_more_blank_lines", "a 1\n\n\nb 2\n\n\nc 3\n", remove(1),
         "a 1\n\n\n\nc 3\n"},
        {"an_entry_removed_behind_a_blank_line", "a 1\n\nb 2\nc 3\n", remove(1), "a 1\n\nc 3\n"},
        {"an_entry_removed_before_a_blank_line", "a 1\nb 2\n\nc 3\n", remove(1), "a 1\n\nc 3\n"},
        {"an_entry_removed_between_blank_lines_of_blanks", "a 1\r\n \t\r\nb 2\r\n  \r\nc 3\r\n", remove(1),
         "a 1\r\n \t\r\nc 3\r\n"},
        {"an_entry_removed_behind_a_comment_and_before_a_blank_line", "a 1\n\n// b\nb 2\n\nc 3\n", remove(1),
         "a 1\n\n// b\n\nc 3\n"},
        {"two_entries_removed_between_blank_lines", "a 1\n\nb 2\nc 3\n\nd 4\n", both(remove(2), remove(1)),
         "a 1\n\nd 4\n"},
        {"two_entries_removed_with_a_blank_line_between", "a 1\n\nb 2\n\nc 3\n\nd 4\n",
         both(remove(2), remove(1)), "a 1\n\nd 4\n"},
        {"the_first_entry_removed_before_a_blank_line", "a 1\n\nb 2\n", remove(0), "\nb 2\n"},
        {"the_last_entry_removed_behind_a_blank_line", "a 1\n\nb 2\n", remove(1), "a 1\n\n"},
        {"the_last_entry_removed_behind_a_blank_line_without_a_line_end", "a 1\n\nb 2", remove(1), "a 1"},
        {"the_last_entry_removed_between_blank_lines", "a 1\n\nb 2\n\n", remove(1), "a 1\n\n"},
        {"an_entry_removed_between_blank_lines_in_a_group",
         "g {\n\n  a 1\n\n  b {\n    c 2\n  }\n\n  d 3\n}\n", in_group("g", remove(1)),
         "g {\n\n  a 1\n\n  d 3\n}\n"},
        {"an_entry_moved_from_between_blank_lines", "a 1\n\nb 2\n\nc 3\n", move(1, 2), "a 1\n\nc 3\nb 2\n"},
        {"an_entry_moved_from_between_blank_lines_into_a_group", "a 1\n\nb 2\n\ng {\n  c 3\n}\n",
         [](ParserGroup& root) { root.move_entry(1, group(root, "g")); }, "a 1\n\ng {\n  c 3\n  b 2\n}\n"},
        {"an_entry_replaced_between_blank_lines", "a 1\n\nb 2\n\nc 3\n",
         both(remove(1), add_int_at("n", 3, 1)), "a 1\nn 3\n\nc 3\n"},
        {"a_cleared_document", "// c\na 1\nb 2\n", [](ParserGroup& root) { root.clear(); }, "// c\n"},
    };
    return all;
}

class SaveLayout : public testing::TestWithParam<Row> {};

using save_layout = SaveLayout;

} // namespace

TEST_P(save_layout, changes_only_the_bytes_of_what_was_changed) {
    const Row& row = GetParam();
    const ScratchFolder folder;
    const std::string path = folder.write("document", row.before);
    LoadResult loaded = load(path);
    row.edit(loaded.document.root());
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder.read("document"), row.after);
    EXPECT_EQ(result.written.size(), row.before == row.after ? 0u : 1u);
    const LoadResult again = load(path);
    EXPECT_EQ(content_difference(loaded.document.root(), again.document.root()), "");
}

TEST_P(save_layout, leaves_places_by_which_the_next_save_knows_the_entries) {
    const Row& row = GetParam();
    const ScratchFolder folder;
    const std::string path = folder.write("document", row.before);
    LoadResult loaded = load(path);
    row.edit(loaded.document.root());
    ASSERT_TRUE(save(loaded.document).ok());
    const LoadResult again = load(path);
    std::vector<std::pair<const ParserGroup*, const ParserGroup*>> pending{
        {&loaded.document.root(), &again.document.root()}};
    while (!pending.empty()) {
        const auto [ours, theirs] = pending.back();
        pending.pop_back();
        for (unsigned int i = 0; i < ours->get_entries().get_count(); ++i) {
            const ParserEntry& one = *ours->get_entries()[i];
            const ParserEntry& two = *theirs->get_entries()[i];
            EXPECT_EQ(one.get_line(), two.get_line()) << one.get_name().get_view();
            EXPECT_EQ(one.get_column(), two.get_column()) << one.get_name().get_view();
            const unsigned int last = one.get_value_count() - 1;
            if (one.has_value() && one.is_value_group(last)) {
                pending.emplace_back(one.get_group(last), two.get_group(last));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(each_change, save_layout, testing::ValuesIn(rows()),
                         [](const auto& row) { return std::string(row.param.name); });
