#include "tree/tree_compare.h"

#include "output/display/text_display.h"
#include "output/display/value_display.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>
#include <vector>

namespace bkdoc {

namespace {

constexpr std::size_t path_ends = 8; // names shown at either end of a long path
constexpr std::string_view nothing = "nothing";

std::string_view bytes_of(const ParserEntry& entry, unsigned int i) {
    const unsigned int size = entry.get_binary_data_size(i);
    return size == 0 ? std::string_view()
                     : std::string_view(static_cast<char*>(entry.get_binary_data(i)), size);
}

bool same_scalar(const ParserEntry& a, const ParserEntry& b, unsigned int i) {
    switch (a.get_value_type(i)) {
    case ParserValue::TYPE_BOOL:
        return a.get_bool(i) == b.get_bool(i);
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
        return a.get_int(i) == b.get_int(i);
    case ParserValue::TYPE_DOUBLE: // compares bits, because -0.0 == 0.0
        return std::bit_cast<core_uint64>(a.get_double(i)) == std::bit_cast<core_uint64>(b.get_double(i));
    case ParserValue::TYPE_BINARY_DATA:
        return bytes_of(a, i) == bytes_of(b, i);
    default:
        return a.get_word(i) == b.get_word(i);
    }
}

bool is_number(ParserValue::Type type) noexcept {
    return type == ParserValue::TYPE_CHAR || type == ParserValue::TYPE_INT ||
           type == ParserValue::TYPE_DOUBLE;
}

/// Two groups that are compared, and how far the comparison is.
struct Pair {
    const ParserGroup* first;
    const ParserGroup* second;
    unsigned int entry = 0;
    unsigned int value = 0;
};

const ParserEntry& entry_of(const ParserGroup& group, unsigned int i) {
    return *group.get_entries()[i];
}

class Comparison {
public:
    Comparison(const ParserGroup& first, const ParserGroup& second, Likeness likeness) : likeness_(likeness) {
        pairs_.push_back({&first, &second});
    }

    std::optional<Difference> run() {
        while (!pairs_.empty() && !difference_) {
            step();
        }
        return difference_;
    }

private:
    // One entry, up to the next group in it.
    void step() {
        Pair& pair = pairs_.back();
        const unsigned int first_count = pair.first->get_entries().get_count();
        const unsigned int second_count = pair.second->get_entries().get_count();
        if (pair.entry >= std::min(first_count, second_count)) {
            if (first_count != second_count) {
                report_entry(pair);
            }
            pairs_.pop_back();
            return;
        }
        const ParserEntry& a = entry_of(*pair.first, pair.entry);
        const ParserEntry& b = entry_of(*pair.second, pair.entry);
        if (pair.value == 0 && !same_heads(pair, a, b)) {
            return;
        }
        compare_values(pair, a, b);
    }

    bool same_heads(const Pair& pair, const ParserEntry& a, const ParserEntry& b) {
        if (a.get_name() != b.get_name()) {
            report_entry(pair);
        } else if (likeness_ == Likeness::content) {
            return true;
        } else if (shown_kind_of(a) != shown_kind_of(b)) {
            report("kind", shown_kind_of(a), shown_kind_of(b));
        } else if (a.get_template() != b.get_template()) {
            report("template", quoted_or_nothing(a.get_template()), quoted_or_nothing(b.get_template()));
        } else if (a.get_array_count() != b.get_array_count()) {
            report("array count", array_text(a), array_text(b));
        }
        return !difference_;
    }

    void compare_values(Pair& pair, const ParserEntry& a, const ParserEntry& b) {
        const unsigned int count = std::min(a.get_value_count(), b.get_value_count());
        while (pair.value < count) {
            const unsigned int i = pair.value++;
            if (a.get_value_type(i) != b.get_value_type(i)) {
                if (are_same_number(a, b, i)) {
                    continue;
                }
                report_value(a, b, i);
                return;
            }
            if (a.is_value_group(i)) {
                pairs_.push_back({a.get_group(i), b.get_group(i)}); // invalidates `pair`
                return;
            }
            if (!same_scalar(a, b, i)) {
                report_value(a, b, i);
                return;
            }
        }
        if (a.get_value_count() != b.get_value_count()) {
            report_value(a, b, count);
            return;
        }
        ++pair.entry;
        pair.value = 0;
    }

