#include "output/display/text_display.h"
#include "pattern/pattern.h"
#include "verbs/find/find_run.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr std::size_t shown_pattern = 200; // characters

/// Looks for a pattern in the names and values of a document, in document order.
class Grep {
public:
    Grep(Pattern& pattern, std::string_view where)
        : pattern_(pattern), in_names_(where != "values"), in_values_(where != "names") {}

    std::vector<Match> search(const ParserGroup& root, const bk_parser::Path& path, bool first_only) {
        matches_.clear();
        for (const ParserEntry& entry : bk_parser::find_all(root, path)) {
            look_at(entry);
            if (first_only && !matches_.empty()) {
                break;
            }
        }
        return std::move(matches_);
    }

private:
    /// An entry whose name matches is one match, with all of its values.
    void look_at(const ParserEntry& entry) {
        if (in_names_ && fits_name(entry)) {
            matches_.push_back({&entry});
            return;
        }
        for (unsigned int i = 0; in_values_ && i < entry.get_value_count(); ++i) {
            if (fits_value(entry, i)) {
                matches_.push_back({&entry, i});
            }
        }
    }

    bool fits_name(const ParserEntry& entry) {
        return pattern_.fits(entry.get_name().get_view()) ||
               (entry.is_template() && pattern_.fits(entry.get_template().get_view()));
    }

    /// Matches the characters of a string and the spelling of a number. Binary data never matches.
    bool fits_value(const ParserEntry& entry, unsigned int i) {
        switch (entry.get_value_type(i)) {
        case ParserValue::TYPE_GROUP:
        case ParserValue::TYPE_BINARY_DATA:
            return false;
        case ParserValue::TYPE_STRING:
            return pattern_.fits(entry.get_string(i).get_view());
        default:
            return pattern_.fits(entry.get_word(i).get_view());
        }
    }

    Pattern& pattern_;
    bool in_names_;
    bool in_values_;
    std::vector<Match> matches_;
};

bool accept_pattern(const Pattern& pattern, const std::string& text, Streams& streams) {
    if (pattern.error().empty()) {
        return true;
    }
    const std::string before = shown(std::string_view(text).substr(0, pattern.error_offset()), shown_pattern);
    streams.out.flush();
    streams.err << "bkdoc: PATTERN: " << pattern.error() << "\n"
                << shown(text, shown_pattern) << "\n"
                << std::string(count_characters(before), ' ') << "^\n";
    return false;
}

} // namespace

ExitCode run_grep(const Arguments& arguments, Streams& streams) {
    const std::string& text = arguments.operands().front();
    Pattern pattern(text, {arguments.has("--fixed"), arguments.has("--ignore-case")});
    const bk_parser::Path path(arguments.value_or("--path", "**"));
    if (!accept_pattern(pattern, text, streams) || !accept_path(path, "--path", streams)) {
        return EXIT_UNREADABLE;
    }
    Grep grep(pattern, arguments.value_or("--in", "both"));
    return find_in_documents(arguments, streams, [&](const OpenedDocument& document, bool first_only) {
        return grep.search(document.root(), path, first_only);
    });
}

} // namespace bkdoc
