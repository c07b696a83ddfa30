#pragma once

#include "tests/support/edit_entries.h"

#include <memory>
#include <new>
#include <string>
#include <utility>

/// Every edit of a value that no entry holds. Values are compared by their text.
class ValueEdits : protected EntryEdits {
protected:
    explicit ValueEdits(std::string_view bytes) : EntryEdits(bytes) {
        for (LooseValue& value : values_) {
            renew(value);
        }
    }

    void compare_values() {
        for (const LooseValue& value : values_) {
            check_.same("loose value", written(*value.real) == value.written);
        }
    }

    void renew_value() {
        LooseValue& value = some_loose();
        switch (choose(5)) {
        case 0:
            return put(value, std::make_unique<ParserValue>(CoreString("a text longer than eleven")),
                       "\"a text longer than eleven\"");
        case 1: { // from a word, whose spelling it keeps
            return put(value,
                       std::make_unique<ParserValue>(ParserValue::TYPE_DOUBLE, CoreString("1.500000000000")),
                       "1.500000000000");
        }
        case 2: {
            auto* const group = new ParserGroup(CoreString());
            group->set_text(texts[choose(std::size(texts))], CoreVersion(1.2), nullptr);
            const std::string text = written(*group);
            return put(value, std::make_unique<ParserValue>(group), text);
        }
        case 3:
            return put(value, std::make_unique<ParserValue>('A'), "65");
        default:
            return renew(value);
        }
    }

    void set_value() {
        LooseValue& value = some_loose();
        const int set = number();
        switch (choose(6)) {
        case 0:
            value.real->set_bool(set > 0);
            value.written = set > 0 ? "yes" : "no";
            break;
        case 1:
            value.real->set_char('B');
            value.written = "66";
            break;
        case 2:
            value.real->set_int(set);
            value.written = std::to_string(set);
            break;
        case 3:
            value.real->set_double(set / 8.0);
            value.written = spelled(set / 8.0);
            break;
        case 4:
            value.real->set_string("short");
            value.written = "\"short\"";
            break;
        default: {
            std::string bytes(choose(9), 'x');
            value.real->set_binary_data(bytes.data(), static_cast<unsigned int>(bytes.size()));
            value.written = literal(bytes);
        }
        }
    }

    void read_value() {
        const ParserValue& value = *some_loose().real;
        unsigned int size = 0;
        value.make_value();
        value.get_as_bool();
        value.get_as_char();
        value.get_as_int();
        value.get_as_double();
        value.get_as_string();
        value.get_as_binary_data(size);
    }

    /// Sets a cleared value again at once, because what a cleared value reads as depends on its type.
    void clear_value() {
        LooseValue& value = some_loose();
        value.real->clear();
        value.real->set_int(1);
        value.written = "1";
    }

    void copy_value() {
        LooseValue& to = some_loose();
        const LooseValue& from = some_loose();
        put(to, std::make_unique<ParserValue>(*from.real), from.written);
    }

    /// Afterwards both refer to the same content, and only one of them may be destroyed.
    void assign_value() {
        LooseValue& value = some_loose();
        alignas(ParserValue) unsigned char room[sizeof(ParserValue)];
        const auto* const copy = new (room) ParserValue(*value.real);
        auto assigned = std::make_unique<ParserValue>(0);
        *assigned = *copy;
        put(value, std::move(assigned), value.written);
    }

private:
    struct LooseValue {
        std::unique_ptr<ParserValue> real;
        std::string written;
    };

    static void put(LooseValue& value, std::unique_ptr<ParserValue> real, const std::string& text) {
        value.written = text;
        value.real = std::move(real);
    }
    static void renew(LooseValue& value) { put(value, std::make_unique<ParserValue>(7), "7"); }
    LooseValue& some_loose() { return values_[choose(std::size(values_))]; }

    LooseValue values_[2];
};
