#include "input/document.h"
#include "output/text_display.h"
#include "parser/parser_archive.h"

namespace bkdoc {

namespace {

/// How many words name no string.
unsigned int count_nameless(const ParserArchive& archive) {
    unsigned int count = 0;
    for (const unsigned int index : archive.indices) {
        count += index >= archive.strings.get_count() ? 1 : 0;
    }
    return count;
}

} // namespace

// The library reads on behind damage inside a group, and says so only by a message: what is left of the tree is not
// taken for the document.
void Document::read_binary() {
    CoreVector<char> data;
    if (!input_.load(data)) {
        refusal_ = get_name() + ": cannot be read, or is too large";
        return;
    }
    LogCollector log;
    read_ = file_.set_binary(data) && log.get_messages().empty();
    if (!read_) {
        refusal_ = get_name() + ": " +
                   (log.get_messages().empty() ? "the binary data is bad" : log.get_messages().front()) +
                   "; bkdoc dump shows where";
    }
}

void Document::read_archive() {
    ParserArchive archive;
    const CoreString path{std::string_view(input_.get_path())};
    const CoreString error = ParserImpl::load_archive(archive, path, nullptr);
    CoreString text;
    if (!error.is_empty()) {
        refusal_ = get_name() + ": " + std::string(error.get_view());
    } else if (!ParserImpl::get_archive_text(archive, text, options_.get_limits())) {
        refusal_ = get_name() + ": the text of the archive is too large for its size; --trusted reads it";
    } else {
        const unsigned int nameless = count_nameless(archive);
        archive_facts_ = {archive.strings.get_count(), archive.indices.get_count()};
        if (nameless != 0) {
            damage_.push_back(counted(nameless, "word is", "words are") +
                              " left out: no string has the number");
        }
        parse_archive(text);
    }
}

// The library parses the same words with ParserImpl::group_set_archive, but tells no places.
void Document::parse_archive(const CoreString& text) {
    ReadRecorder recorder([this](const CoreString&, const CoreString&) {
        return SourceName{get_name(), {}};
    });
    const CoreString path{std::string_view(input_.get_path())};
    recorder.file_entered(path, path, text);
    recorder.piece_copied(0, text.get_length(), 0);
    LogCollector log;
    file_.get_root().set_text(text, default_parser_serial_version, nullptr, &recorder);
    sources_ = std::move(recorder.get_sources());
    take_faults(recorder.get_faults());
    read_ = true;
}

} // namespace bkdoc
