#include "document/json.h"

#include "document/json/write/json_output_impl.h"
#include "document/json/write/json_plain_impl.h"
#include "document/json/write/json_writer_impl.h"

namespace bk_parser {

namespace {

bool write(const ParserGroup& group, JsonOutput& out, const JsonOptions& options) {
    switch (options.shape) {
    case JsonShape::plain:
        return PlainJsonWriter(out, options.indent).write(group);
    case JsonShape::lines:
        return JsonWriter(out, 0).write_lines(group);
    case JsonShape::lossless:
        break;
    }
    return JsonWriter(out, options.indent).write(group);
}

} // namespace

bool write_json(const ParserGroup& group, const JsonSink& sink, const JsonOptions& options) {
    JsonOutput out(sink);
    return write(group, out, options) && out.flush();
}

std::string to_json(const ParserGroup& group, const JsonOptions& options) {
    std::string json;
    write_json(
        group,
        [&json](std::string_view piece) {
            json += piece;
            return true;
        },
        options);
    return json;
}

std::string to_json(const Document& document, const JsonOptions& options) {
    return to_json(document.root(), options);
}

} // namespace bk_parser
