#include "document/document.h"
#include "fuzz/input.h"
#include "tests/support/tree_equal.h"

// Reads any bytes as JSON. An error has a place in the text. A tree that was read must come back from each
// shape.

namespace {

using namespace bk_parser;

void check_problems(const LoadResult& result, std::string_view text) {
    for (const Problem& problem : result.problems) {
        require(!problem.message.empty() && problem.message.find('\n') == std::string::npos,
                "a message is one line", problem.message);
        require(problem.code == "more-problems" || problem.line > 0, "a problem has a place",
                problem.message);
        require(problem.offset + problem.length <= text.size(), "the place is in the text", problem.message);
    }
}

void expect_back(const ParserGroup& root, JsonShape shape, unsigned int indent) {
    const std::string json = to_json(root, {shape, indent});
    JsonReadOptions options;
    options.shape = shape;
    const LoadResult back = from_json(json, options);
    require(back.ok(), "what was written is read", json);
    require_none(tree_difference(root, back.document.root()), "the tree comes back");
    require(to_json(back.document, {shape, indent}) == json, "it is written alike again", json);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    JsonReadOptions options;
    const unsigned int shape = input.choose(3);
    if (shape != 0) {
        options.shape = shape == 1 ? JsonShape::lossless : JsonShape::lines;
    }
    const LoadResult result = from_json(input.rest(), options);
    check_problems(result, input.rest());
    const ParserGroup& root = result.document.root();
    expect_back(root, JsonShape::lossless, 1);
    expect_back(root, JsonShape::lines, 0);
    require(!to_json(root, {JsonShape::plain, 0}).empty(), "the plain shape is written");
    return 0;
}
