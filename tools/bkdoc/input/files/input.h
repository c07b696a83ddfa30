#pragma once

#include <string>

namespace bkdoc {

/// Reads the whole of standard input once; later calls return the same bytes. Returns false when it cannot be read.
bool read_standard_input(std::string& bytes);

/// Why a file cannot be read: the system's reason, as the library words it, without the file's name.
std::string why_unread(const std::string& path);

/// Reads the file that an operand names; "-" is standard input. Returns the bytes, or the reason in one line.
struct Input {
    explicit Input(const std::string& operand);

    std::string bytes;
    std::string refusal;
};

} // namespace bkdoc
