#include "fuzz/input.h"
#include "parser/parser_archive.h"
#include "parser/parser_limits.h"
#include "tests/support/archive_form.h"
#include "tests/support/carried_back.h"
#include "tests/support/counting_log.h"
#include "tests/support/memory_disk.h"
#include "tests/support/tree_equal.h"

#include <set>

namespace {

/// The words in the order of the indices, each with a blank after it, as the archive's reader joins them.
std::string joined(const ParserArchive& archive) {
    std::string text;
    for (const unsigned int index : archive.indices) {
        if (index < archive.strings.get_count()) {
            text += plain(archive.strings[index]) + " ";
        }
    }
    return text;
}

std::string load(MemoryDisk& disk, const std::string& bytes, ParserArchive& archive) {
    disk.files["a"] = bytes;
    return plain(ParserImpl::load_archive(archive, "a", nullptr));
}

/// Saves and reloads the archive, and expects the same words. Skips the comparison when a word has the byte
/// 0x0F, as which a NUL is stored.
void save_and_load(MemoryDisk& disk, const ParserArchive& archive) {
    require(ParserImpl::save_archive(archive, "saved", nullptr).is_empty(), "an archive is saved");
    const std::string bytes = disk.files["saved"];
    require(bytes == archive_form::file(archive_form::strings_of(archive), archive_form::indices_of(archive)),
            "the bytes are as described");
    if (joined(archive).find('\x0F') != std::string::npos) {
        return;
    }
    ParserArchive again;
    require_none(load(disk, bytes, again), "what was saved is loaded");
    require(archive_form::strings_of(again) == archive_form::strings_of(archive), "the words come back");
    require(archive_form::indices_of(again) == archive_form::indices_of(archive), "their order comes back");
}

void take_bytes(std::string_view bytes) {
    MemoryDisk disk;
    ParserArchive archive;
    const std::string error = load(disk, std::string(bytes), archive);
    require(error.empty() || error == "invalid file size" || error == "unknown file format",
            "loading says what is wrong", error);
    ParserGroup group("g");
    ParserImpl::group_set_archive(group, archive, nullptr, ParserLimits::untrusted());
    ParserGroup expected("g");
    expected.set_text(core(joined(archive)), CoreVersion(1.2), nullptr);
    require_none(tree_difference(group, expected), "an archive is read as the text of its words");
}

/// Archives the tree of a text, and expects the tree that its compact print gives.
void take_text(std::string_view text) {
    MemoryDisk disk;
    ParserGroup group("g");
    group.set_text(core(text), CoreVersion(1.2), nullptr);
    ParserArchive archive;
    ParserImpl::archive_group(group, archive, false, nullptr);
    std::set<std::string> distinct;
    for (const CoreString& word : archive.strings) {
        require(distinct.insert(plain(word)).second, "each word is kept once", plain(word));
    }
    save_and_load(disk, archive);
    group.add_entry("last", 0, 0)->add_int(1); // the last word of an archive has a blank after it, too
    if (CarriedBack(group, false)) {
        ParserArchive whole;
        ParserImpl::archive_group(group, whole, false, nullptr);
        ParserGroup again("g");
        ParserImpl::group_set_archive(again, whole, nullptr);
        require_none(tree_difference(group, again), "a tree reads back from its archive");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const CountingLog log;
    switch (input.choose(4)) {
    case 0:
        take_text(input.rest());
        break;
    case 1:
        take_bytes("KWAF" + size_field(0) + std::string(input.rest()));
        break;
    default:
        take_bytes(input.rest());
    }
    return 0;
}
