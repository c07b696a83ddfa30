#include "document/access.h"
#include "document/paths/path_steps_impl.h"
#include "fuzz/input.h"
#include "tests/support/nasty_tree.h"
#include "tests/support/path_reference.h"

#include <algorithm>
#include <memory>
#include <vector>

// Uses any bytes as a path on fixed trees, and compares the result with a slow reference.

namespace {

constexpr unsigned int tree_count = 4;

const ParserGroup& tree(unsigned int number) {
    static const auto* const trees = [] {
        auto* const made = new std::unique_ptr<ParserGroup>[tree_count];
        for (unsigned int i = 0; i < tree_count; ++i) {
            made[i] = std::make_unique<ParserGroup>("root");
            NastyTree(i).fill(*made[i], 3);
        }
        return made;
    }();
    return *trees[number];
}

void check_error(std::string_view path, const bk_parser::PathError& error) {
    require(error.offset <= path.size() && error.length > 0, "an error has its place in the path");
    require(!error.message.empty() && error.message.find('\n') == std::string::npos, "a message is one line");
    const std::string drawn = bk_parser::to_text(error, path);
    require(std::count(drawn.begin(), drawn.end(), '\n') == 3, "an error is drawn in three lines", drawn);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const ParserGroup& root = tree(input.choose(tree_count));
    const std::string_view path = input.rest();
    const bk_parser::ParsedPath parsed = bk_parser::parse_path(path);
    if (parsed.error) {
        check_error(path, *parsed.error);
        require(bk_parser::find(root, path) == nullptr, "a malformed path finds nothing");
        return 0;
    }
    std::vector<const ParserEntry*> found;
    for (const ParserEntry& entry : bk_parser::find_all(root, path)) {
        found.push_back(&entry);
    }
    require(found == PathReference(root, parsed).found(), "a path finds what the reference finds", path);
    ParserGroup changed(root);
    if (bk_parser::set(changed, path, 7) && found.empty()) {
        require(bk_parser::get<int>(changed, path) == 7, "what was made is there", path);
    }
    require(bk_parser::remove_all(changed, path) <= found.size() + 1, "no more is removed than is found",
            path);
    return 0;
}
