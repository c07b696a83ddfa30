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

/// The shape of a tree in JSON. docs/json.md describes the shapes, with examples.
enum class JsonShape {
    lossless, ///< one value that `from_json` reads back as the same tree
    lines,    ///< the same with an object on a line for each entry of the outermost group (NDJSON)
    plain     ///< for query tools: names are keys, and names that repeat are arrays; nothing reads it back
};

/// How to write JSON.
struct JsonOptions {
    /// Which of the shapes is written.
    JsonShape shape = JsonShape::lossless;
    /// Blanks of indentation for each level, up to the hundredth; deeper lines have the indentation of the hundredth. 0 writes everything
    /// on one line, without a line end. `lines` ignores it.
    unsigned int indent = 2;
};

/// Receives the JSON piece by piece, in order. Return false to stop.
using JsonSink = std::function<bool(std::string_view)>;

/// The tree below a group as JSON, in UTF-8, without the name of the group itself and the places of entries in files.
/// Throws std::bad_alloc when memory runs out, and std::length_error past the longest string; nothing else fails.
/// Linear in the output; names that repeat in a group cost the logarithm of their number.
[[nodiscard]] BK_PARSER_API std::string to_json(const ParserGroup& group, const JsonOptions& options = {});
/// The tree of a document as JSON.
[[nodiscard]] BK_PARSER_API std::string to_json(const Document& document, const JsonOptions& options = {});

/// Writes the same JSON to a sink in pieces of about 64 KiB, for JSON that is too large for memory. Returns false when the sink returned false. What the sink
/// throws passes through.
///
/// Takes memory for one piece and for the depth of the tree. When it begins a group it also takes 8 bytes for each entry of that group,
/// except for the outermost group in the shape `lines`. The plain shape takes 32 bytes for each entry of each open group.
BK_PARSER_API bool write_json(const ParserGroup& group, const JsonSink& sink,
                              const JsonOptions& options = {});

/// How to read JSON.
struct JsonReadOptions {
    /// `lossless` reads one value. `lines` reads an object on each line; a text without any is an empty document. Without a value here
    /// the text decides: a text of several objects, each on a new line, or of none, has the shape `lines`. `from_json` does not
    /// read the plain shape.
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

/// Reads what `to_json` writes in the shapes `lossless` and `lines`, and every other text that follows docs/json.md. The text must be
/// strict JSON (RFC 8259) in valid UTF-8. A byte order mark at its beginning is skipped.
///
/// It stops at the first error. The document then holds what comes before that place, and one problem says where it is: "json-syntax"
/// when the text is not JSON, "json-shape" when it is JSON of another shape, "nested-too-deeply" or "too-large". A number that no int or
/// double can hold, and a spelling that no text document can hold, give warnings.
///
/// The document has the form Form::text and no path. Depth costs heap, not stack. Throws std::bad_alloc. Linear in the text.
[[nodiscard]] BK_PARSER_API LoadResult from_json(std::string_view text, const JsonReadOptions& options = {});

/// Appends a text as a string of JSON, in quotes. Each byte that is not UTF-8 becomes U+FFFD.
BK_PARSER_API void append_json_string(std::string& out, std::string_view text);

} // namespace bk_parser
