#include "fuzz/input.h"
#include "parser/parser_file.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/counting_log.h"
#include "tests/support/expanded_text.h"
#include "tests/support/memory_disk.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

#include <set>

namespace {

constexpr std::string_view separator = "\n====\n";
constexpr std::string_view enciphered_mark = "!!";
constexpr std::string_view key = "lantern";
constexpr unsigned int most_files = 6;
/// The text of files that include each other grows exponentially with their number.
constexpr unsigned int most_opens = 200;

/// The files "a" to "f". One that begins with the mark is enciphered.
void put_files(MemoryDisk& disk, std::string_view text) {
    for (char name = 'a'; name < static_cast<char>('a' + most_files); ++name) {
        const std::size_t end = text.find(separator);
        std::string content(text.substr(0, end));
        if (content.starts_with(enciphered_mark)) {
            content = cipher_reference::enciphered_file(content.substr(enciphered_mark.size()), key);
        }
        disk.files[std::string(1, name)] = content;
        if (end == std::string_view::npos) {
            return;
        }
        text.remove_prefix(end + separator.size());
    }
}

class CheckedProgress : public AppProgressBar {
public:
    void set_value(const float& value) override {
        require(value >= 0.0F && value <= 1.0F, "a progress bar gets fractions");
    }
};

/// Writes a document that was read as text: the file must be the version line and the print.
void write_text(ParserFile& file, const MemoryDisk& disk) {
    const bool has_line = file.get_root().get_keyword("#Brellwick_Serial_Version") != nullptr;
    require(file.write(ParserFile::MODE_TEXT, "written", ""), "a document is written");
    CoreString text;
    file.get_text(text);
    const std::string expected = (has_line ? "" : "#Brellwick_Serial_Version 1.2\n") + plain(text);
    require(disk.files.at("written") == expected, "what is written is the version and the print");
}

/// Writes a document that was read as enciphered text: the file must be the same as that of the reference.
void write_enciphered(ParserFile& file, const MemoryDisk& disk) {
    require(file.write(ParserFile::MODE_TEXT, "hidden", core(key)), "a document is written");
    CoreString text;
    file.get_text(text);
    require(disk.files.at("hidden") == cipher_reference::enciphered_file(text.get_view(), key),
            "what is written is the enciphered print");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const unsigned int options = input.choose(4);
    const CountingLog log;
    MemoryDisk disk;
    put_files(disk, input.rest());
    disk.opens_left = most_opens;

    ExpandedText expanded;
    CheckedProgress progress;
    ParserFile file(CoreString{});
    file.set_search_paths((options & 1) != 0 ? CoreVector<CoreString>{"", "lib/"}
                                             : CoreVector<CoreString>{"."});
    file.set_read_observer(&expanded);
    const bool result = file.read("a", core(key), (options & 2) != 0 ? &progress : nullptr);
    file.set_read_observer(nullptr);
    require(file.get_serial_version().is_set() == result, "a version tells that reading went well");
    if (!result) {
        require(file.get_root().get_entries().is_empty(), "a read that fails leaves the tree as it was");
        return 0;
    }
    ParserGroup group("root");
    group.set_text(core(expanded.text), file.get_serial_version(), nullptr);
    require_none(tree_difference(file.get_root(), group), "the tree is that of the expanded text");
    std::set<std::string> paths;
    for (const CoreString& path : file.get_dependencies()) {
        require(paths.insert(plain(path)).second, "a file is a dependency once", plain(path));
    }
    write_text(file, disk);
    write_enciphered(file, disk);
    return 0;
}
