#pragma once

#include "tests/support/edit_values.h"

#include <iterator>
#include <string>

/// Interprets bytes as a sequence of edits. Makes each edit on trees of the library and on plain lists, and compares the two after each
/// edit. Any bytes are a valid script.
class EditScript : private ValueEdits {
public:
    explicit EditScript(std::string_view bytes) : ValueEdits(bytes) {}

    /// Makes every text that is read as long as a large document.
    EditScript& with_large_texts() {
        fills_pages_ = true;
        return *this;
    }

    /// The first difference, with the number of its step; empty when there is none.
    std::string run() {
        unsigned int steps = 0;
        while (!bytes_.empty() && check_.difference.empty()) {
            ++steps;
            step();
            keep_small();
            compare();
            compare_values();
        }
        return check_.difference.empty() ? std::string()
                                         : check_.difference + " differs after step " +
                                               std::to_string(steps) + ", edit " + std::to_string(edit_);
    }

private:
    void step() {
        static constexpr void (EditScript::*edits[])() = {
            // clang-format off
            &EditScript::add_entry, &EditScript::add_entry, &EditScript::refuse_entry, &EditScript::adopt_entry,
            &EditScript::add_group, &EditScript::set_source_entry, &EditScript::clear_group, &EditScript::move_within,
            &EditScript::move_one, &EditScript::detach, &EditScript::move_ordinary, &EditScript::move_all,
            &EditScript::remove_entries, &EditScript::remove_entry, &EditScript::remove_named,
            &EditScript::copy_group, &EditScript::copy_root, &EditScript::assign_group, &EditScript::renew_root,
            &EditScript::parse, &EditScript::parse, &EditScript::decode, &EditScript::encode, &EditScript::archive,
            &EditScript::encipher, &EditScript::print,
            &EditScript::add_bool, &EditScript::add_char, &EditScript::add_int, &EditScript::add_double,
            &EditScript::add_string, &EditScript::add_string_of_its_own, &EditScript::add_binary_data,
            &EditScript::add_word, &EditScript::add_quoted_word, &EditScript::add_vector,
            &EditScript::add_new_group, &EditScript::add_host_group, &EditScript::adopt_root, &EditScript::get_group,
            &EditScript::set_bool, &EditScript::set_int, &EditScript::set_double, &EditScript::set_string,
            &EditScript::set_binary_data, &EditScript::read, &EditScript::move_value, &EditScript::remove_values,
            &EditScript::change_fields, &EditScript::reset, &EditScript::copy_entry, &EditScript::copy_loose,
            &EditScript::assign_entry, &EditScript::decode_entry, &EditScript::renew_loose,
            &EditScript::renew_value, &EditScript::set_value, &EditScript::set_value, &EditScript::read_value,
            &EditScript::clear_value, &EditScript::copy_value, &EditScript::assign_value,
            // clang-format on
        };
        edit_ = choose(std::size(edits));
        const auto edit =
            edits[edit_]; // g++ 12 wrongly warns about the index in a call through a member pointer
        (this->*edit)();
    }

    unsigned int edit_ = 0;
};
