#include "dump/byte_map.h"
#include "output/text_display.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

/// The text of an enciphered file, as the library deciphers it.
std::optional<Unexplained> map_with_key(std::string_view bytes, const DumpOptions& options,
                                        StreamDevice& device, ByteMapWriter& map) {
    if (options.open.key.empty()) {
        return map_enciphered(bytes, std::nullopt, map);
    }
    const Document document(options.file, options.open, device);
    const auto& files = document.get_sources().get_files();
    if (!files.empty()) {
        return map_enciphered(bytes, files.front()->text.get_text(), map);
    }
    const auto damage = map_enciphered(bytes, std::nullopt, map);
    return damage
               ? damage
               : Unexplained{form_mark_size, "expected the length of a text that fits the file: the key is "
                                             "another one, or the file is damaged"};
}

std::optional<Unexplained> map_file(std::string_view bytes, DocumentForm form, const DumpOptions& options,
                                    StreamDevice& device, ByteMapWriter& map) {
    switch (form) {
    case DocumentForm::binary:
        return map_binary(bytes, map);
    case DocumentForm::archive:
        return map_archive(bytes, map);
    default:
        return map_with_key(bytes, options, device, map);
    }
}

void write_heading(const Input& input, Output& out, ByteMapWriter& map) {
    out.paint(Tone::strong, shown(input.get_name(), file_name_limit));
    out.paint(Tone::dim, "  " + std::string(form_word(input.get_form())) + ", " +
                             counted(static_cast<unsigned long long>(input.get_size()), "byte", "bytes"));
    out << "\n";
    map.heading();
}

std::string why_not(const Input& input, CoreVector<char>& bytes) {
    if (!input.get_refusal().empty()) {
        return input.get_refusal();
    }
    if (!input.load(bytes)) {
        return input.get_name() + ": cannot be read, or is too large";
    }
    return input.get_form() == DocumentForm::text ? input.get_name() + ": is a text, which needs no map"
                                                  : std::string();
}

} // namespace

ExitCode run_dump(const DumpOptions& options, Streams& streams, StreamDevice& device) {
    const Input input(options.file, device);
    CoreVector<char> data;
    if (const std::string reason = why_not(input, data); !reason.empty()) {
        complain(streams, reason);
        return EXIT_UNREADABLE;
    }
    ByteMapWriter map(streams.out);
    write_heading(input, streams.out, map);
    const std::string_view bytes(data.get_data(), data.get_count());
    const auto unexplained = map_file(bytes, input.get_form(), options, device, map);
    if (!unexplained) {
        return EXIT_CLEAN;
    }
    map.unexplained(bytes, unexplained->offset);
    complain(streams,
             input.get_name() + ": at byte " + grouped(unexplained->offset) + ": " + unexplained->reason);
    return EXIT_FAULTS;
}

} // namespace bkdoc
