#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

/// Registers the name of an event with its hash, to find two names with one hash at load time. Returns false when the hash is
/// registered with another name, or when there is no memory. Registering the same pair again is no collision. Call it at load
/// time only: calls are not synchronised.
BK_PARSER_API bool event_debug_collisions(const unsigned int& hash, const CoreString& name);

/// The name registered with `hash`, empty when there is none.
BK_PARSER_API const CoreString& event_get_name(const unsigned int& hash);

/// How many names are registered.
BK_PARSER_API unsigned int event_get_count();
