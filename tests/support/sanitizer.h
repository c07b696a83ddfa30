#pragma once

/// Defined in builds with a sanitizer for memory, which keeps freed blocks and makes system calls of its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define BK_PARSER_SANITIZED_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
#define BK_PARSER_SANITIZED_MEMORY 1
#endif
#endif
