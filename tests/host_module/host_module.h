#pragma once

#include "core/app_progress_bar.h"
#include "core/core_log.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

/// A module of a host: a second shared object or DLL beside the library. It derives from classes of the
/// library. It exports only functions, so other modules know its objects by their base classes.
#if defined(_WIN32) && defined(HOST_MODULE_BUILDING)
#define HOST_MODULE_API __declspec(dllexport)
#elif defined(_WIN32)
#define HOST_MODULE_API __declspec(dllimport)
#else
#define HOST_MODULE_API __attribute__((visibility("default")))
#endif

namespace host_module {

/// The number of living objects of the module's classes.
HOST_MODULE_API int living();

HOST_MODULE_API ParserGroup* make_group(const char* name);
HOST_MODULE_API ParserEntry* make_entry(const char* name);
/// Makes an entry that is larger than any block of a slab.
HOST_MODULE_API ParserEntry* make_large_entry(const char* name);
HOST_MODULE_API CoreLogHandler* make_log_handler();
HOST_MODULE_API AppProgressBar* make_progress_bar();

/// What the module finds after a cast to its own class; -1 for objects of other classes.
HOST_MODULE_API int mark_of(const ParserGroup& group);
HOST_MODULE_API int mark_of(const ParserEntry& entry);
HOST_MODULE_API int count_messages(const CoreLogHandler& handler);
HOST_MODULE_API int count_calls(const AppProgressBar& progress);

/// Deletes an object of any class.
HOST_MODULE_API void destroy(ParserGroup* group);
HOST_MODULE_API void destroy(ParserEntry* entry);
HOST_MODULE_API void destroy(CoreLogHandler* handler);
HOST_MODULE_API void destroy(AppProgressBar* progress);

} // namespace host_module