    bool are_same_number(const ParserEntry& a, const ParserEntry& b, unsigned int i) const {
        return likeness_ == Likeness::content && is_number(a.get_value_type(i)) &&
               is_number(b.get_value_type(i)) && a.get_double(i) == b.get_double(i);
    }

    static std::string shown_kind_of(const ParserEntry& entry) {
        switch (entry.get_type()) {
        case ParserEntry::TYPE_KEYWORD:
            return "keyword";
        case ParserEntry::TYPE_FUNCTION_CALL:
            return "function call";
        case ParserEntry::TYPE_RAW_TEXT:
            return "raw text";
        default:
            return "ordinary entry";
        }
    }

    static std::string quoted_or_nothing(const CoreString& name) {
        return name.is_empty() ? std::string(nothing) : "<" + shown(name.get_view(), 60) + ">";
    }

    static std::string array_text(const ParserEntry& entry) {
        return entry.is_array() ? "[" + std::to_string(entry.get_array_count()) + "]" : "no array";
    }

    // Numbers beyond the range of int are read as the nearest int.
    static bool is_beyond_int(const ParserEntry& entry, unsigned int i) {
        return entry.get_value_type(i) == ParserValue::TYPE_INT &&
               entry.get_double(i) != static_cast<double>(entry.get_word(i));
    }

    static std::string value_text(const ParserEntry& entry, unsigned int i) {
        if (i >= entry.get_value_count()) {
            return std::string(nothing);
        }
        const std::string text =
            std::string(type_word(entry.get_value_type(i))) + " " + shown_value(entry, i);
        return is_beyond_int(entry, i) ? text + ", taken for " + std::to_string(entry.get_int(i)) : text;
    }

    static std::string entry_text(const ParserGroup& group, unsigned int i) {
        return i < group.get_entries().get_count() ? shown_name(entry_of(group, i)) : std::string(nothing);
    }

    void report_value(const ParserEntry& a, const ParserEntry& b, unsigned int i) {
        report("value " + grouped(i + 1ULL), value_text(a, i), value_text(b, i));
    }

    // The path ends at the group when the entry is missing, or is another one.
    void report_entry(const Pair& pair) {
        difference_ = {path_to(pairs_.size() - 1), "entry " + grouped(pair.entry + 1ULL),
                       entry_text(*pair.first, pair.entry), entry_text(*pair.second, pair.entry)};
    }

    void report(std::string_view what, std::string_view first, std::string_view second) {
        difference_ = {path_to(pairs_.size()), std::string(what), std::string(first), std::string(second)};
    }

    std::string path_to(std::size_t count) const {
        std::string path;
        for (std::size_t i = 0; i < count; ++i) {
            if (count > 2 * path_ends + 1 && i == path_ends) {
                const std::size_t left_out = count - 2 * path_ends;
                path += "/(" + grouped(left_out) + " more)";
                i += left_out - 1;
            } else {
                path += (path.empty() ? "" : "/") + step_name(pairs_[i]);
            }
        }
        return path;
    }

    /// As in a path: "light[1]" is the second of several lights.
    static std::string step_name(const Pair& pair) {
        const CoreString& name = entry_of(*pair.first, pair.entry).get_name();
        unsigned int before = 0;
        unsigned int all = 0;
        for (unsigned int i = 0; i < pair.first->get_entries().get_count(); ++i) {
            const bool is_namesake = entry_of(*pair.first, i).get_name() == name;
            before += is_namesake && i < pair.entry ? 1 : 0;
            all += is_namesake ? 1 : 0;
        }
        return shown(name.get_view(), 60) + (all < 2 ? "" : "[" + std::to_string(before) + "]");
    }

    Likeness likeness_;
    std::vector<Pair> pairs_;
    std::optional<Difference> difference_;
};

} // namespace

std::optional<Difference> find_difference(const ParserGroup& first, const ParserGroup& second,
                                          Likeness likeness) {
    return Comparison(first, second, likeness).run();
}

} // namespace bkdoc
