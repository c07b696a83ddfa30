#pragma once

#include "document/json.h"
#include "input/options/open_options.h"

#include <functional>
#include <string>
#include <string_view>

/// Documents that are stored as JSON. Who reads them says so in the options.
namespace bkdoc {

/// Whether what standard input gave, or a pipe, is to be read as JSON: by the options, or else by its first characters.
bool is_json_input(const std::string& operand, std::string_view bytes, const OpenOptions& options);
/// The same of a file, which also tells by its name. Of a pipe nothing is read.
bool is_json_file(const std::string& operand, const OpenOptions& options);

bk_parser::LoadResult read_json(const std::string& name, std::string_view bytes, const OpenOptions& options,
                                std::function<bool(double)> progress);

} // namespace bkdoc
