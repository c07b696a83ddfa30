#pragma once

#include "bench/scene.h"

#include <string_view>

namespace bench {

/// Tells what a JSON text holds as a scene. Members become entries: an object is a group, a list of scalars an array,
/// a list of objects a group each, all of the same name, and a list in a list an entry named "item". What only
/// JSON can say is said otherwise: null is the empty string, an integer beyond 32 bits a decimal, an empty list an
/// empty group; a name becomes an identifier, and a control character a question mark. False when the text is not
/// an object in JSON.
bool read_json(std::string_view text, SceneSink& sink);

} // namespace bench
