#pragma once

#include "parser/parser_word.h"
#include "tests/support/edit_groups.h"

#include <charconv>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

/// Every edit of an entry and its values.
class EntryEdits : protected GroupEdits {
protected:
    using GroupEdits::GroupEdits;
    using Type = ParserValue::Type;

    void renew_loose() { renew(loose_[choose(std::size(loose_))]); }

    // Values that are added

    static void know(model::Entry& entry, Type type, const std::string& word) {
        entry.values.push_back(std::make_shared<model::Value>(model::Value{type, word}));
    }

    int number() { return (static_cast<int>(choose(256)) - 128) * (chance() ? 1 : 16777216); }

    static std::string spelled(double number) {
        char digits[400];
        const std::string text(digits, std::to_chars(digits, digits + sizeof(digits), number).ptr);
        return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
    }

    static std::string literal(const std::string& bytes) {
        unsigned int sum = 0;
        for (const char byte : bytes) {
            sum += static_cast<unsigned char>(byte);
        }
        return "0x" + dense_hex(bytes) + dense_hex(little(sum, 4));
    }

    void add_bool() {
        model::Entry& to = entry();
        const bool added = chance();
        to.real->add_bool(added);
        know(to, ParserValue::TYPE_BOOL, added ? "yes" : "no");
    }

    void add_char() {
        model::Entry& to = entry();
        const char added = static_cast<char>(static_cast<unsigned char>(choose(256)));
        to.real->add_char(added);
        know(to, ParserValue::TYPE_CHAR, std::to_string(static_cast<signed char>(added)));
    }

    void add_int() {
        model::Entry& to = entry();
        const int added = number();
        to.real->add_int(added);
        know(to, ParserValue::TYPE_INT, std::to_string(added));
    }

    void add_double() {
        model::Entry& to = entry();
        const double added = number() / 8.0;
        to.real->add_double(added);
        know(to, ParserValue::TYPE_DOUBLE, spelled(added));
    }

    void add_string() {
        model::Entry& to = entry();
        const std::string added = word();
        to.real->add_string(core(added));
        know(to, ParserValue::TYPE_STRING, added);
    }

    /// A string of the same entry.
    void add_string_of_its_own() {
        model::Entry& to = entry();
        if (!to.values.empty() && to.values[0]->type == ParserValue::TYPE_STRING) {
            const std::string added = to.values[0]->word;
            to.real->add_string(to.real->get_string(0));
            know(to, ParserValue::TYPE_STRING, added);
        }
    }

    void add_binary_data() {
        model::Entry& to = entry();
        std::string added(choose(20), static_cast<char>(choose(128)));
        to.real->add_binary_data(added.data(), static_cast<unsigned int>(added.size()));
        know(to, ParserValue::TYPE_BINARY_DATA, literal(added));
    }

    void add_word() {
        static constexpr std::pair<const char*, Type> spellings[] = {
            {"1.50", ParserValue::TYPE_DOUBLE},
            {"007", ParserValue::TYPE_INT},
            {"1.000000000000000000001", ParserValue::TYPE_DOUBLE},
            {"yes", ParserValue::TYPE_BOOL},
        };
        model::Entry& to = entry();
        const auto& [text, type] = spellings[choose(std::size(spellings))];
        OwnedWord added(text);
        to.real->add_word(*added, type);
        know(to, type, text);
    }

    void add_quoted_word() {
        model::Entry& to = entry();
        OwnedWord added("\"a\\tstring of a word\"");
        to.real->add_word(*added, ParserValue::TYPE_STRING);
        know(to, ParserValue::TYPE_STRING, "a\tstring of a word");
    }

