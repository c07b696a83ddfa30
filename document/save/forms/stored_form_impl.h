#pragma once

#include "document/load.h"

#include <string>

namespace bk_parser {

/// A whole file in one of the forms.
struct StoredForm {
    std::string head;
    CoreString text;         // for the text form
    std::string bytes;       // for the other forms
    CoreVector<char> binary; // for the binary form
    std::string_view body(Form form) const noexcept {
        return form == Form::text     ? text.get_view()
               : form == Form::binary ? std::string_view(binary.get_data(), binary.get_count())
                                      : std::string_view(bytes);
    }
};

/// Where an enciphered text states its version: in a line at its beginning, or in an entry before the n-th other entry.
struct VersionPlace {
    bool is_at_begin = false;
    unsigned int entry = 0xFFFFFFFFu; // after all others, as the application writes it
};

/// Makes the bytes of a new file in the layout of get_text. Returns false when it would be too large. Throws std::bad_alloc.
bool store(const ParserGroup& root, Form form, const std::string& key, const VersionPlace& version,
           StoredForm& stored);

/// Whether these bytes read back as exactly that tree. If not, `reason` names the first entry that differs.
bool reads_back(const StoredForm& stored, Form form, const ParserGroup& root, const std::string& key,
                std::string& reason);

/// The magic and the encrypted block of an enciphered text.
std::string enciphered(std::string_view text, std::string_view key);

} // namespace bk_parser
