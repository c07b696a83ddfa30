#pragma once

namespace bk {

/// Prefetches the cache line at an address. The address need not be valid.
inline void prefetch([[maybe_unused]] const void* address) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

} // namespace bk
