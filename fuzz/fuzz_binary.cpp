#include "fuzz/input.h"
#include "parser/parser_file.h"
#include "tests/support/binary_form.h"
#include "tests/support/binary_reader.h"
#include "tests/support/counting_log.h"
#include "tests/support/tree_content.h"
#include "tests/support/tree_equal.h"

#include <memory>

namespace {

/// Reads bytes as a document. The content that was kept must encode and decode without a change, even if the
/// read failed.
void take_document(std::string_view bytes) {
    ParserFile file(CoreString{});
    const bool result = file.set_binary(buffer(bytes));
    if (bytes.size() >= 9 && bytes.starts_with("UDFS")) {
        std::string said;
        require(BinaryReader(bytes, 4).group(said) == result, "a document is read as described, or is not");
        require(said_of(file.get_root()) == said, "a document holds what is described", said);
    }
    const CoreVector<char> kept = file.get_binary();
    require(bytes_of(kept) == binary_form::file(binary_form::entries_of(file.get_root())),
            "the bytes are as described");
    ParserFile again(CoreString{});
    require(again.set_binary(kept), "what was encoded is decoded");
    require_none(content_difference(file.get_root(), again.get_root()), "decoding gives the same content");
    require_none(tree_difference(file.get_root(), again.get_root()), "decoding gives the same tree");
    require(bytes_of(again.get_binary()) == bytes_of(kept), "what was decoded is encoded the same");
    require(!result || bytes.starts_with("UDFS"), "a document has its magic");
    ParserGroup copy(file.get_root());
    require(written(copy) == written(file.get_root()), "a copy is written the same");
    copy.remove_entry(0U);
}

/// Reads bytes as a group from `position`, with the same checks as for a document. The position must not go
/// back.
void take_group(std::string_view bytes, core_uint64 position) {
    const core_uint64 start = position;
    ParserGroup group("g");
    const bool result = group.set_binary(buffer(bytes), position);
    require(position >= start, "reading goes forward");
    BinaryReader reader(bytes, start);
    std::string said;
    require(reader.group(said) == result, "a group is read as described, or is not");
    require(said_of(group) == said, "a group holds what is described", said);
    require(!result || reader.position() == position, "reading ends where it is described to end");
    ParserGroup again("g");
    core_uint64 at = 0;
    require(again.set_binary(group.get_binary(false), at), "what was encoded is decoded");
    require_none(tree_difference(group, again), "decoding gives the same tree");
}

void take_entry(std::string_view bytes, core_uint64 position) {
    const core_uint64 start = position;
    ParserEntry entry("e", ParserEntry::TYPE_ENTRY, 0, 0);
    const bool result = entry.set_binary(buffer(bytes), position);
    require(position >= start, "reading goes forward");
    BinaryReader reader(bytes, start);
    std::string said;
    require(reader.entry(said) == result, "an entry is read as described, or is not");
    require(said_of(entry) == said, "an entry holds what is described", said);
    ParserEntry again("e", ParserEntry::TYPE_ENTRY, 0, 0);
    const CoreVector<char> kept = entry.get_binary();
    core_uint64 at = 2; // past the name
    require(again.set_binary(kept, at), "what was encoded is decoded");
    require(at == kept.get_count(), "decoding takes every byte");
    require(bytes_of(again.get_binary()) == bytes_of(kept), "what was decoded is encoded the same");
}

void take_values(std::string_view bytes) {
    const CoreVector<char> data = buffer(bytes);
    core_uint64 position = 0;
    while (position < bytes.size()) {
        const core_uint64 start = position;
        const std::unique_ptr<ParserValue> value(ParserValue::bin_to_value(data, position));
        if (value == nullptr) {
            return;
        }
        require(position > start, "reading goes forward");
        ParserValue copy(*value);
        CoreVector<char> one;
        CoreVector<char> two;
        core_uint64 count = 0;
        value->get_binary(one, count, true);
        copy.get_binary(two, count, true);
        require(bytes_of(one) == bytes_of(two), "a copy is encoded the same");
        require(count == 2 * one.get_count(), "what was appended is counted");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const CountingLog log;
    switch (input.choose(8)) {
    case 0:
        take_values(input.rest());
        break;
    case 1:
        take_entry(input.rest(), 0);
        break;
    case 2:
        take_entry(input.rest(), input.choose(256));
        break;
    case 3:
        take_group(input.rest(), input.choose(256));
        break;
    case 4:
        take_document("UDFS" + size_field(input.rest().size()) + std::string(input.rest()));
        break;
    case 5:
        take_group(size_field(input.rest().size()) + std::string(input.rest()), 0);
        break;
    default:
        take_document(input.rest());
    }
    return 0;
}
