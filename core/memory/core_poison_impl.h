#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define BK_PARSER_POISONS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define BK_PARSER_POISONS 1
#endif
#endif

#if defined(BK_PARSER_POISONS)
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#endif

/// Tells the address sanitizer which bytes of the slabs are in use. Does nothing in other builds.
namespace bk {

#if defined(BK_PARSER_POISONS)
inline constexpr bool has_poison = true;
#else
inline constexpr bool has_poison = false;
#endif

/// Makes the sanitizer report every later access to these bytes.
inline void poison([[maybe_unused]] const void* begin, [[maybe_unused]] std::size_t size) noexcept {
#if defined(BK_PARSER_POISONS)
    __asan_poison_memory_region(begin, size);
#endif
}

inline void unpoison([[maybe_unused]] const void* begin, [[maybe_unused]] std::size_t size) noexcept {
#if defined(BK_PARSER_POISONS)
    __asan_unpoison_memory_region(begin, size);
#endif
}

/// Whether the first of these bytes is poisoned; false in builds without the sanitizer.
inline bool is_poisoned([[maybe_unused]] const void* begin) noexcept {
#if defined(BK_PARSER_POISONS)
    return __asan_address_is_poisoned(begin) != 0;
#else
    return false;
#endif
}

/// Tells the leak sanitizer to search these bytes for pointers: the slabs do not come from the global heap.
inline void search_for_leaks([[maybe_unused]] const void* begin, [[maybe_unused]] std::size_t size) noexcept {
#if defined(BK_PARSER_POISONS) && !defined(_WIN32)
    __lsan_register_root_region(begin, size);
#endif
}

inline void do_not_search_for_leaks([[maybe_unused]] const void* begin,
                                    [[maybe_unused]] std::size_t size) noexcept {
#if defined(BK_PARSER_POISONS) && !defined(_WIN32)
    __lsan_unregister_root_region(begin, size);
#endif
}

} // namespace bk
