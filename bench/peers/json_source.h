#pragma once

#include "bench/scene.h"

#include <string_view>

namespace bench {

/// Reads a JSON text and passes it to the sink as a scene. Members become entries: an object becomes a group, a list of scalars an array, a
/// list of objects several groups of one name, and a list in a list an entry named "item". Replaces what only JSON has: null becomes the
/// empty string, an integer of more than 32 bits a decimal, an empty list an empty group, any name an identifier, and a control character a
/// question mark. Returns false when the text is not a JSON object.
bool read_json(std::string_view text, SceneSink& sink);

} // namespace bench
