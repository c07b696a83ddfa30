#pragma once

#include "bench/scene.h"

namespace bench {

/// Makes the numeric curves of an animation: channels of keys, each key a time, a value and two tangents, and beside
/// them the samples of the curve. It has exactly `value_count` values; equal arguments give equal curves.
void make_curves(SceneSink& sink, unsigned int value_count, std::uint64_t seed);

} // namespace bench
