#include "command/table/table_parts.h"

#include "verbs/storage.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec recover_options[] = {
    {"--output", "-o", ValueKind::file, "FILE", false,
     "Write to this file, which must not be the damaged one. The default is standard output."},
    {"--to", "", ValueKind::choice, storage_choices, false,
     "The form to write, as for convert. The default is text."},
};

constexpr VerbSpec repair_rows[] = {
    {"recover", Task::repair, "Save what is left of a damaged binary, encrypted or archive file.",
     "Look at the result before you use it: changed bytes that still have a meaning are read as they are.\n"
     "\n"
     "recover reads everything that it can, before and after the damage. Standard error lists how many "
     "entries were read, which bytes were lost and what they held.",
     one_file, recover_options, true, "bkdoc recover damaged.bin -o saved.bkd",
     "0 nothing was lost\n1 something was lost\n2 nothing could be read, or nothing written", run_recover},
};

} // namespace

std::span<const VerbSpec> repair_verbs() noexcept {
    return repair_rows;
}

} // namespace bkdoc
