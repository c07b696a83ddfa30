#include "fuzz/input.h"
#include "tests/support/counting_log.h"
#include "tests/support/edit_script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CountingLog log;
    const int groups = CountedGroup::alive;
    const int entries = CountedEntry::alive;
    require_none(EditScript(FuzzInput(data, size).rest()).run(), "edited trees are what plain lists are");
    require(CountedGroup::alive == groups && CountedEntry::alive == entries, "nothing is left alive");
    return 0;
}
