#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <string>

/// A group as text on one line. Doubles always have a point, however numbers that were set are printed.
inline std::string described(const ParserGroup& group) {
    std::string text;
    for (const ParserEntry* entry : group.get_entries()) {
        text += ' ' + plain(entry->get_name());
        text += entry->is_template() ? '<' + plain(entry->get_template()) + '>' : "";
        text += entry->is_array() ? '[' + std::to_string(entry->get_array_count()) + ']' : "";
        for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
            if (entry->is_value_group(i)) {
                text += " {" + described(*entry->get_group(i)) + " }";
                continue;
            }
            const std::string word = plain(entry->get_word(i));
            const bool is_bare_double = entry->get_value_type(i) == ParserValue::TYPE_DOUBLE &&
                                        word.find_first_of(".e") == std::string::npos;
            text +=
                entry->is_value_string(i) ? " \"" + word + '"' : ' ' + word + (is_bare_double ? ".0" : "");
        }
    }
    return text;
}
