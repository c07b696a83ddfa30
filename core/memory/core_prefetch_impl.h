#pragma once

namespace bk {

/// Asks for the cache line at an address, which need not be a valid one.
inline void prefetch([[maybe_unused]] const void* address) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

} // namespace bk
