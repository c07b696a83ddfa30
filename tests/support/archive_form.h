#pragma once

#include "parser/parser_archive.h"
#include "tests/support/bytes.h"
#include "tests/support/plain_text.h"

#include <string>
#include <string_view>
#include <vector>

/// Composes the archive file from its description, without the library.
namespace archive_form {

using Strings = std::vector<std::string>;
using Indices = std::vector<unsigned int>;

inline std::string stored(std::string_view text) {
    std::string result;
    for (const char character : text) {
        result += static_cast<char>(static_cast<unsigned char>(character) - 15);
    }
    return result + '\0';
}

inline unsigned int width_for(std::size_t strings) {
    return strings < 256 ? 1 : strings < 65536 ? 2 : 4;
}

inline std::string head(core_uint64 string_count) {
    return "KWAF" + size_field(0) + little(string_count, 4);
}

inline std::string file(const Strings& strings, const Indices& indices) {
    std::string result = head(strings.size());
    for (const std::string& text : strings) {
        result += stored(text);
    }
    result += little(indices.size(), 4);
    for (const unsigned int index : indices) {
        result += little(index, width_for(strings.size()));
    }
    return result;
}

inline ParserArchive archive(const Strings& strings, const Indices& indices) {
    ParserArchive result;
    for (const std::string& text : strings) {
        result.strings.add(core(text));
    }
    for (const unsigned int index : indices) {
        result.indices.add(index);
    }
    return result;
}

inline Strings strings_of(const ParserArchive& archive) {
    Strings result;
    for (const CoreString& text : archive.strings) {
        result.push_back(plain(text));
    }
    return result;
}

inline Indices indices_of(const ParserArchive& archive) {
    return Indices(archive.indices.begin(), archive.indices.end());
}

/// The words of the document in order.
inline Strings words_of(const ParserArchive& archive) {
    Strings result;
    for (const unsigned int index : archive.indices) {
        result.push_back(plain(archive.strings[index]));
    }
    return result;
}

} // namespace archive_form
