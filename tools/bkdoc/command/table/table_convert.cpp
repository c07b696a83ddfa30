#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec convert_options[] = {
    {"--to", "", ValueKind::choice, "text|binary|cipher|archive", false, "Form to store the document in."},
    {"--lossy", "", ValueKind::none, "", false, "Convert even what reads back with other names or values."},
};

constexpr VerbSpec convert_rows[] = {
    {"convert", Task::convert, "Store a document in another form.",
     "The form of IN shows in its first bytes. Includes are spliced in. No form keeps the comments and the "
     "layout of a text. What is made is read back and compared before OUT is replaced, in one step; OUT may "
     "be "
     "IN when IN has no errors. The binary form keeps names and values only, without kinds, templates and "
     "array counts; a text tells numbers apart by their spelling alone.",
     in_and_out, convert_options, true, "bkdoc convert --to binary scene.bkd scene.bin",
     "0 converted, 1 converted, but IN has errors (what is good of it is in OUT) or --lossy lost something, "
     "2 not converted: OUT is as it was.",
     run_convert},
};

} // namespace

std::span<const VerbSpec> convert_verbs() noexcept {
    return convert_rows;
}

} // namespace bkdoc
