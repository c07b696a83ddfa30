#include "command/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec same_options[] = {
    {"--content", "", ValueKind::none, "", false,
     "Only names and values count, a number whatever its type: what every form keeps."}};

constexpr VerbSpec verbs[] = {
    {"same", Task::compare, "Say whether two documents hold the same tree.", "", two_files, same_options,
     true, "bkdoc same scene.bkd scene.archive", "0 the same, 1 different, 2 one could not be read.",
     run_same},
};

} // namespace

std::span<const VerbSpec> compare_verbs() noexcept {
    return verbs;
}

} // namespace bkdoc
