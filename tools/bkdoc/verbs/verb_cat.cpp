#include "output/document_text.h"
#include "verbs/each_document.h"
#include "verbs/verbs.h"

#include <string_view>

namespace bkdoc {

ExitCode run_cat(const Arguments& arguments, Streams& streams) {
    const bool is_compact = arguments.has("--compact");
    bool is_first = true;
    const ExitCode result =
        for_each_selection(arguments, streams, [&](const OpenedDocument&, const ParserGroup& group) {
            const std::string text = is_compact ? compact_document_text(group) : document_text(group);
            // Several documents make one, which has one version line.
            const std::string_view rest = std::string_view(text).substr(is_first ? 0 : version_line().size());
            streams.out << rest;
            is_first = false;
        });
    if (!is_compact && !is_first && streams.out.is_terminal()) {
        streams.out
            << "\n"; // a document ends without a line end, and the prompt would stand on its last line
    }
    return result;
}

} // namespace bkdoc
