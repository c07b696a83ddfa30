#pragma once

#include <string>

namespace bkdoc {

/// Takes in the whole of standard input, once: later calls give the same. False when it cannot be read.
bool read_standard_input(std::string& bytes);

/// Why a file cannot be read: the system's reason, without the file's name.
std::string why_unread(const std::string& path);

/// The bytes of the file that an operand names; "-" is standard input. Else why it cannot be read, as one line.
struct Input {
    explicit Input(const std::string& operand);

    std::string bytes;
    std::string refusal;
};

} // namespace bkdoc
