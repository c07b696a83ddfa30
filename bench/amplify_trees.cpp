#include "bench/amplify.h"
#include "bench/repeated.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <memory>

namespace bench {

namespace {

/// Parses the text, and times an action on the tree.
Work edit(const std::string& text, const std::function<void(ParserGroup&)>& change) {
    const auto group = std::make_shared<ParserGroup>("g");
    return {text.size(), [group, change] { change(*group); },
            [group, text = core(text)] {
                group->clear();
                group->set_text(text, CoreVersion(1.2), nullptr);
            }};
}

/// Every second one.
template <class List>
List half(unsigned int count) {
    List list(count / 2);
    for (unsigned int i = 0; i < list.get_count(); ++i) {
        list[i] = count - 1 - 2 * i;
    }
    return list;
}

Work remove_values(unsigned int count) {
    return edit("a " + repeated("1,", count), [](ParserGroup& group) {
        ParserEntry& entry = *group.get_entries()[0];
        entry.remove_value(half<CoreArray<unsigned int>>(entry.get_value_count()));
    });
}

Work add_values(unsigned int count) {
    Work work = edit("a 1 ", [count](ParserGroup& group) {
        for (unsigned int i = 0; i < count; ++i) {
            group.get_entries()[0]->add_string("a string that is longer");
        }
    });
    work.bytes = std::size_t{count} * 23;
    return work;
}

Work share(unsigned int count) {
    return edit("a " + repeated("1,", count) + "\n" + repeated("b 1 ", count), [](ParserGroup& group) {
        ParserGroup other("g");
        other = group;
        ParserEntry entry("e", ParserEntry::TYPE_ENTRY, 0, 0);
        entry = *group.get_entries()[0];
    });
}

Work visit_ordinals(unsigned int count) {
    return edit(repeated("#k 1 a 1 ", count), [](ParserGroup& group) {
        for (unsigned int i = 0; i < group.get_entry_count(); ++i) {
            group.get_entry(i)->get_int(0);
        }
    });
}

Work move_all(unsigned int count) {
    return edit(repeated("#k 1 a 1 ", count), [](ParserGroup& group) {
        ParserGroup first("g");
        ParserGroup second("g");
        group.move_entries(first);
        group.move_entries(second, 0);
        first.move_entries(second, second.get_entries().get_count() / 2);
        second.move_entries(group, 0);
    });
}

} // namespace

const std::vector<Family>& tree_families() {
    static const std::vector<Family> families = {
        {"repeated names, found", 20000,
         [](unsigned int n) {
             return edit(repeated("a 1 ", n), [](ParserGroup& group) { group.get_entries("a", true); });
         }},
        {"a name found below groups in groups", 10000,
         [](unsigned int n) {
             return edit(repeated("a{", n) + "b 1" + repeated("}", n),
                         [](ParserGroup& group) { group.get_entries("b", true); });
         }},
        {"many positions removed", 20000,
         [](unsigned int n) {
             return edit(repeated("a 1 ", n), [](ParserGroup& group) {
                 group.remove_entries(half<CoreArray<unsigned int>>(group.get_entries().get_count()));
             });
         }},
        {"many names removed", 20000,
         [](unsigned int n) {
             return edit(repeated("a 1 b 1 ", n), [](ParserGroup& group) { group.remove_entry("a"); });
         }},
        {"many values removed", 50000, remove_values},
        {"many values added", 10000, add_values},
        {"many entries and values shared", 10000, share},
        {"ordinals among keywords", 10000, visit_ordinals},
        {"many entries moved", 100000,
         move_all}, // fewer would fit into the caches, where a move costs a fifth
    };
    return families;
}

} // namespace bench
