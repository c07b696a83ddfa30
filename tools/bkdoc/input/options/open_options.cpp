#include "input/options/open_options.h"

#include "input/options/key_source.h"
#include "platform/paths.h"

#include <limits>

namespace bkdoc {

namespace {

/// The limits of a load. With --trusted, includes and the sizes of files are not limited.
ParserLimits limits_of(bool trusted) noexcept {
    if (!trusted) {
        return ParserLimits::untrusted();
    }
    ParserLimits limits;
    limits.include_depth = ParserLimits::no_limit;
    limits.include_count = ParserLimits::no_limit;
    limits.source_size = std::numeric_limits<core_uint64>::max();
    return limits;
}

} // namespace

bk_parser::LoadOptions OpenOptions::load_options() const {
    bk_parser::LoadOptions options;
    for (const std::string& folder : search_paths) {
        options.search.push_back(path_of(folder));
    }
    options.key = key;
    options.limits = limits_of(trusted);
    options.follow_includes = follow_includes;
    options.allow = allow;
    options.keep_sources = keep_sources;
    return options;
}

bool take_opening(const Arguments& arguments, OpenOptions& open, Streams& streams) {
    open.search_paths = arguments.values("-I");
    open.trusted = arguments.has("--trusted");
    open.follow_includes = !arguments.has("--no-includes");
    open.use_config = !arguments.has("--no-config");
    const KeySource source{arguments.value("--key"), arguments.value("--key-file")};
    const auto reason = find_key(source, open.key);
    if (reason) {
        complain(streams, *reason);
    }
    return !reason;
}

} // namespace bkdoc
