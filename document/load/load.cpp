#include "document/load.h"

#include "core/files/sys_filesystem_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "document/load/document_state_impl.h"
#include "document/load/loader_impl.h"
#include "document/sources/path_text_impl.h"

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

/// A cancelled document knows its file, so that no save replaces what was not read.
LoadResult load(const std::filesystem::path& path, const LoadOptions& options) {
    LoadResult result = run(options, [&path](Loader& loader) { return loader.load(path); });
    if (result.cancelled) {
        const CoreString name(std::string_view(path_text(path)));
        DocumentState::of(result.document).absolute = path_of_text(bk::opened_path(name).get_view());
    }
    return result;
}

LoadResult parse(std::string_view text, const LoadOptions& options) {
    return run(options, [text](Loader& loader) { return loader.parse(text); });
}

} // namespace bk_parser
