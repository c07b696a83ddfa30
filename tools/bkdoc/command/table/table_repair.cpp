#include "command/table/table_parts.h"

namespace bkdoc {

std::span<const VerbSpec> repair_verbs() noexcept {
    return {};
}

} // namespace bkdoc
