#pragma once

#include "command/arguments.h"
#include "document/json.h"
#include "document/load.h"
#include "output/output.h"

#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// How documents are opened: the same for every verb.
struct OpenOptions {
    std::vector<std::string> search_paths;
    std::string key; // for what is stored enciphered; empty when there is none
    bool trusted = false;
    bool follow_includes = true;
    bool keep_sources = false;                // to tell where entries stand
    bool use_config = true;                   // the search folders of the .bkdoc.bkd at or above a document
    std::vector<std::string> allow;           // codes of problems that are not told
    bool reads_json = false;                  // of a document that is JSON by its name or its first bytes
    std::optional<bk_parser::JsonShape> json; // the document is JSON of this shape

    /// As the library takes them, without progress.
    bk_parser::LoadOptions load_options() const;
};

/// Takes the options of opening_options() out of a command line. False, with the reason told, when the key cannot be had.
bool take_opening(const Arguments& arguments, OpenOptions& open, Streams& streams);

} // namespace bkdoc
