#include "report.h"
#include "stream_device.h"
#include "verbs.h"

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
    const unsigned int head_length = text.get_length();
    root.get_text(text, false, false, 1);
    if (text.get_length() == head_length && !root.get_entries().is_empty()) {
        return; // why is in the log
    }
    text += "\n";
    out << text.get_view();
}

void write_whole(Document& document, Output& out) {
    document.get_file().write(ParserFile::MODE_TEXT, CoreString(StreamDevice::output_path), CoreString());
    if (out.is_terminal()) {
        out << "\n"; // a document ends without a line end, and the prompt would stand on its last line
    }
}

} // namespace

ExitCode run_cat(const CatOptions& options, Streams& streams, StreamDevice& device) {
    Document document(options.file, options.open, device);
    const ExitCode result = report_aside(document, streams);
    if (!document.is_read()) {
        return result;
    }
    LogCollector log;
    (options.compact ? write_compact : write_whole)(document, streams.out);
    // A write that failed is told when the stream is closed.
    if (!log.get_messages().empty() && !streams.out.has_failed()) {
        complain(streams, document.get_name() + ": cannot be written: " + log.get_messages().front());
        return EXIT_UNREADABLE;
    }
    return result;
}

} // namespace bkdoc
