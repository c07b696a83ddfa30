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
    /// The length of the directive in bytes.
    std::size_t length = 0;
    /// The path by which the included file was found, shortened where that names the same file: lib/a.bkd for shots/../lib/a.bkd. Empty
    /// when none was found.
    std::filesystem::path found;
    /// The absolute path of that file; empty when none was found.
    std::filesystem::path path;
    /// The paths that were tried and where the file was not found, in the order of the search.
    std::vector<std::filesystem::path> tried;
    /// The code of the problem that kept the file from being included; empty when it was included.
    std::string problem;
};

/// A file that a document was read from.
struct DocumentFile {
    /// The path by which it was found; empty for a document in memory.
    std::filesystem::path file;
    /// The absolute path.
    std::filesystem::path path;
    /// Bytes of the file as it is stored. The text of an encrypted file is shorter. The binary form and an archive have no text.
    std::uint64_t stored_size = 0;
    /// Bytes of its text, after decryption.
    std::uint64_t text_size = 0;
    /// Lines of the text; LF, CR LF and CR each end one.
    std::uint64_t line_count = 0;
};

} // namespace bk_parser
