#pragma once

#include "command/arguments.h"
#include "document/json.h"
#include "document/load.h"
#include "output/output.h"

#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// The options with which every verb opens documents.
struct OpenOptions {
    std::vector<std::string> search_paths;
    std::string key; // for encrypted documents; empty without a key
    bool trusted = false;
    bool follow_includes = true;
    bool keep_sources = false;                // needed for the places of entries
    bool use_config = true;                   // use the search folders of the nearest .bkdoc.bkd
    std::vector<std::string> allow;           // codes of suppressed warnings
    bool reads_json = false;                  // read JSON where the name or the first bytes show it
    std::optional<bk_parser::JsonShape> json; // read the document as JSON of this shape

    /// The library's options, without progress.
    bk_parser::LoadOptions load_options() const;
};

/// Reads the options of opening_options() from a command line. Returns false, after saying why, when the key cannot be read.
bool take_opening(const Arguments& arguments, OpenOptions& open, Streams& streams);

} // namespace bkdoc
