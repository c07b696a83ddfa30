#pragma once

#include <string>

namespace bkdoc {

/// Reads the whole of standard input once; later calls return the same bytes. Returns false when it cannot be read.
bool read_standard_input(std::string& bytes);

/// Reads the file that an operand names; "-" is standard input. Returns the bytes, or the reason in one line.
struct Input {
    explicit Input(const std::string& operand);

    std::string bytes;
    std::string refusal;
};

} // namespace bkdoc
