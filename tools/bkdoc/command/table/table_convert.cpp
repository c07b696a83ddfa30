#include "command/table/table_parts.h"

#include "verbs/storage.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec convert_options[] = {
    {"--to", "", ValueKind::choice, storage_choices, false, "Form to store the document in."},
    {"--from", "", ValueKind::choice, "json|ndjson", false,
     "IN is JSON, or has an entry in JSON on each line, whatever its name and its first bytes say."},
    {"--lossy", "", ValueKind::none, "", false, "Convert even what the form cannot carry."},
};

constexpr VerbSpec convert_rows[] = {
    {"convert", Task::convert, "Store a document in another form.",
     "The form of IN shows in its first bytes; JSON shows in its name, too. Includes are spliced in. No form "
     "keeps the comments and the layout of a text; a text that is converted to text where it stands stays as "
     "it is. What is made is read back and compared before OUT is replaced, in one step; OUT may be IN when "
     "IN has no errors. What a form cannot carry needs --lossy: the binary form keeps names and values only, "
     "without kinds, templates and array counts; a text tells numbers apart by their spelling alone."
     "\n\n"
     "json carries everything, and so does ndjson, which has an entry of the document on each line. "
     "json-plain "
     "is for programs that ask: names are keys, what repeats is an array, and nothing reads it back.",
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
