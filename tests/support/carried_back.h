#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <string_view>
#include <vector>

/// Whether a tree that was read from a text reads back unchanged from what it prints. It does not when
///
/// - a string ends in a backslash, or the spelling of a number leaves a quote open, and no line end follows at once. What follows then
///   becomes a part of the word;
/// - a template is no name: it ends in a full stop, or is "yes" or "no". A text can have such a template only with an array suffix inside
///   it.
class CarriedBack {
public:
    CarriedBack(const ParserGroup& root, bool pretty) : pretty_(pretty) {
        const CoreVector<ParserEntry*>& entries = root.get_entries();
        if (entries.get_count() != 0) {
            last_of_all_ = entries[entries.get_count() - 1];
        }
        pending_.push_back(&root);
        while (result_ && !pending_.empty()) {
            const ParserGroup& group = *pending_.back();
            pending_.pop_back();
            for (const ParserEntry* entry : group.get_entries()) {
                visit(*entry);
            }
        }
    }

    explicit operator bool() const { return result_; }

private:
    void visit(const ParserEntry& entry) {
        result_ = result_ && is_name(entry.get_template().get_view());
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            if (entry.is_value_group(i)) {
                pending_.push_back(entry.get_group(i));
            } else if (swallows_what_follows(entry, i) && !line_ends_after(entry, i)) {
                result_ = false;
            }
        }
    }

    static bool is_name(std::string_view text) {
        return text != "yes" && text != "no" && !text.ends_with('.');
    }

    static bool swallows_what_follows(const ParserEntry& entry, unsigned int i) {
        const CoreString word = entry.get_word(i);
        return entry.is_value_string(i) ? word.get_view().ends_with('\\')
                                        : leaves_quote_open(word.get_view());
    }

    static bool leaves_quote_open(std::string_view word) {
        bool is_open = false;
        for (std::size_t i = 0; i < word.size(); ++i) {
            if (word[i] == '"' && (i == 0 || word[i - 1] != '\\')) {
                is_open = !is_open;
            }
        }
        return is_open;
    }

    bool line_ends_after(const ParserEntry& entry, unsigned int i) const {
        return i + 1 == entry.get_value_count() && entry.get_type() != ParserEntry::TYPE_FUNCTION_CALL &&
               (pretty_ || &entry == last_of_all_);
    }

    bool pretty_;
    bool result_ = true;
    const ParserEntry* last_of_all_ = nullptr;
    std::vector<const ParserGroup*> pending_;
};
