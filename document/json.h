#pragma once

#include "core/core_export.h"
#include "document/load.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// How a tree looks in JSON. docs/json.md describes the shapes, with examples.
enum class JsonShape {
    lossless, ///< one value that `from_json` reads back as the same tree
    lines,    ///< the same with an object on a line for each entry of the outermost group (NDJSON)
    plain     ///< for query tools: names are keys, and names that repeat are arrays; nothing reads it back
};

/// How to write JSON.
struct JsonOptions {
    /// Which of the shapes is written.
    JsonShape shape = JsonShape::lossless;
    /// Blanks of indentation for each of the first hundred levels; deeper lines are indented as the hundredth. 0 writes everything on
    /// one line, without a line end. `lines` ignores it.
    unsigned int indent = 2;
};

/// Receives the JSON piece by piece, in order. Return false to stop.
using JsonSink = std::function<bool(std::string_view)>;

/// The tree below a group as JSON, in UTF-8, without the name of the group itself and the places of entries in files.
/// Throws std::bad_alloc when memory runs out, and std::length_error past the longest string; nothing else fails.
/// Linear in the output; names that repeat in a group cost the logarithm of their number.
[[nodiscard]] BK_PARSER_API std::string to_json(const ParserGroup& group, const JsonOptions& options = {});
/// The same for a document.
[[nodiscard]] BK_PARSER_API std::string to_json(const Document& document, const JsonOptions& options = {});

/// The same in pieces of about 64 KiB, for JSON that is too large for memory. Takes memory for one piece and for the depth of the tree,
/// and 8 bytes for each entry of a group when it begins that group; `lines` saves these for the outermost group. The plain shape
/// takes 32 bytes for each entry of each open group. Returns false when the sink returned false. What the sink throws passes through.
BK_PARSER_API bool write_json(const ParserGroup& group, const JsonSink& sink,
                              const JsonOptions& options = {});

/// How to read JSON.
struct JsonReadOptions {
    /// `lossless` takes one value, `lines` an object on each line, where a text without any is an empty document. Otherwise
    /// the text tells: what has more objects behind the first, each on a new line, or none, is `lines`. The plain shape is not read.
    std::optional<JsonShape> shape;
    /// The name of the text in problems.
    std::filesystem::path file;
    /// Only `source_size`, `nesting_depth` and `message_count` matter here.
    ParserLimits limits = ParserLimits::untrusted();
    /// As in LoadOptions.
    std::function<bool(double)> progress;
    /// As in LoadOptions.
    std::vector<std::string> allow;
};

/// Reads what `to_json` wrote in the shapes `lossless` and `lines`, or what follows docs/json.md. The text is JSON by RFC 8259, strictly,
/// and valid UTF-8; a byte order mark at its begin is skipped. Of a text with a fault the document holds what stands before the fault,
/// and one problem says where that is: "json-syntax" where it is not JSON, "json-shape" where it is JSON of another shape,
/// "nested-too-deeply" or "too-large". Numbers that no int or double holds, and spellings that no text can hold, are warnings. The document is in the text form and has no path.
/// Depth costs heap, not stack. Throws std::bad_alloc. Linear in the text.
[[nodiscard]] BK_PARSER_API LoadResult from_json(std::string_view text, const JsonReadOptions& options = {});

/// Appends a text as a string of JSON, in quotes. Each byte that is not UTF-8 becomes U+FFFD.
BK_PARSER_API void append_json_string(std::string& out, std::string_view text);

} // namespace bk_parser
