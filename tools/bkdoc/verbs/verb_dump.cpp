#include "dump/byte_map.h"
#include "input/files/input.h"
#include "input/files/memory_file.h"
#include "input/form_mark.h"
#include "input/log_keeper.h"
#include "input/opened_document.h"
#include "output/display/text_display.h"
#include "parser/parser_file.h"
#include "parser/parser_read_observer.h"
#include "verbs/verbs.h"

#include <optional>

namespace bkdoc {

namespace {

using bk_parser::Form;

/// Keeps the text of the first file that is read.
class TextKeeper : public ParserReadObserver {
public:
    void file_entered(const CoreString&, const CoreString&, const CoreString& text) override {
        if (!text_) {
            text_ = text.get_view();
        }
    }
    const std::optional<std::string>& text() const noexcept { return text_; }

private:
    std::optional<std::string> text_;
};

std::optional<std::string> decrypted(const std::string& bytes, const std::string& key) {
    const MemoryFile memory(bytes);
    const LogKeeper quiet;
    TextKeeper keeper;
    ParserFile file(CoreString{});
    file.set_read_observer(&keeper);
    file.read(CoreString(MemoryFile::name), CoreString(std::string_view(key)), nullptr);
    return keeper.text();
}

/// Maps an encrypted file with the text that the library decrypts. A wrong key usually shows in the length of the text, and
/// the map rejects that.
void map_with_key(const std::string& bytes, const std::string& key, ByteMapWriter& map) {
    const std::optional<std::string> text = key.empty() ? std::nullopt : decrypted(bytes, key);
    map_enciphered(bytes, text, map);
    if (!key.empty() && !text && map.unexplained().empty()) {
        map.reject(form_mark_size,
                   "expected the length of a text that fits the file: wrong key, or a damaged file");
    }
}

void map_file(const std::string& bytes, Form form, const std::string& key, ByteMapWriter& map) {
    switch (form) {
    case Form::binary:
        map_binary(bytes, map);
        break;
    case Form::archive:
        map_archive(bytes, map);
        break;
    default:
        map_with_key(bytes, key, map);
        break;
    }
}

void write_heading(const std::string& name, Form form, std::size_t size, Output& out, ByteMapWriter& map) {
    out.paint(Tone::strong, shown(name, file_name_limit));
    out.paint(Tone::dim, "  " + std::string(form_word(form)) + ", " + counted(size, "byte", "bytes"));
    out << "\n";
    map.heading();
}

} // namespace

ExitCode run_dump(const Arguments& arguments, Streams& streams) {
    OpenOptions open;
    if (!take_opening(arguments, open, streams)) {
        return EXIT_UNREADABLE;
    }
    const std::string& operand = arguments.operands().front();
    const std::string name = shown_operand(operand);
    const Input input(operand);
    const Form form = form_of(input.bytes);
    if (!input.refusal.empty() || form == Form::text) {
        complain(streams, input.refusal.empty()
                              ? name + " is text; dump reads binary, enciphered and archive files"
                              : input.refusal);
        return EXIT_UNREADABLE;
    }
    ByteMapWriter map(streams.out);
    write_heading(name, form, input.bytes.size(), streams.out, map);
    map_file(input.bytes, form, open.key, map);
    for (const Unexplained& part : map.unexplained()) {
        complain(streams, name + ": at byte " + grouped(part.offset) + ": " + part.reason);
    }
    return map.unexplained().empty() ? EXIT_CLEAN : EXIT_FAULTS;
}

} // namespace bkdoc
