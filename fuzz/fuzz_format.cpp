#include "document/document.h"
#include "document/format.h"
#include "fuzz/input.h"
#include "tests/support/tree_equal.h"

#include <string>

// Formats any text. The tree must not change, and formatting the result again must change nothing.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bk_parser;
    FuzzInput input(data, size);
    FormatOptions options;
    options.indent = input.choose(9);
    options.width = 1 + input.choose(120);
    const std::string text(input.rest());
    const FormatResult result = format_text(text, options);
    if (!result.ok()) {
        require(result.text.empty() && result.reason.find('\n') == std::string::npos,
                "a refusal is one line, and no text", result.reason);
        return 0;
    }
    LoadOptions reading;
    reading.follow_includes = false;
    const LoadResult before = parse(text, reading);
    const LoadResult after = parse(result.text, reading);
    require_none(tree_difference(before.document.root(), after.document.root()), "the tree stays");
    const FormatResult again = format_text(result.text, options);
    require(again.ok(), "what was laid out is laid out again", again.reason);
    require(again.text == result.text, "what was laid out stays as it is", result.text);
    return 0;
}
