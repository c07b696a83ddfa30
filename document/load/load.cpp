#include "document/load.h"

#include "core/reports/core_diagnostic_impl.h"
#include "document/load/document_state_impl.h"
#include "document/load/loader_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

template <class Action>
LoadResult run(const LoadOptions& options, Action action) {
    const bk::KeptErrno kept;
    try {
        Loader loader(options);
        return action(loader);
    } catch (const LoadCancelled&) {
        LoadResult result;
        result.cancelled = true;
        DocumentState::of(result.document).lost.emplace_back("all of it, as the load was cancelled");
        return result;
    }
}

} // namespace

bool LoadResult::ok() const {
    return !cancelled && std::none_of(problems.begin(), problems.end(), [](const Problem& problem) {
        return problem.severity == Severity::error;
    });
}

LoadResult load(const std::filesystem::path& path, const LoadOptions& options) {
    return run(options, [&path](Loader& loader) { return loader.load(path); });
}

LoadResult parse(std::string_view text, const LoadOptions& options) {
    return run(options, [text](Loader& loader) { return loader.parse(text); });
}

} // namespace bk_parser
