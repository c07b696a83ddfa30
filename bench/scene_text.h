#pragma once

#include "bench/scene.h"

#include <string>

namespace bench {

/// A scene in the text syntax of documents. It is composed without the library that is measured.
class SceneText : public SceneSink {
public:
    void begin_group(std::string_view name, std::string_view template_name) override;
    void end_group() override;
    void entry(SceneShape shape, std::string_view name, std::span<const SceneValue> values) override;

    const std::string& get_text() const { return text_; }

private:
    void begin_line();

    std::string text_;
    std::size_t depth_ = 0;
};

std::string make_scene_text(unsigned int value_count, std::uint64_t seed);

} // namespace bench
