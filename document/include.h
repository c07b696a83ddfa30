#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace bk_parser {

/// An include directive of a document, and the file that it included.
struct Include {
    /// The name between its quotes.
    std::string name;
    /// The file that holds the directive, as it was found; empty for a document in memory.
    std::filesystem::path file;
    /// The place of the directive, as in a Problem.
    unsigned int line = 0;
    /// From 1, in UTF-8 characters.
    unsigned int column = 0;
    /// Where the directive begins, in bytes of the file.
    std::size_t offset = 0;
    /// Of the directive, in bytes.
    std::size_t length = 0;
    /// The file that was included, as it was found, but lib/a.bkd where that is shots/../lib/a.bkd; empty when none was found.
    std::filesystem::path found;
    /// The same as an absolute path; empty when none was found.
    std::filesystem::path path;
    /// The places where the file was looked for and not found, as they were named, in their order.
    std::vector<std::filesystem::path> tried;
    /// The code of the problem because of which the file was not included; empty when it was.
    std::string problem;
};

/// A file that a document was read from.
struct DocumentFile {
    /// As it was found; empty for a document in memory.
    std::filesystem::path file;
    /// Absolute.
    std::filesystem::path path;
    /// Bytes of the file as it is stored. An enciphered file has fewer bytes of text. The binary form and an archive have no text.
    std::uint64_t stored_size = 0;
    /// Bytes of its text, after deciphering.
    std::uint64_t text_size = 0;
    /// Lines of the text; LF, CR LF and CR each end one.
    std::uint64_t line_count = 0;
};

} // namespace bk_parser