    void add_vector() {
        model::Entry& to = entry();
        const unsigned int size = choose(4);
        const double x = number() / 4.0;
        switch (size) {
        case 0:
            to.real->add_vec2d({x, 1.5});
            break;
        case 1:
            to.real->add_vec3d({x, 1.5, 2.5});
            break;
        case 2:
            to.real->add_vec4d({x, 1.5, 2.5, 3.5});
            break;
        default:
            to.real->add_vec2i({5, 6});
            know(to, ParserValue::TYPE_INT, "5");
            return know(to, ParserValue::TYPE_INT, "6");
        }
        know(to, ParserValue::TYPE_DOUBLE, spelled(x));
        for (unsigned int i = 0; i <= size; ++i) {
            know(to, ParserValue::TYPE_DOUBLE, spelled(i + 1.5));
        }
    }

    void add_new_group() {
        model::Entry& to = entry();
        know_group(to, to.real->add_group(nullptr), nullptr);
    }

    void add_host_group() {
        model::Entry& to = entry();
        auto* const added = new CountedGroup(name());
        know_group(to, to.real->add_group(added), added);
    }

    /// The tree of a root becomes a value.
    void adopt_root() {
        const model::EntryPointer to = some_entry();
        Root& root = roots_[choose(std::size(roots_))];
        if (model::reaches(root.known, to.get())) {
            return;
        }
        to->real->add_group(root.real.release());
        know(*to, ParserValue::TYPE_GROUP, "");
        to->values.back()->group = root.known;
        renew(root);
    }

    /// `get_group` makes a group in an entry without values.
    void get_group() {
        model::Entry& asked = entry();
        if (asked.values.empty()) {
            know_group(asked, asked.real->get_group(choose(3)), nullptr);
        }
    }

    // Values that are changed

    /// A value to change, with all entries that list it.
    model::Value* some_value(model::Entry& of, unsigned int& i) {
        i = choose(of.values.size());
        return of.values.empty() ? nullptr : of.values[i].get();
    }

    static void become(model::Value& value, Type type, const std::string& word) {
        value = model::Value{type, word};
    }

    void set_bool() {
        model::Entry& of = entry();
        unsigned int i = 0;
        if (model::Value* const value = some_value(of, i)) {
            of.real->set_bool(true, i);
            become(*value, ParserValue::TYPE_BOOL, "yes");
            check_.same("bool", of.real->get_bool(i));
        }
    }

    void set_int() {
        model::Entry& of = entry();
        unsigned int i = 0;
        if (model::Value* const value = some_value(of, i)) {
            const int set = number();
            of.real->set_int(set, i);
            become(*value, ParserValue::TYPE_INT, std::to_string(set));
            check_.same("int", of.real->get_int(i) == set);
        }
    }

    void set_double() {
        model::Entry& of = entry();
        unsigned int i = 0;
        if (model::Value* const value = some_value(of, i)) {
            const double set = number() / 3.0;
            of.real->set_double(set, i);
            become(*value, ParserValue::TYPE_DOUBLE, spelled(set));
            check_.same("double", of.real->get_double(i) == set);
        }
    }

    /// The argument may be the string of another value or of the same value.
    void set_string() {
        model::Entry& of = entry();
        unsigned int i = 0;
        if (model::Value* const value = some_value(of, i)) {
            std::string set = word();
            const unsigned int other = choose(of.values.size());
            if (chance() && of.values[other]->type == ParserValue::TYPE_STRING) {
                set = of.values[other]->word;
                of.real->set_string(of.real->get_string(other), i);
            } else {
                of.real->set_string(core(set), i);
            }
            become(*value, ParserValue::TYPE_STRING, set);
            check_.same("string", plain(of.real->get_string(i)) == set);
        }
    }

    void set_binary_data() {
        model::Entry& of = entry();
        unsigned int i = 0;
        if (model::Value* const value = some_value(of, i)) {
            std::string set(choose(9), static_cast<char>(choose(128)));
            of.real->set_binary_data(set.data(), static_cast<unsigned int>(set.size()), i);
            become(*value, ParserValue::TYPE_BINARY_DATA, literal(set));
            check_.same("size", of.real->get_binary_data_size(i) == set.size());
        }
    }

