#pragma once

#include "parser/parser_group.h"

// The header of a module of the host: a second shared object beside the library.
#if defined(_WIN32) && defined(LAMP_MODULE_BUILDING)
#define LAMP_MODULE_API __declspec(dllexport)
#elif defined(_WIN32)
#define LAMP_MODULE_API __declspec(dllimport)
#else
#define LAMP_MODULE_API __attribute__((visibility("default")))
#endif

namespace lamp_module {

/// Adds an entry of the module's own class, which the group owns.
LAMP_MODULE_API void add_lamp(ParserGroup& group, const char* name, double power);
/// -1 when the entry is of another class.
LAMP_MODULE_API double yearly_cost(const ParserEntry& entry);
/// How many objects of the class are alive.
LAMP_MODULE_API int living();

} // namespace lamp_module
