#include "verbs/diff/diff_report.h"

#include "output/display/text_display.h"
#include "output/json_writer.h"

#include <algorithm>
#include <array>
#include <map>

namespace bkdoc {

namespace {

using bk_parser::TreeChange;
using Kind = TreeChange::Kind;

constexpr std::array kinds = {Kind::value,   Kind::head,  Kind::added,
                              Kind::removed, Kind::moved, Kind::renamed};
constexpr std::array<std::string_view, kinds.size()> sums = {" changed", " of another kind", " added",
                                                             " removed", " moved",           " renamed"};

using Counts = std::array<std::size_t, kinds.size()>;

std::string text_of_counts(const Counts& counts) {
    std::string text;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (counts[i] != 0) {
            text += (text.empty() ? "" : ", ") + grouped(counts[i]) + std::string(sums[i]);
        }
    }
    return text;
}

/// Added and removed values count as changes of their entries.
Counts counts_of(const std::vector<ToldDifference>& differences) {
    Counts counts{};
    for (const ToldDifference& difference : differences) {
        ++counts[static_cast<std::size_t>(std::find(kinds.begin(), kinds.end(), difference.change.kind) -
                                          kinds.begin())];
    }
    return counts;
}

void write_names(JsonWriter& json, std::string_view key, const std::vector<std::string>& names) {
    json.key(key);
    json.begin_array();
    for (const std::string& name : names) {
        json.string(name);
    }
    json.end_array();
}

} // namespace

void write_one_sided(const std::string& folder, const std::string& name, Output& out) {
    out.paint(Tone::dim, "only in " + shown(folder, file_name_limit) + ":");
    out << " ";
    out.paint(Tone::strong, shown(name, file_name_limit));
    out << "\n";
}

void write_difference(const ToldDifference& difference, Output& out) {
    out.paint(Tone::dim, shown(difference.file, file_name_limit) +
                             (difference.line == 0 ? "" : ":" + std::to_string(difference.line)));
    out << " ";
    out.paint(Tone::strong, shown(difference.path, longest_path));
    if (!difference.what.empty()) {
        out << " " << difference.what;
    }
    if (!difference.before.empty()) {
        out << " ";
        out.paint(Tone::error, difference.before);
    }
    if (!difference.before.empty() && !difference.after.empty()) {
        out << " ->";
    }
    if (!difference.after.empty()) {
        out << " ";
        out.paint(Tone::text, difference.after);
    }
    out << "\n";
}

void write_statistics(const std::vector<ToldDifference>& differences, Output& out) {
    std::map<std::string, std::vector<ToldDifference>> by_file;
    for (const ToldDifference& difference : differences) {
        by_file[difference.file].push_back(difference);
    }
    for (const auto& [file, its] : by_file) {
        out << shown(file, file_name_limit) << ": " << text_of_counts(counts_of(its)) << "\n";
    }
    out << counted(differences.size(), "difference", "differences") << "\n";
}

void write_differences_json(const std::vector<ToldDifference>& differences, const OneSided* one_sided,
                            Output& out) {
    JsonWriter json(out);
    json.begin_object();
    json.member("same", differences.empty() && (one_sided == nullptr || one_sided->empty()));
    json.key("differences");
    json.begin_array();
    for (const ToldDifference& difference : differences) {
        json.begin_object();
        json.member("kind", word_of(difference.change.kind));
        json.member("file", difference.file);
        json.member("line", difference.line);
        json.member("column", difference.column);
        json.member("path", difference.path);
        if (!difference.path_before.empty() && difference.path_before != difference.path) {
            json.member("path_before", difference.path_before);
        }
        if (!difference.before.empty()) {
            json.member("before", difference.before);
        }
        if (!difference.after.empty()) {
            json.member("after", difference.after);
        }
        json.end_object();
    }
    json.end_array();
    if (one_sided != nullptr) {
        write_names(json, "only_in_a", one_sided->before);
        write_names(json, "only_in_b", one_sided->after);
    }
    json.end_object();
    json.finish();
}

} // namespace bkdoc
