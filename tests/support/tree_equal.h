#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <cstring>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// Compares the content of two trees: names, kinds, templates, array counts, and types and spellings of values. Ignores lines and columns.
/// Walks with an explicit stack, so that depth does not matter.
class TreeComparison {
public:
    TreeComparison(const ParserGroup& left, const ParserGroup& right) {
        pending_.emplace_back(&left, &right);
    }

    /// The first difference found; empty when the trees are equal.
    std::string run() {
        while (difference_.empty() && !pending_.empty()) {
            const auto [left, right] = pending_.back();
            pending_.pop_back();
            compare_groups(*left, *right);
        }
        return difference_;
    }

private:
    void compare_groups(const ParserGroup& left, const ParserGroup& right) {
        same("group name", left.get_name(), right.get_name());
        same("number of entries", left.get_entries().get_count(), right.get_entries().get_count());
        for (unsigned int i = 0; difference_.empty() && i < left.get_entries().get_count(); ++i) {
            compare_entries(*left.get_entries()[i], *right.get_entries()[i]);
        }
    }

    void compare_entries(const ParserEntry& left, const ParserEntry& right) {
        same("entry name", left.get_name(), right.get_name());
        same("entry type", left.get_type(), right.get_type());
        same("template", left.get_template(), right.get_template());
        same("array count", left.get_array_count(), right.get_array_count());
        same("number of values", left.get_value_count(), right.get_value_count());
        for (unsigned int i = 0; difference_.empty() && i < left.get_value_count(); ++i) {
            compare_values(left, right, i);
        }
        if (!difference_.empty()) {
            difference_ += "\n  in entry '" + std::string(left.get_name().get_view()) + "'";
        }
    }

    void compare_values(const ParserEntry& left, const ParserEntry& right, unsigned int i) {
        same("value type", left.get_value_type(i), right.get_value_type(i));
        if (!difference_.empty()) {
            return;
        }
        if (left.is_value_group(i)) {
            pending_.emplace_back(left.get_group(i), right.get_group(i));
        } else if (left.get_value_type(i) == ParserValue::TYPE_BINARY_DATA) {
            same("bytes", bytes(left, i), bytes(right, i));
        } else {
            same("spelling", left.get_word(i), right.get_word(i));
        }
    }

    static std::string bytes(const ParserEntry& entry, unsigned int i) {
        const void* data = entry.get_binary_data(i);
        return data == nullptr ? std::string()
                               : std::string(static_cast<const char*>(data), entry.get_binary_data_size(i));
    }

    void same(const char* what, const CoreString& left, const CoreString& right) {
        same(what, left.get_view(), right.get_view());
    }

    template <class T>
    void same(const char* what, const T& left, const T& right) {
        if (difference_.empty() && left != right) {
            std::ostringstream text;
            text << what << " differs: '" << left << "' and '" << right << "'";
            difference_ = text.str();
        }
    }

    std::vector<std::pair<const ParserGroup*, const ParserGroup*>> pending_;
    std::string difference_;
};

/// The first difference between two trees; empty when they are equal.
inline std::string tree_difference(const ParserGroup& left, const ParserGroup& right) {
    return TreeComparison(left, right).run();
}
