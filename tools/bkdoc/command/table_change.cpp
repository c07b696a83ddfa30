#include "command/table_parts.h"

namespace bkdoc {

std::span<const VerbSpec> change_verbs() noexcept {
    return {};
}

} // namespace bkdoc
