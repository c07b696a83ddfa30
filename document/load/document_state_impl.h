#pragma once

#include "document/load.h"

#include "core/core_version.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bk_parser {

class EntryPlaces;

/// A file that a document was read from, as it was then: a save that keeps the layout refuses when it has changed since.
struct ReadFile {
    std::string path;       // absolute, UTF-8
    std::uint64_t size = 0; // of its bytes as they are stored
    std::uint64_t hash = 0; // ByteHash of these
    bool is_enciphered = false;
};

/// Everything that a document has besides its tree.
struct DocumentState {
    std::unique_ptr<ParserGroup> root = std::make_unique<ParserGroup>(CoreString("root"));
    Form form = Form::text;
    std::filesystem::path path;
    std::filesystem::path absolute; // the same, made absolute at once, because the current folder may change
    std::vector<std::filesystem::path> dependencies;
    std::vector<Include> includes;
    std::vector<DocumentFile> document_files;
    std::uint64_t expanded_size = 0;
    CoreVersion version{1.2}; // of the syntax that the text was read by
    // In forms that store the version as an entry: the position in the root from which that entry was removed.
    std::optional<unsigned int> version_entry;
    std::unique_ptr<ParserEntry> kept_version; // that entry, of a binary document or an archive
    bool has_version_header = false;           // an enciphered text begins with its version
    bool has_hidden_comments = false;          // an enciphered text has comments, which no save keeps
    std::vector<std::filesystem::path> search;
    bool beside = true;
    bool working_folder = true;
    bool follow_includes = true;
    std::string key;
    ParserLimits limits;
    std::vector<ReadFile>
        files; // each file once, the document first, unless it came from memory; empty when the document was not read whole
    std::vector<std::string> lost;         // describes the parts of the document that were not read
    std::vector<std::string> left_out;     // the same for includes; a keeping save keeps their directives
    std::vector<std::string> unread_words; // faulty words; a keeping save keeps them, too
    std::size_t inclusion_count = 0;       // of the text to which the places of entries refer

    std::unique_ptr<const EntryPlaces> places; // when they are kept
    std::string memory_text;                   // of a document in memory whose sources are kept

    DocumentState();
    ~DocumentState();
    DocumentState(DocumentState&& other) noexcept;
    DocumentState& operator=(DocumentState&& other) = delete;

    static DocumentState& of(const Document& document);
    static Document document(std::unique_ptr<DocumentState> state) noexcept;
};

} // namespace bk_parser
