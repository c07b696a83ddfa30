#pragma once

/// BK_PARSER_API marks what the library shows to other modules; everything else stays hidden.
/// Define BK_PARSER_STATIC when the static library is used (its CMake target does so by itself).
#if defined(BK_PARSER_STATIC)
#define BK_PARSER_API
#elif defined(_WIN32)
#if defined(BK_PARSER_BUILDING)
#define BK_PARSER_API __declspec(dllexport)
#else
#define BK_PARSER_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define BK_PARSER_API __attribute__((visibility("default")))
#else
#define BK_PARSER_API
#endif
