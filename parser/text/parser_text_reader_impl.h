#pragma once

#include "core/core_version.h"
#include "core/reports/app_progress_impl.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"
#include "parser/parser_read_observer.h"

namespace bk {

/// The result of reading a text.
enum class TextResult {
    clean,
    faulty, ///< empty, or its last word was a fault or the empty tag
    stopped ///< a limit, or the end of memory; the group has what was read before
};

/// Parses a text and appends what it holds to a group. `observer` may be null.
TextResult read_text(ParserGroup& group, const CoreString& text, const CoreVersion& version,
                     Progress progress, ParserReadObserver* observer, const ParserLimits& limits);

} // namespace bk
