#include "command/table/table_parts.h"

#include "verbs/storage.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec recover_options[] = {
    {"--output", "-o", ValueKind::file, "FILE", false,
     "Write to this file, which is another one than is read; standard output when it is not given."},
    {"--to", "", ValueKind::choice, storage_choices, false,
     "Form to store what was read in; text when it is not given. As for convert."},
};

constexpr VerbSpec repair_rows[] = {
    {"recover", Task::repair, "Save what is left of a binary, enciphered or archive file.",
     "Of a file that is cut off or damaged everything is read that can be, before and behind the damage. The "
     "error stream tells how many entries were read, and which bytes are lost and what stood there. Look at "
     "the "
     "result before it is used: bytes that were changed, and still mean something, are taken for what they "
     "mean.",
     one_file, recover_options, true, "bkdoc recover damaged.bin -o saved.bkd",
     "0 nothing was lost, 1 something was, 2 nothing could be read or written.", run_recover},
};

} // namespace

std::span<const VerbSpec> repair_verbs() noexcept {
    return repair_rows;
}

} // namespace bkdoc
