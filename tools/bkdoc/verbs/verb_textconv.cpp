#include "input/files/input.h"
#include "input/opened_document.h"
#include "output/display/document_text.h"
#include "output/display/text_display.h"
#include "output/problems/report.h"
#include "verbs/verbs.h"

#include <cstdint>

namespace bkdoc {

namespace {

/// Identifies bytes by their count and hash, so that a diff of two unreadable files shows that they differ.
std::string fingerprint(std::string_view bytes) {
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3u;
    }
    std::string digits;
    for (int shift = 60; shift >= 0; shift -= 4) {
        digits += hexadecimal_digits[(hash >> shift) & 15u];
    }
    return counted(bytes.size(), "byte", "bytes") + ", hash " + digits;
}

constexpr std::size_t message_limit = 600; // characters

/// Rewords a message without a name. The document is in memory and has none, and git uses a new temporary name for each comparison.
std::string told_of_file(const std::string& message) {
    constexpr std::string_view document = "the document is ";
    return message.starts_with(document) ? "the file is " + message.substr(document.size())
           : message.starts_with(" is ") ? "the file" + message
                                         : message;
}

void write_problems(const OpenedDocument& document, Output& out) {
    for (const bk_parser::Problem& problem : document.problems()) {
        out << "// " << shown(told_of_file(tool_message(problem, {})), message_limit) << "\n";
    }
}

} // namespace

ExitCode run_textconv(const Arguments& arguments, Streams& streams) {
    OpenOptions open;
    if (!take_opening(arguments, open, streams)) {
        open.key.clear(); // an encrypted file then prints its message about the key
    }
    const Input input(arguments.operands().front());
    if (!input.refusal.empty()) {
        streams.out << "// " << shown(input.refusal, file_name_limit) << "\n";
        return EXIT_CLEAN;
    }
    open.follow_includes = false;
    const OpenedDocument document = open_bytes(arguments.operands().front(), input.bytes, open);
    if (document.is_read() && document.form() == bk_parser::Form::text) {
        streams.out << input.bytes;
        return EXIT_CLEAN;
    }
    const bool is_known = document.is_read() || document.form() != bk_parser::Form::text;
    streams.out << "// " << (is_known ? std::string(form_word(document.form())) + ", " : "")
                << fingerprint(input.bytes) << "\n";
    write_problems(document, streams.out);
    if (document.is_read()) {
        streams.out << document_text(document.root()) << "\n";
    }
    return EXIT_CLEAN;
}

} // namespace bkdoc
