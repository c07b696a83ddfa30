#pragma once

#include "document/path.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace bk_parser {

/// Means that the path names no value.
inline constexpr unsigned int no_value = Visit::whole_entry;

/// The literal of a condition.
struct PathLiteral {
    enum class Kind { number, string, boolean };
    Kind kind = Kind::number;
    double number = 0.0;
    bool boolean = false;
    std::string string;
};

/// The content of a pair of brackets. The selectors of a step apply from left to right.
struct PathSelector {
    enum class Kind { index, key, condition };
    enum class Operator { exists, equal, not_equal, less, at_most, greater, at_least };

    Kind kind = Kind::index;
    unsigned int index = 0; // among the entries of the group that pass the selectors before it
    std::string key;        // the first value
    std::vector<std::string>
        fields; // names of entries, from the entry on down; the entry itself when there are none
    unsigned int value = no_value;
    Operator comparison = Operator::exists;
    PathLiteral literal;
};

struct PathStep {
    bool is_any_depth = false; // "**"
    bool is_any_name = false;
    std::string name;
    std::optional<std::string> template_name;
    std::vector<PathSelector> selectors;
    unsigned int value = no_value;
    unsigned int index_count = 0; // of its selectors

    bool has_key() const noexcept {
        return std::any_of(selectors.begin(), selectors.end(), [](const PathSelector& selector) {
            return selector.kind == PathSelector::Kind::key;
        });
    }
    /// The value to read or set: without `@`, the one after the key.
    unsigned int named_value() const noexcept {
        return value != no_value ? value : static_cast<unsigned int>(has_key());
    }
};

/// The steps of a path. Two "**" never follow each other, and none is the last.
struct ParsedPath {
    std::string text;            // of a Path
    std::vector<PathStep> steps; // none when there is an error
    std::optional<PathError> error;

    static const ParsedPath& of(const Path& path) noexcept { return *path.parsed_; }
};

ParsedPath parse_path(std::string_view text);

/// The path of a parameter, parsed here when it is a text.
class PathArgument {
public:
    explicit PathArgument(PathRef path) {
        if (path.path() == nullptr) {
            parsed_ = parse_path(path.text());
        } else {
            given_ = &ParsedPath::of(*path.path());
        }
    }

    bool ok() const noexcept { return !get().error; }
    const ParsedPath& get() const noexcept { return given_ != nullptr ? *given_ : parsed_; }
    const std::vector<PathStep>& steps() const noexcept { return get().steps; }
    const PathStep& last() const noexcept { return get().steps.back(); }

private:
    const ParsedPath* given_ = nullptr;
    ParsedPath parsed_;
};

} // namespace bk_parser
