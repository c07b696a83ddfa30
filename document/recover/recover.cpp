#include "document/recover.h"

#include "core/reports/core_diagnostic_impl.h"
#include "document/load/loader_impl.h"
#include "document/recover/lost_parts_impl.h"

namespace bk_parser {

namespace {

template <class Action>
RecoverResult run(const LoadOptions& options, Action action) {
    const bk::KeptErrno kept;
    RecoverResult result;
    try {
        LostParts lost;
        Loader loader(options);
        loader.keep_lost(lost);
        result.loaded = action(loader);
        result.lost = lost.take();
    } catch (const LoadCancelled&) {
        result.loaded = LoadResult();
        result.loaded.cancelled = true;
    }
    return result;
}

} // namespace

bool RecoverResult::is_whole() const {
    return lost.empty() && loaded.ok();
}

RecoverResult recover(const std::filesystem::path& path, const LoadOptions& options) {
    return run(options, [&path](Loader& loader) { return loader.load(path); });
}

RecoverResult recover_bytes(std::string_view bytes, const LoadOptions& options) {
    return run(options, [bytes](Loader& loader) { return loader.parse(bytes); });
}

} // namespace bk_parser
