#pragma once

#include "document/load.h"

#include "core/core_version.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace bk_parser {

/// A file that a document was read from, as it was then: a save that keeps the layout refuses when it has changed since.
struct ReadFile {
    std::string path; // absolute, UTF-8
    std::uint64_t size = 0;
    std::uint64_t hash = 0;
    bool is_enciphered = false;
};

/// What a document knows beside its tree.
struct DocumentState {
    std::unique_ptr<ParserGroup> root;
    Form form = Form::text;
    std::filesystem::path path;
    std::vector<std::filesystem::path> dependencies;
    CoreVersion version; // of the syntax that the text was read by
    std::vector<std::filesystem::path> search;
    bool beside = true;
    std::string key;
    ParserLimits limits;
    std::vector<ReadFile>
        files; // of a text form: the document first; empty when it was not read whole, or from memory

    static DocumentState& of(const Document& document);
};

} // namespace bk_parser
