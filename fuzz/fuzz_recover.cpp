#include "document/document.h"
#include "document/recover.h"
#include "fuzz/input.h"
#include "tests/support/tree_equal.h"

#include <algorithm>
#include <string>

// Recovers any bytes as a damaged file. Each lost part must be inside the file. When a load reads the file
// without errors, a recovery may lose only characters of names.

namespace {

using namespace bk_parser;

bool has_error(const LoadResult& result) {
    for (const Problem& problem : result.problems) {
        if (problem.severity == Severity::error) {
            return true;
        }
    }
    return false;
}

void check_lost(const RecoverResult& result, std::size_t size) {
    require(result.lost.size() <= 10000, "the list is bounded");
    std::uint64_t before = 0;
    for (const LostPart& part : result.lost) {
        require(!part.what.empty(), "a lost part says what stood there");
        require(part.offset >= before, "lost parts stand by place", part.what);
        require(part.offset <= size, "a lost part begins in the file", part.what);
        const bool is_cut_off = part.what == "cut off";
        require(is_cut_off || part.length <= size - part.offset, "a lost part ends in the file", part.what);
        before = part.offset;
    }
    require(!result.is_whole() || result.lost.empty(), "nothing is lost of what is whole");
    require(result.lost.empty() || has_error(result.loaded), "what is lost is a problem");
}

/// A load takes any name that the binary form can hold. A recovery removes the characters that no text could
/// have in a name.
bool has_lost_only_names(const RecoverResult& result) {
    return std::all_of(result.lost.begin(), result.lost.end(), [](const LostPart& part) {
        return part.what.starts_with("a character of the name '");
    });
}

void take(const std::string& bytes) {
    LoadOptions options;
    options.key = "k";
    options.follow_includes = false;
    const RecoverResult result = recover_bytes(bytes, options);
    check_lost(result, bytes.size());
    const LoadResult loaded = parse(bytes, options);
    if (!has_error(loaded)) {
        require(has_lost_only_names(result), "nothing but names is lost of what a load reads");
        if (result.lost.empty()) {
            require_none(tree_difference(loaded.document.root(), result.loaded.document.root()),
                         "a recovery reads what a load reads");
        }
    }
    const RecoverResult again = recover_bytes(bytes, options);
    require_none(tree_difference(result.loaded.document.root(), again.loaded.document.root()),
                 "a recovery is the same each time");
    require(again.lost.size() == result.lost.size(), "the same is lost each time");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    constexpr std::string_view marks[] = {"", "UDFS", "KWBF", "KWAF"};
    const std::string_view mark = marks[input.choose(4)];
    take(std::string(mark) + std::string(input.rest()));
    return 0;
}
