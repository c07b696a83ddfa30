#include "output/display/text_display.h"
#include "output/json_writer.h"
#include "output/problems/report.h"
#include "tree/tree_compare.h"
#include "verbs/verbs.h"

#include <algorithm>

namespace bkdoc {

namespace {

void write_side(std::string_view name, std::string_view text, std::size_t width, Output& out) {
    out << "  " << name << ":" << std::string(width - count_characters(name) + 1, ' ') << text << "\n";
}

void write_difference(const Difference& difference, std::string_view first, std::string_view second,
                      Output& out) {
    const std::size_t width = std::max(count_characters(first), count_characters(second));
    out << first << " and " << second << " differ at ";
    out.paint(Tone::strong, difference.path.empty() ? "the root" : difference.path);
    out << ", " << difference.what << ":\n";
    write_side(first, difference.first, width, out);
    write_side(second, difference.second, width, out);
}

void write_json(const std::optional<Difference>& difference, bool content, Output& out) {
    JsonWriter json(out);
    json.begin_object();
    json.member("same", !difference.has_value());
    json.member("compared", content ? "content" : "everything");
    if (difference) {
        json.key("difference");
        json.begin_object();
        json.member("path", difference->path);
        json.member("what", difference->what);
        json.member("first", difference->first);
        json.member("second", difference->second);
        json.end_object();
    }
    json.end_object();
    json.finish();
}

} // namespace

ExitCode run_same(const Arguments& arguments, Streams& streams) {
    OpenOptions open;
    if (!take_opening(arguments, open, streams)) {
        return EXIT_UNREADABLE;
    }
    const OpenedDocument first = open_document(arguments.operands().at(0), open, streams);
    const OpenedDocument second = open_document(arguments.operands().at(1), open, streams);
    const ExitCode result = std::max(report_aside(first, streams), report_aside(second, streams));
    if (!first.is_read() || !second.is_read()) {
        return result;
    }
    for (const OpenedDocument* document : {&first, &second}) {
        if (document->lacks_includes() || document->is_damaged()) {
            complain(streams, document->name() + ": not compared because part of it is missing");
            return EXIT_UNREADABLE;
        }
    }
    const bool content = arguments.has("--content");
    const std::string first_name = shown(first.name(), file_name_limit);
    const std::string second_name = shown(second.name(), file_name_limit);
    const std::optional<Difference> difference =
        find_difference(first.root(), second.root(), content ? Likeness::content : Likeness::everything);
    if (arguments.has("--json")) {
        write_json(difference, content, streams.out);
        return difference ? EXIT_FAULTS : EXIT_CLEAN;
    }
    if (difference) {
        write_difference(*difference, first_name, second_name, streams.out);
        return EXIT_FAULTS;
    }
    streams.out << first_name << " and " << second_name << " hold the same "
                << (content ? "names and values" : "tree") << "\n";
    return EXIT_CLEAN;
}

} // namespace bkdoc
