#pragma once

#include "parser/parser_group.h"

#include <cstddef>
#include <random>
#include <string>

/// A document that a program keeps open and edits all the time. Its size stays about the same. Equal seeds give equal edits.
class LiveDocument {
public:
    explicit LiveDocument(unsigned int seed) : random_(seed) {
        for (unsigned int i = 0; i < group_count; ++i) {
            root_.add_group("group");
        }
    }

    const ParserGroup& root() const { return root_; }

    void edit() {
        ParserGroup& group = any_group();
        const unsigned int count = group.get_entries().get_count();
        if (count == 0 || below(2 * usual_size) >= usual_size / 2 + count) {
            add(group);
            return;
        }
        const unsigned int position = below(count);
        ParserEntry& entry = *group.get_entries()[position];
        switch (below(8)) {
        case 0:
            entry.rename(text().c_str());
            break;
        case 1:
            entry.set_string(text().c_str(), below(entry.get_value_count()));
            break;
        case 2:
            entry.set_double(0.25 * below(1000), below(entry.get_value_count()));
            break;
        case 3:
            group.move_entry(position, any_group());
            break;
        case 4:
            change_count(entry);
            break;
        case 5:
            put_copy(group);
            break;
        default:
            group.remove_entry(position);
        }
    }

private:
    static constexpr unsigned int group_count = 64;
    static constexpr unsigned int usual_size = 64;

    unsigned int below(unsigned int bound) { return static_cast<unsigned int>(random_() % bound); }
    ParserGroup& any_group() { return *root_.get_entries()[below(group_count)]->get_group(0); }

    /// A string, mostly short, and rarely longer than any block of a slab.
    std::string text() {
        const unsigned int longest = below(64) == 0 ? 3000 : below(8) == 0 ? 200 : 20;
        return "t" + std::string(below(longest), 'x');
    }

    void add(ParserGroup& group) {
        ParserEntry& entry = *group.add_entry(text().c_str(), 0, 0);
        for (unsigned int i = 1 + below(6); i != 0; --i) {
            add_value(entry);
        }
    }

    void add_value(ParserEntry& entry) {
        switch (below(3)) {
        case 0:
            entry.add_int(static_cast<int>(below(1000)));
            break;
        case 1:
            entry.add_double(0.5 * below(1000));
            break;
        default:
            entry.add_string(text().c_str());
        }
    }

    void change_count(ParserEntry& entry) {
        if (entry.get_value_count() > 4) {
            entry.remove_value(below(entry.get_value_count()));
        } else {
            add_value(entry);
        }
    }

    /// Done rarely, because it takes as long as many other edits.
    void put_copy(ParserGroup& group) {
        if (below(64) == 0) {
            const ParserGroup copy(any_group());
            group.set(copy);
        }
    }

    std::mt19937 random_;
    ParserGroup root_{"root"};
};
