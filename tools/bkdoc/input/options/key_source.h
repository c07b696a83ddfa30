#pragma once

#include <optional>
#include <string>

namespace bkdoc {

/// Where the key comes from. No message ever shows a key.
struct KeySource {
    static constexpr const char* variable = "BKDOC_KEY";

    std::optional<std::string> key;  // given on the command line
    std::optional<std::string> file; // the first line of this file is the key
};

/// Finds the key: on the command line, else in the file, else in the environment. `key` is empty when there is none. Returns
/// the reason in one line when the key cannot be read.
std::optional<std::string> find_key(const KeySource& source, std::string& key);

} // namespace bkdoc
