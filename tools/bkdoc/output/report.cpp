#include "output/report.h"

#include "output/fault_notes.h"
#include "output/snippet.h"
#include "output/text_display.h"

#include <vector>

namespace bkdoc {

namespace {

constexpr std::size_t word_limit = 300; // characters: a word of the document may be of any length

std::string place_text(const SourceMap& sources, const Spot& spot) {
    const SourceFile& file = sources.file_of(spot);
    const Place place = file.text.place_of(spot.offset);
    return shown(file.name.shown, word_limit) + ":" + std::to_string(place.line) + ":" +
           std::to_string(place.column) + ":";
}

void write_chain(const SourceMap& sources, std::size_t inclusion, Output& out) {
    bool first = true;
    while (inclusion != 0) {
        const Spot& directive = sources.inclusion(inclusion).directive;
        out << (first ? "in file included from " : "                 from ");
        out.paint(Tone::strong, place_text(sources, directive));
        out << "\n";
        first = false;
        inclusion = directive.inclusion;
    }
}

/// Writes what is found at places of the document, one after the other.
class Reporter {
public:
    Reporter(const SourceMap& sources, Output& out) : sources_(sources), out_(out) {}

    void write(Tone tone, std::string_view severity, std::string_view message, const Spot& spot) {
        if (spot.inclusion != inclusion_) {
            write_chain(sources_, spot.inclusion, out_);
            inclusion_ = spot.inclusion;
        }
        out_.paint(Tone::strong, place_text(sources_, spot));
        out_ << " ";
        out_.paint(tone, severity);
        out_ << " ";
        out_.paint(Tone::strong, shown(message, word_limit));
        out_ << "\n";
        write_snippet(sources_.file_of(spot).text, spot, out_);
    }

private:
    const SourceMap& sources_;
    Output& out_;
    std::size_t inclusion_ = 0; // of the fault written last
};

// The library names what it looked for as often as there were folders to look in: each such line says which.
void write_places(const Document& document, Output& out) {
    constexpr std::string_view item = "    - '";
    const std::vector<std::string>& folders = document.get_options().search_paths;
    std::size_t folder = 0;
    for (std::size_t i = 1; i < document.get_messages().size(); ++i) {
        std::string_view line = document.get_messages()[i];
        if (line.starts_with(item) && line.ends_with('\'')) {
            line.remove_prefix(item.size());
            line.remove_suffix(1);
            const std::string path = candidate_path(folder < folders.size() ? folders[folder] : "", line);
            out << item << shown(path, word_limit) << "'\n";
            ++folder;
        } else {
            out << shown(line, word_limit) << "\n";
        }
    }
}

/// What the library says of an enciphered file that the key does not fit.
bool is_undeciphered(std::string_view message) noexcept {
    return message.starts_with("Failed to read binary data from file ") ||
           message.starts_with("Incompatible binary data found in file ");
}

void write_failed_include(const Document& document, Reporter& reporter, Output& out) {
    const std::vector<std::string>& messages = document.get_messages();
    const std::string message = messages.empty() ? "The file cannot be included." : messages.front();
    reporter.write(Tone::error, "error:", message, *document.get_failed_directive());
    if (is_undeciphered(message)) {
        out << "  note: the file is enciphered; --key, --key-file or BKDOC_KEY gives its key\n";
    }
    write_places(document, out);
}

void write_damage(const Document& document, Output& out) {
    for (const std::string& damage : document.get_damage()) {
        out.paint(Tone::strong, shown(document.get_name(), word_limit) + ":");
        out << " ";
        out.paint(Tone::warning, "warning:");
        out << " ";
        out.paint(Tone::strong, damage);
        out << "\n";
    }
}

} // namespace

void report(const Document& document, Output& out) {
    write_damage(document, out);
    Reporter reporter(document.get_sources(), out);
    for (const DocumentFault& fault : document.get_faults()) {
        if (out.has_failed()) {
            return;
        }
        const bool is_end = fault.kind == ParserReadObserver::FAULT_INCLUDE_LEFT_OPEN; // the reading's, too
        reporter.write(is_end ? Tone::error : Tone::warning, is_end ? "error:" : "warning:", fault.message,
                       fault.spot);
        if (const std::string_view note = note_for(fault, document.get_sources()); !note.empty()) {
            out << "  note: " << note << "\n";
        }
    }
    if (document.get_failed_directive()) {
        write_failed_include(document, reporter, out);
    }
}

ExitCode reading_result(const Document& document) {
    if (!document.is_read()) {
        return EXIT_UNREADABLE;
    }
    return document.has_faults() ? EXIT_FAULTS : EXIT_CLEAN;
}

ExitCode report_aside(const Document& document, Streams& streams) {
    if (!document.get_refusal().empty()) {
        complain(streams, document.get_refusal());
    }
    report(document, streams.err);
    streams.err.flush();
    return reading_result(document);
}

} // namespace bkdoc
