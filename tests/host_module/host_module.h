#pragma once

#include "core/app_progress_bar.h"
#include "core/core_log.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

/// A module of a host's beside the library: a second shared object, or a second DLL. It derives from the library's classes and
/// shows functions alone, so that its objects are known outside by their bases.
#if defined(_WIN32) && defined(HOST_MODULE_BUILDING)
#define HOST_MODULE_API __declspec(dllexport)
#elif defined(_WIN32)
#define HOST_MODULE_API __declspec(dllimport)
#else
#define HOST_MODULE_API __attribute__((visibility("default")))
#endif

namespace host_module {

/// How many objects of the module's classes are alive.
HOST_MODULE_API int living();

HOST_MODULE_API ParserGroup* make_group(const char* name);
HOST_MODULE_API ParserEntry* make_entry(const char* name);
/// Of more bytes than a slab has blocks for.
HOST_MODULE_API ParserEntry* make_large_entry(const char* name);
HOST_MODULE_API CoreLogHandler* make_log_handler();
HOST_MODULE_API AppProgressBar* make_progress_bar();

/// What the module finds when it asks for its own class; -1 for objects of other classes.
HOST_MODULE_API int mark_of(const ParserGroup& group);
HOST_MODULE_API int mark_of(const ParserEntry& entry);
HOST_MODULE_API int count_messages(const CoreLogHandler& handler);
HOST_MODULE_API int count_calls(const AppProgressBar& progress);

/// Deletes objects of whatever class.
HOST_MODULE_API void destroy(ParserGroup* group);
HOST_MODULE_API void destroy(ParserEntry* entry);
HOST_MODULE_API void destroy(CoreLogHandler* handler);
HOST_MODULE_API void destroy(AppProgressBar* progress);

} // namespace host_module
