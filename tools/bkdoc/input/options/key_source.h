#pragma once

#include <optional>
#include <string>

namespace bkdoc {

/// Where the key of enciphered documents comes from. No message ever shows a key.
struct KeySource {
    static constexpr const char* variable = "BKDOC_KEY";

    std::optional<std::string> key;  // given as it is
    std::optional<std::string> file; // whose first line is the key
};

/// Finds the key: as given, else in the file, else in the environment; `key` is empty when there is none. Else why it
/// cannot be had, as one line.
std::optional<std::string> find_key(const KeySource& source, std::string& key);

} // namespace bkdoc
