#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

/// Registers the name of an event with its hash, so that two names that hash alike are found at load time.
/// True when the hash stood for no other name before; registering the same pair again is no collision.
/// Meant for load time: calls are not synchronised.
BK_PARSER_API bool event_debug_collisions(const unsigned int& hash, const CoreString& name);

/// The name registered with `hash`, empty when there is none.
BK_PARSER_API const CoreString& event_get_name(const unsigned int& hash);

/// How many names are registered.
BK_PARSER_API unsigned int event_get_count();
