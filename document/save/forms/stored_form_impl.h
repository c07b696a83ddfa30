#pragma once

#include "document/load.h"

#include <string>

namespace bk_parser {

/// A whole file in one of the forms.
struct StoredForm {
    std::string head;
    CoreString text;         // of the text form
    std::string bytes;       // of the others
    CoreVector<char> binary; // of the binary form
    std::string_view body(Form form) const noexcept {
        return form == Form::text     ? text.get_view()
               : form == Form::binary ? std::string_view(binary.get_data(), binary.get_count())
                                      : std::string_view(bytes);
    }
};

/// Where an enciphered text says its version: in a line at its begin, or in an entry before the n-th of the others.
struct VersionPlace {
    bool is_at_begin = false;
    unsigned int entry = 0xFFFFFFFFu; // behind all others, as the application writes it
};

/// Makes the bytes of a new file, laid out as get_text does. False when it would be too large. When memory runs out, that passes.
bool store(const ParserGroup& root, Form form, const std::string& key, const VersionPlace& version,
           StoredForm& stored);

/// Whether these bytes read back as just that tree; if not, the name of the entry at which they do not.
bool reads_back(const StoredForm& stored, Form form, const ParserGroup& root, const std::string& key,
                std::string& difference);

/// The magic and the block of an enciphered text.
std::string enciphered(std::string_view text, std::string_view key);

} // namespace bk_parser
