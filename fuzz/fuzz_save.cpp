#include "document/document.h"
#include "fuzz/input.h"
#include "tests/support/counting_log.h"
#include "tests/support/memory_disk.h"
#include "tests/support/tree_content.h"

// Loads any bytes as a document, changes it by a script and saves it. Either the save is refused and the file
// does not change, or the saved file loads again as the same tree.

namespace {

using namespace bk_parser;

ParserGroup& pick_group(ParserGroup& root, FuzzInput& input) {
    ParserGroup* group = &root;
    for (unsigned int steps = input.choose(4); steps > 0 && group->get_entries().get_count() != 0; --steps) {
        ParserEntry& entry = *group->get_entries()[input.choose(group->get_entries().get_count())];
        const unsigned int last = entry.get_value_count() - 1;
        if (!entry.has_value() || !entry.is_value_group(last)) {
            break;
        }
        group = entry.get_group(last);
    }
    return *group;
}

void edit(ParserGroup& root, FuzzInput& input) {
    ParserGroup& group = pick_group(root, input);
    const unsigned int count = group.get_entries().get_count();
    const unsigned int action = input.choose(8);
    if (count == 0 || action == 0) {
        group.add_entry("added", 0, 0)->add_string("new \"text\" \\");
        group.move_entry(count, input.choose(count + 1));
        return;
    }
    ParserEntry& entry = *group.get_entries()[input.choose(count)];
    switch (action) {
    case 1:
        group.remove_entry(input.choose(count));
        break;
    case 2:
        group.move_entry(input.choose(count), input.choose(count));
        break;
    case 3:
        entry.rename("renamed");
        break;
    case 4:
        entry.add_double(0.5);
        break;
    case 5:
        entry.remove_value(0u);
        break;
    case 6:
        entry.add_group(nullptr)->add_entry("inner", 0, 0)->add_bool(true);
        break;
    default:
        if (entry.has_value() && !entry.is_value_group(0)) {
            entry.set_int(7, 0);
        }
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CountingLog log;
    MemoryDisk disk;
    SysDevice::set(&disk);
    FuzzInput input(data, size);
    const unsigned int edits = input.choose(6);
    unsigned char script[32] = {};
    for (unsigned char& byte : script) {
        byte = static_cast<unsigned char>(input.choose(256));
    }
    const std::string before(input.rest());
    disk.files["document"] = before;
    {
        LoadResult loaded = load("/memory/document");
        FuzzInput choices(script, sizeof script);
        for (unsigned int i = 0; i < edits; ++i) {
            edit(loaded.document.root(), choices);
        }
        const SaveResult result = save(loaded.document);
        if (!result.ok()) {
            require(disk.files["document"] == before, "a refused save leaves the file");
        } else if (result.written.empty()) {
            require(disk.files["document"] == before, "what is not written is as it was");
            require(loaded.document.form() == Form::text, "another form is always written");
        }
        if (result.ok()) {
            const LoadResult again = load("/memory/document");
            require_none(content_difference(loaded.document.root(), again.document.root()),
                         "what is saved loads again");
        }
        require(edits != 0 || result.ok() || loaded.document.form() != Form::text || !loaded.ok(),
                "a document that was not changed can be saved", result.reason);
    }
    SysDevice::set(nullptr);
    return 0;
}
