#include "verbs/storage.h"

namespace bkdoc {

using bk_parser::Form;
using bk_parser::JsonShape;

Storage storage_named(std::string_view word) noexcept {
    if (word == "json") {
        return {Form::text, JsonShape::lossless};
    }
    if (word == "ndjson") {
        return {Form::text, JsonShape::lines};
    }
    if (word == "json-plain") {
        return {Form::text, JsonShape::plain};
    }
    return {word == "binary"    ? Form::binary
            : word == "cipher"  ? Form::enciphered
            : word == "archive" ? Form::archive
                                : Form::text,
            std::nullopt};
}

std::string storage_list() {
    std::string list;
    for (const char character : storage_choices) {
        list += character == '|' ? std::string(", ") : std::string(1, character);
    }
    return list;
}

std::string why_not_stored(const Storage& storage, bool has_key, bool to_terminal) {
    if (storage.form == Form::enciphered && !has_key) {
        return "--to cipher needs a key, given by --key, --key-file or BKDOC_KEY";
    }
    return storage.is_bytes() && to_terminal
               ? "refusing to write binary data to a terminal; give a file name or a pipe"
               : "";
}

} // namespace bkdoc
