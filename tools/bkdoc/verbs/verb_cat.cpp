#include "output/display/document_text.h"
#include "verbs/each_document.h"
#include "verbs/verbs.h"

#include <new>
#include <string_view>

namespace bkdoc {

ExitCode run_cat(const Arguments& arguments, Streams& streams) {
    const bool is_compact = arguments.has("--compact");
    bool is_first = true;
    const auto write = [&](const OpenedDocument& document, const ParserGroup& group) {
        if (document.lacks_includes() || document.is_damaged()) {
            complain(streams, document.name() + ": not written because part of it is missing");
            return EXIT_UNREADABLE;
        }
        std::string text;
        try {
            text = is_compact ? compact_document_text(group) : document_text(group);
        } catch (const std::bad_alloc&) {
            complain(streams, document.name() + ": cannot be written: out of memory");
            return EXIT_UNREADABLE;
        }
        // Several documents become one, with one version line.
        streams.out << std::string_view(text).substr(is_first ? 0 : version_line().size());
        is_first = false;
        return EXIT_CLEAN;
    };
    const ExitCode result = for_each_selection(arguments, streams, write);
    if (!is_compact && !is_first && streams.out.is_terminal()) {
        streams.out
            << "\n"; // the printed document has no last line end, so the prompt would follow it on the line
    }
    return result;
}

} // namespace bkdoc
