#include "command/table/table_parts.h"

#include "verbs/storage.h"
#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec convert_options[] = {
    {"--to", "", ValueKind::choice, storage_choices, false, "The form of OUT."},
    {"--from", "", ValueKind::choice, "json|ndjson", false,
     "Read IN as JSON, or as JSON with one entry per line, whatever its name and first bytes say."},
    {"--lossy", "", ValueKind::none, "", false, "Convert even if the form cannot carry everything."},
};

constexpr VerbSpec convert_rows[] = {
    {"convert", Task::convert, "Store a document in another form.",
     "Comments and layout are lost, except when a text is converted to text in place: then it stays as it "
     "is. The cipher is not security: it hides a text from a casual eye.\n"
     "\n"
     "The first bytes of IN show its form; so does the name of a JSON file. Includes are spliced in. "
     "OUT is replaced in one step, after the result was read back and compared. OUT may be IN if IN has "
     "no errors.\n"
     "\n"
     "A document that the form cannot carry completely needs --lossy: the binary form keeps names and values "
     "only, without kinds, "
     "templates and array counts; in a text, only the spelling of a number shows its type.\n"
     "\n"
     "json carries everything, and so does ndjson, which has one entry of the document per line. json-plain "
     "is for query tools: names become keys, repeated names become arrays, and nothing reads it back.",
     in_and_out, convert_options, true, "bkdoc convert --to archive harbour.bkd harbour.archive",
     "0 converted\n1 converted, but IN has errors (OUT has the rest of it) or --lossy lost something\n"
     "2 not converted; OUT is as it was",
     run_convert},
};

} // namespace

std::span<const VerbSpec> convert_verbs() noexcept {
    return convert_rows;
}

} // namespace bkdoc
