#include "output/display/text_display.h"
#include "output/json_writer.h"
#include "verbs/each_document.h"
#include "verbs/stats/space.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <cmath>

namespace bkdoc {

namespace {

constexpr std::size_t usual_top = 20;
constexpr std::size_t number_width = 14;
constexpr std::size_t share_width = 8;
constexpr std::size_t longest_name = 200;

SpaceBy by_of(const Arguments& arguments) {
    const std::string by = arguments.value("--by").value_or("path");
    return by == "name" ? SpaceBy::name : by == "type" ? SpaceBy::type : SpaceBy::path;
}

std::string_view word_of(SpaceBy by) noexcept {
    return by == SpaceBy::name ? "name" : by == SpaceBy::type ? "type" : "path";
}

/// A share in tenths of a percent, rounded.
unsigned long long share_of(unsigned long long part, unsigned long long whole) noexcept {
    return whole == 0 ? 0
                      : static_cast<unsigned long long>(
                            std::llround(static_cast<double>(part) * 1000.0 / static_cast<double>(whole)));
}

std::string share_text(unsigned long long part, unsigned long long whole) {
    const unsigned long long share = share_of(part, whole);
    return std::to_string(share / 10) + "." + std::to_string(share % 10);
}

std::string right(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

/// What the report says of all documents together.
struct Statistics {
    std::vector<std::string> files;
    SpaceBy by;
    Space total;
    std::vector<SpaceRow> rows;
    std::size_t left_out = 0;
};

void write_table(const Statistics& statistics, Output& out) {
    const std::string name = statistics.files.size() == 1
                                 ? shown(statistics.files.front(), file_name_limit)
                                 : counted(statistics.files.size(), "document", "documents");
    out.paint(Tone::strong, name);
    out << ": " << counted(statistics.total.bytes, "byte", "bytes") << " of text, "
        << counted(statistics.total.entries, "entry", "entries") << ", "
        << counted(statistics.total.values, "value", "values") << "\n";
    if (statistics.rows.empty()) {
        return;
    }
    out.paint(Tone::dim, right("bytes", number_width) + right("share", share_width) +
                             right("entries", number_width) + right("values", number_width) + "  " +
                             std::string(word_of(statistics.by)));
    out << "\n";
    for (const SpaceRow& row : statistics.rows) {
        out << right(grouped(row.space.bytes), number_width)
            << right(share_text(row.space.bytes, statistics.total.bytes) + "%", share_width)
            << right(grouped(row.space.entries), number_width)
            << right(grouped(row.space.values), number_width) << "  ";
        out.paint(Tone::name, shown(row.name, longest_name));
        out << "\n";
    }
    if (statistics.left_out != 0) {
        out.paint(Tone::dim,
                  "and " + counted(statistics.left_out, "more row", "more rows") + "; --top 0 shows all");
        out << "\n";
    }
}

void write_space(const Space& space, JsonWriter& json) {
    json.member("bytes", space.bytes);
    json.member("entries", space.entries);
    json.member("values", space.values);
}

void write_json(const Statistics& statistics, Output& out) {
    JsonWriter json(out);
    json.begin_object();
    json.key("files");
    json.begin_array();
    for (const std::string& file : statistics.files) {
        json.string(file);
    }
    json.end_array();
    write_space(statistics.total, json);
    json.member("by", word_of(statistics.by));
    json.key("rows");
    json.begin_array();
    for (const SpaceRow& row : statistics.rows) {
        json.begin_object();
        json.member("name", row.name);
        write_space(row.space, json);
        json.key("share");
        json.raw(share_text(row.space.bytes, statistics.total.bytes));
        json.end_object();
    }
    json.end_array();
    json.member("left_out", statistics.left_out);
    json.end_object();
    json.finish();
}

} // namespace

ExitCode run_stats(const Arguments& arguments, Streams& streams) {
    Statistics statistics;
    statistics.by = by_of(arguments);
    SpaceCount count(statistics.by);
    const ExitCode result = for_each_document(arguments, streams, [&](const OpenedDocument& document) {
        statistics.files.push_back(document.name());
        count.add(document.root());
        return EXIT_CLEAN;
    });
    if (statistics.files.empty() || result == EXIT_INTERRUPTED) {
        return result;
    }
    statistics.total = count.total();
    statistics.rows = count.rows();
    const std::size_t top = arguments.number_or("--top", usual_top);
    if (top != 0 && statistics.rows.size() > top) {
        statistics.left_out = statistics.rows.size() - top;
        statistics.rows.resize(top);
    }
    if (arguments.has("--json")) {
        write_json(statistics, streams.out);
    } else {
        write_table(statistics, streams.out);
    }
    return result;
}

} // namespace bkdoc
