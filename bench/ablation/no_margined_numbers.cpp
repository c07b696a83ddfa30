#include "core/numbers/core_number_margined_impl.h"

namespace bk {

bool read_margined_int(std::string_view, int&) noexcept {
    return false;
}

bool read_margined_decimal(std::string_view, double&) noexcept {
    return false;
}

} // namespace bk
