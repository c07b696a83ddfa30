#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace bench {

/// One value of a scene. The text of a number is its spelling, of a flag "yes" or "no", of a string its characters without quotes and escapes.
struct SceneValue {
    enum class Kind { flag, integer, decimal, string };

    Kind kind;
    std::string_view text;
};

enum class SceneShape { plain, array, call, keyword };

/// Takes a scene piece by piece, so that the same scene can be written in any format.
class SceneSink {
public:
    virtual ~SceneSink() = default;
    /// The template is empty where there is none.
    virtual void begin_group(std::string_view name, std::string_view template_name) = 0;
    virtual void end_group() = 0;
    virtual void entry(SceneShape shape, std::string_view name, std::span<const SceneValue> values) = 0;
};

/// Makes a scene such as a modelling program stores: layers, assemblies and objects with transforms, materials and
/// meshes, six groups deep. It has exactly `value_count` values, not counting groups; equal arguments give
/// equal scenes on every platform.
void make_scene(SceneSink& sink, unsigned int value_count, std::uint64_t seed);

} // namespace bench
