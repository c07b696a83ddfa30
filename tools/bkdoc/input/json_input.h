#pragma once

#include "document/json.h"
#include "input/options/open_options.h"

#include <functional>
#include <string>
#include <string_view>

/// Reads documents that are stored as JSON, when the options ask for it.
namespace bkdoc {

/// Whether to read standard input or a pipe as JSON: by the options, else by its first characters.
bool is_json_input(const std::string& operand, std::string_view bytes, const OpenOptions& options);
/// Whether to read a file as JSON: by the options, else by its name or its first characters. Reads nothing from a pipe.
bool is_json_file(const std::string& operand, const OpenOptions& options);

bk_parser::LoadResult read_json(const std::string& name, std::string_view bytes, const OpenOptions& options,
                                std::function<bool(double)> progress);

} // namespace bkdoc
