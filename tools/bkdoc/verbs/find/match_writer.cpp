#include "verbs/find/match_writer.h"

#include "document/path.h"
#include "document/places.h"
#include "output/display/text_display.h"
#include "output/display/value_display.h"
#include "output/problems/report.h"

#include <optional>

namespace bkdoc {

namespace {

constexpr std::size_t few_matches = 8;

/// Finds the paths of matches. Computing the paths of all entries takes longer than searching for a few.
class MatchPaths {
public:
    MatchPaths(const ParserGroup& root, std::size_t match_count) : root_(root) {
        if (match_count > few_matches) {
            index_.emplace(root);
        }
    }

    std::string of(const Match& match) const {
        const std::string path =
            index_ ? index_->path_of(*match.entry) : bk_parser::path_of(root_, *match.entry);
        return path + (match.is_whole() ? "" : "@" + std::to_string(match.value));
    }

private:
    const ParserGroup& root_;
    std::optional<bk_parser::PathIndex> index_;
};

std::string file_text(const OpenedDocument& document, const bk_parser::EntryPlace& place) {
    return place.is_known() ? shown_file(place.file, document.name()) : document.name();
}

} // namespace

MatchWriter::Form MatchWriter::form_of(const Arguments& arguments) {
    return arguments.has("-l")         ? Form::files
           : arguments.has("--count")  ? Form::counts
           : arguments.has("--json")   ? Form::json
           : arguments.has("--values") ? Form::values
                                       : Form::lines;
}

void MatchWriter::begin() {
    if (form_ == Form::json) {
        json_.begin_array();
    }
}

void MatchWriter::end() {
    if (form_ == Form::json) {
        json_.end_array();
        json_.finish();
    }
}

void MatchWriter::document(const OpenedDocument& document, const std::vector<Match>& matches) {
    const std::string name = shown(document.name(), file_name_limit);
    if (form_ == Form::counts) {
        out_ << (has_many_files_ ? name + ": " : std::string()) << std::to_string(matches.size()) << "\n";
        return;
    }
    if (matches.empty()) {
        return;
    }
    if (form_ == Form::files) {
        out_ << name << "\n";
        return;
    }
    if (form_ == Form::values) {
        for (const Match& match : matches) {
            out_ << plain_values(match) << "\n";
        }
        return;
    }
    const MatchPaths paths(document.root(), matches.size());
    for (const Match& match : matches) {
        if (out_.has_failed()) {
            return;
        }
        form_ == Form::json ? object(document, paths.of(match), match)
                            : line(document, paths.of(match), match);
    }
}

/// Writes "file:line:column: path = values". Leaves out the place where the form has none, and the values where there are none.
void MatchWriter::line(const OpenedDocument& document, const std::string& path, const Match& match) {
    const bk_parser::EntryPlace place = place_of(document.document(), *match.entry);
    std::string where = shown(file_text(document, place), file_name_limit) + ":";
    if (place.is_known()) {
        where += std::to_string(place.line) + ":" + std::to_string(place.column) + ":";
    }
    out_.paint(Tone::dim, where);
    out_ << " ";
    out_.paint(Tone::name, path);
    if (const std::string values = spelled_values(match); !values.empty()) {
        out_ << " = ";
        const bool is_single = !match.is_whole() || match.entry->get_value_count() == 1;
        out_.paint(is_single ? tone_of(match.entry->get_value_type(match.is_whole() ? 0 : match.value))
                             : Tone::plain,
                   values);
    }
    out_ << "\n";
}

void MatchWriter::object(const OpenedDocument& document, const std::string& path, const Match& match) {
    const ParserEntry& entry = *match.entry;
    const bk_parser::EntryPlace place = place_of(document.document(), entry);
    json_.begin_object();
    json_.member("file", file_text(document, place));
    if (place.is_known()) {
        json_.member("line", place.line);
        json_.member("column", place.column);
    }
    json_.member("path", path);
    json_.member("name", std::string_view(entry.get_name().get_view()));
    json_.key("values");
    json_.begin_array();
    const unsigned int first = match.is_whole() ? 0 : match.value;
    const unsigned int end = match.is_whole() ? entry.get_value_count() : match.value + 1;
    for (unsigned int i = first; i < end; ++i) {
        json_.raw(json_value(entry, i));
    }
    json_.end_array();
    json_.end_object();
}

} // namespace bkdoc
