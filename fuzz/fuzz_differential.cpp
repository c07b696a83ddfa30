#include "fuzz/input.h"
#include "parser/parser_file.h"
#include "tests/support/binary_form.h"
#include "tests/support/carried_back.h"
#include "tests/support/counting_log.h"
#include "tests/support/tree_content.h"
#include "tests/support/tree_equal.h"

#include <memory>

namespace {

std::string print(const ParserGroup& group, bool pretty) {
    CoreString text;
    group.get_text(text, false, pretty, 1);
    return plain(text);
}

std::unique_ptr<ParserGroup> parse(std::string_view text, const CoreVersion& version) {
    auto group = std::make_unique<ParserGroup>("g");
    group->set_text(core(text), version, nullptr);
    return group;
}

/// Reads back the print of a tree. Null when the layout cannot carry the tree.
std::unique_ptr<ParserGroup> carry_back(const ParserGroup& tree, bool pretty) {
    const std::string text = print(tree, pretty);
    auto again = parse(text, CoreVersion(1.2));
    if (!CarriedBack(tree, pretty)) {
        return nullptr;
    }
    require_none(tree_difference(tree, *again), "a tree reads back from its print");
    require(print(*again, pretty) == text, "the print of a parse is stable", text);
    return again;
}

/// Encodes the tree and decodes it again. The binary form keeps names, types and values. Skips trees in which
/// a string has a NUL, which ends a string there.
void go_through_bytes(ParserGroup& tree) {
    const std::string bytes = bytes_of(tree.get_binary(false));
    require(bytes == binary_form::group(binary_form::entries_of(tree)), "the bytes are as described");
    if (has_string_with_nul(tree)) {
        return;
    }
    ParserGroup again("g");
    core_uint64 position = 0;
    require(again.set_binary(buffer(bytes), position), "what was encoded is decoded");
    require(position == bytes.size(), "decoding takes every byte");
    require_none(content_difference(tree, again), "the binary form keeps names, types and values");
    require(bytes_of(again.get_binary(false)) == bytes, "what was decoded is encoded the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const CoreVersion version(1.0 + 0.1 * input.choose(3));
    const CountingLog log;
    const auto tree = parse(input.rest(), version);
    const auto pretty = carry_back(*tree, true);
    const auto compact = carry_back(*tree, false);
    if (pretty != nullptr && compact != nullptr) {
        require_none(tree_difference(*pretty, *compact), "both layouts read as the same tree");
    }
    go_through_bytes(*tree);
    return 0;
}
