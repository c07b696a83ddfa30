#include "core/numbers/core_number_decimal_impl.h"

namespace bk {

bool divide_by_ten_to(std::size_t, std::uint64_t, double&) noexcept {
    return false;
}

} // namespace bk
