#include "input/stream_device.h"
#include "output/report.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr const char* version_name = "#Brellwick_Serial_Version";

// On one line a version entry would take all that follows for the version: the line before the document
// says it.
void write_compact(Document& document, Output& out) {
    ParserGroup& root = document.get_file().get_root();
    remove_version_entry(root);
    CoreString text(version_name);
    text += " ";
    text += default_parser_serial_version.get_value();
    text += "\n";
    root.get_text(text, false, false, 1);
    text += "\n";
    out << text.get_view();
}

bool write_whole(Document& document, Output& out) {
    const LogCollector quiet; // a write that fails is seen by the stream itself
    const bool opened =
        document.get_file().write(ParserFile::MODE_TEXT, CoreString(StreamDevice::output_path), CoreString());
    if (out.is_terminal()) {
        out << "\n"; // a document ends without a line end, and the prompt would stand on its last line
    }
    return opened;
}

} // namespace

ExitCode run_cat(const CatOptions& options, Streams& streams, StreamDevice& device) {
    Document document(options.file, options.open, device);
    const ExitCode result = report_aside(document, streams);
    if (!document.is_read()) {
        return result;
    }
    if (options.compact) {
        write_compact(document, streams.out);
    } else if (!write_whole(document, streams.out)) {
        complain(streams, "the document cannot be written");
        return EXIT_UNREADABLE;
    }
    return result;
}

} // namespace bkdoc
