#pragma once

#include "tests/support/counted_tree.h"
#include "tests/support/model_tree.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Trees of the library, the plain lists that describe them, and the bytes that choose the edits.
class EditState {
protected:
    /// A tree that is in no other one.
    struct Root {
        std::unique_ptr<ParserGroup> real;
        model::GroupPointer known;
    };
    /// An entry that lists a group and is its source entry.
    struct SourceLink {
        const ParserEntry* entry;
        std::weak_ptr<model::Value> value;
    };
    /// An entry of no group.
    struct Loose {
        std::unique_ptr<ParserEntry> real;
        model::EntryPointer known;
    };

    static constexpr const char* names[] = {"a",    "b",   "c", "#k", "#l", "a_name_longer_than_eleven",
                                            "d<t>", "e[2]"};
    static constexpr const char* words[] = {
        "", "x", "eleven char", "twelve chars", "a text that has to stand in a block of its own", "\" \\ \n"};
    static constexpr const char* texts[] = {
        "a 1 2.50 yes \"x\" \"a string longer than eleven\" ",
        "#k \"x\\ty\" 0x01FF00010000\nb<t> 1 c[3] no, 2 d[] -0.5 ",
        "a { b 1 #l 2 { c \"another string that is long\" } } f(1, \"two\", 3.5) g() ",
        "a_name_longer_than_eleven <empty> b { } c 1 { #k 1 } ",
        "a 1 ( { } = : yes ",
    };

    explicit EditState(std::string_view bytes) : bytes_(bytes) {
        for (Root& root : roots_) {
            renew(root);
        }
        for (Loose& loose : loose_) {
            renew(loose);
        }
        look();
    }

    static void renew(Root& root) {
        root.real = std::make_unique<ParserGroup>(CoreString("root"));
        root.known = std::make_shared<model::Group>(model::Group{root.real.get(), "root"});
    }
    static void renew(Loose& loose) {
        loose.real = std::make_unique<ParserEntry>(CoreString("loose"), ParserEntry::TYPE_ENTRY, 3, 4);
        loose.known = std::make_shared<model::Entry>(
            model::Entry{loose.real.get(), "loose", ParserEntry::TYPE_ENTRY, 3, 4});
    }

    unsigned int choose(std::size_t limit) {
        if (bytes_.empty() || limit < 2) {
            return 0;
        }
        const auto byte = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return static_cast<unsigned int>(byte % limit);
    }
    bool chance() { return choose(2) != 0; }
    std::string name() { return names[choose(std::size(names))]; }
    std::string word() { return words[choose(std::size(words))]; }
    model::Group& group() { return *some_group(); }
    model::Entry& entry() { return *some_entry(); }
    model::GroupPointer some_group() { return walk_.groups[choose(walk_.groups.size())]; }
    model::EntryPointer some_entry() { return walk_.entries[choose(walk_.entries.size())]; }

    template <class Element>
    static void erase_all(std::vector<Element>& elements, const std::set<unsigned int>& positions) {
        for (auto position = positions.rbegin(); position != positions.rend(); ++position) {
            if (*position < elements.size()) {
                elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(*position));
            }
        }
    }

    /// Collects the objects that can be edited.
    void look() {
        walk_ = model::Walk();
        for (const Root& root : roots_) {
            walk_.add(root.known);
        }
        for (const Loose& loose : loose_) {
            walk_.add(loose.known);
        }
        forget_sources();
    }

    /// When the source entry of a group gives it up while other entries list it, the group forgets its source entry.
    void forget_sources() {
        for (const SourceLink& link : links_) {
            const auto value = link.value.lock();
            if (value != nullptr && value->group != nullptr && value->group->source == link.entry &&
                !lists(link.entry, *value)) {
                value->group->source = nullptr;
            }
        }
        links_.clear();
        for (const model::EntryPointer& entry : walk_.entries) {
            for (const auto& value : entry->values) {
                if (value->group != nullptr && value->group->source == entry->real) {
                    links_.push_back({entry->real, value});
                }
            }
        }
    }
    bool lists(const ParserEntry* real, const model::Value& value) const {
        return std::any_of(walk_.entries.begin(), walk_.entries.end(), [&](const model::EntryPointer& entry) {
            return entry->real == real && std::any_of(entry->values.begin(), entry->values.end(),
                                                      [&](const auto& one) { return one.get() == &value; });
        });
    }

    /// An entry that several trees share counts as often as copies would have it.
    void keep_small() {
        model::ExpandedSize size;
        for (Root& root : roots_) {
            if (size.of(*root.known) > most_objects) {
                renew(root);
            }
        }
        for (Loose& loose : loose_) {
            if (size.of(*loose.known) > most_objects) {
                renew(loose);
            }
        }
        look();
    }

    /// Compares everything, and checks that no other objects of the host's own classes are alive.
    void compare() {
        int counted_groups = 0;
        int counted_entries = 0;
        for (const model::GroupPointer& group : walk_.groups) {
            check_.compare(*group);
            counted_groups += group->is_counted ? 1 : 0;
        }
        for (const model::EntryPointer& entry : walk_.entries) {
            check_.compare(*entry);
            counted_entries += entry->is_counted ? 1 : 0;
        }
        check_.same("groups alive", CountedGroup::alive - groups_before_ == counted_groups);
        check_.same("entries alive", CountedEntry::alive - entries_before_ == counted_entries);
        check_.compare_found(group(), name());
    }

    static constexpr std::size_t most_objects = 250;

    bool fills_pages_ = false; // every text is as long as a large document

    int groups_before_ = CountedGroup::alive;
    int entries_before_ = CountedEntry::alive;
    std::string_view bytes_;
    Root roots_[3];
    Loose loose_[2];
    model::Walk walk_;
    std::vector<SourceLink> links_;
    model::Comparison check_;
};
