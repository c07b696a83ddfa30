#include "input/files/glob.h"

#include "platform/paths.h"

#include <algorithm>
#include <filesystem>

namespace bkdoc {

namespace {

/// Whether a class such as "[a-z]" at the front of the pattern contains the character. Removes the class from the pattern. A
/// bracket that is not closed is an ordinary character.
bool takes_class(std::string_view& pattern, char character) noexcept {
    const std::size_t end = pattern.find(']', 2);
    if (end == std::string_view::npos) {
        const bool is_same = character == '[';
        pattern.remove_prefix(1);
        return is_same;
    }
    std::string_view set = pattern.substr(1, end - 1);
    pattern.remove_prefix(end + 1);
    const bool is_inverted = set.front() == '!' || set.front() == '^';
    if (is_inverted) {
        set.remove_prefix(1);
    }
    bool is_in = false;
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (i + 2 < set.size() && set[i + 1] == '-') {
            is_in = is_in || (set[i] <= character && character <= set[i + 2]);
            i += 2;
        } else {
            is_in = is_in || set[i] == character;
        }
    }
    return is_in != is_inverted;
}

bool takes_character(std::string_view& pattern, char character) noexcept {
    if (pattern.empty()) {
        return false;
    }
    if (pattern.front() == '[') {
        return takes_class(pattern, character);
    }
    const bool fits = pattern.front() == '?' || pattern.front() == character;
    pattern.remove_prefix(1);
    return fits;
}

/// Collects the paths that match a pattern. The pattern was split at its slashes.
class Expansion {
public:
    explicit Expansion(std::vector<std::string> steps) : steps_(std::move(steps)) {}

    /// Visits folders with an explicit list, because nothing bounds their depth.
    std::vector<std::string> run(const std::filesystem::path& begin) {
        open_.push_back({begin, 0});
        while (!open_.empty()) {
            const Open open = std::move(open_.back());
            open_.pop_back();
            enter(open);
        }
        std::sort(found_.begin(), found_.end());
        found_.erase(std::unique(found_.begin(), found_.end()), found_.end());
        return std::move(found_);
    }

private:
    struct Open {
        std::filesystem::path folder;
        std::size_t step;
    };

    void enter(const Open& open) {
        const std::string& step = steps_[open.step];
        if (step == "**" && open.step + 1 < steps_.size()) {
            open_.push_back({open.folder, open.step + 1});
        }
        std::error_code error;
        const std::filesystem::path listed = open.folder.empty() ? std::filesystem::path(".") : open.folder;
        for (std::filesystem::directory_iterator item(listed, error); !error && item != end(item);
             item.increment(error)) {
            take(open, *item, step);
        }
    }

    void take(const Open& open, const std::filesystem::directory_entry& item, const std::string& step) {
        const std::string name = text_of(item.path().filename());
        const std::filesystem::path path = open.folder / item.path().filename();
        std::error_code error;
        const bool is_last = open.step + 1 == steps_.size();
        if (step == "**") {
            if (!name.starts_with('.') && item.is_directory(error) && !item.is_symlink(error)) {
                open_.push_back({path, open.step});
            } else if (is_last && !name.starts_with('.')) {
                found_.push_back(slashed(path));
            }
        } else if ((!name.starts_with('.') || step.starts_with('.')) && matches_glob(step, name)) {
            if (is_last) {
                found_.push_back(slashed(path));
            } else if (item.is_directory(error)) {
                open_.push_back({path, open.step + 1});
            }
        }
    }

    std::vector<std::string> steps_;
    std::vector<Open> open_;
    std::vector<std::string> found_;
};

} // namespace

bool matches_glob(std::string_view pattern, std::string_view name) noexcept {
    std::string_view retry_pattern;
    std::string_view retry_name;
    bool may_retry = false;
    while (!name.empty() || !pattern.empty()) {
        if (!pattern.empty() && pattern.front() == '*') {
            pattern.remove_prefix(1);
            retry_pattern = pattern;
            retry_name = name;
            may_retry = true;
            continue;
        }
        if (!name.empty() && takes_character(pattern, name.front())) {
            name.remove_prefix(1);
            continue;
        }
        if (!may_retry || retry_name.empty()) {
            return false;
        }
        retry_name.remove_prefix(1);
        pattern = retry_pattern;
        name = retry_name;
    }
    return true;
}

bool is_glob(std::string_view text) noexcept {
    return text.find_first_of("*?[") != std::string_view::npos;
}

std::vector<std::string> expand_glob(const std::string& pattern) {
    const std::filesystem::path path = path_of(pattern);
    std::filesystem::path begin = path.root_path();
    std::vector<std::string> steps;
    for (const std::filesystem::path& part : path.relative_path()) {
        const std::string step = text_of(part);
        if (steps.empty() && !is_glob(step)) {
            begin /= part;
        } else if (!step.empty()) {
            steps.push_back(step);
        }
    }
    return steps.empty() ? std::vector<std::string>() : Expansion(std::move(steps)).run(begin);
}

} // namespace bkdoc