    /// Reading a value as any type does not change it.
    void read() {
        const model::Entry& of = entry();
        for (unsigned int i = 0; i < of.values.size(); ++i) {
            of.real->get_bool(i);
            of.real->get_char(i);
            of.real->get_int(i);
            of.real->get_double(i);
            of.real->get_string(i);
            of.real->get_binary_data(i);
            of.real->get_vec2d(i);
            of.real->get_vec2i(i);
            of.real->get_vec3d(i);
            of.real->get_vec4d(i);
        }
    }

    void move_value() {
        model::Entry& of = entry();
        if (of.values.empty()) {
            return;
        }
        const unsigned int from = choose(of.values.size());
        const unsigned int to = choose(of.values.size());
        of.real->move_value(from, to);
        const auto moved = of.values[from];
        of.values.erase(of.values.begin() + from);
        of.values.insert(of.values.begin() + to, moved);
    }

    void remove_values() {
        model::Entry& of = entry();
        CoreList<unsigned int> list;
        std::set<unsigned int> gone;
        for (unsigned int count = choose(4); count > 0; --count) {
            list.add(choose(of.values.size() + 2));
            gone.insert(list[list.get_count() - 1]);
        }
        if (list.get_count() == 1) {
            of.real->remove_value(list[0]);
        } else if (list.get_count() == 2) {
            of.real->remove_value(CoreBasicArray<unsigned int>{list[0], list[1]});
        } else {
            of.real->remove_value(list);
        }
        erase_all(of.values, gone);
    }

    // Entries

    void change_fields() {
        model::Entry& changed = entry();
        switch (choose(4)) {
        case 0:
            changed.name = name();
            return changed.real->rename(core(changed.name));
        case 1:
            changed.template_name = word();
            return changed.real->set_template(core(changed.template_name));
        case 2: {
            const bool is_array = chance();
            changed.array_count = is_array ? choose(9) : ParserEntry::not_an_array;
            return changed.real->set_array(is_array, is_array ? changed.array_count : 5);
        }
        default: {
            const bool is_raw = chance();
            changed.type = is_raw ? ParserEntry::TYPE_RAW_TEXT : ParserEntry::TYPE_ENTRY;
            return changed.real->set_as_raw_text(is_raw);
        }
        }
    }

    void reset() {
        model::Entry& changed = entry();
        changed.real->reset();
        changed.values.clear();
    }

    static void copy_fields(model::Entry& to, const model::Entry& from) {
        to.name = from.name;
        to.type = from.type;
        to.line = from.line;
        to.column = from.column;
        to.template_name = from.template_name;
        to.array_count = from.array_count;
    }

    void copy_entry() {
        const model::EntryPointer to = some_entry();
        const model::EntryPointer from = some_entry();
        to->real->copy_from(*from->real);
        if (to != from) {
            to->values = model::copied_values(*from, *to->real);
            copy_fields(*to, *from);
        }
    }

    void copy_loose() {
        Loose& to = loose_[choose(std::size(loose_))];
        const model::EntryPointer from = some_entry();
        auto real = std::make_unique<ParserEntry>(*from->real);
        to.known = model::copy_of(*from, *real);
        to.real = std::move(real);
    }

    /// Afterwards both entries list the same values.
    void assign_entry() {
        const model::EntryPointer to = some_entry();
        const model::EntryPointer from = some_entry();
        if (to == from || !model::reaches(from, to.get())) {
            *to->real = *from->real;
            copy_fields(*to, *from);
            const auto shared = from->values;
            to->values = shared;
        }
    }

    /// Reads the binary form of an entry, without the name, into another entry.
    void decode_entry() {
        model::Entry& to = entry();
        const model::Entry& from = entry();
        const CoreVector<char> bytes = from.real->get_binary();
        core_uint64 position = from.name.size() + 1;
        const unsigned int before = to.real->get_value_count();
        check_.same("decoding an entry", to.real->set_binary(bytes, position));
        const model::EntryPointer after = model::known(*to.real);
        to.values.insert(to.values.end(), after->values.begin() + before, after->values.end());
    }
};
