#include "bench/curves.h"

#include "bench/scene_random.h"

#include <algorithm>
#include <vector>

namespace bench {

namespace {

class CurveWriter {
public:
    CurveWriter(SceneSink& sink, unsigned int value_count, std::uint64_t seed)
        : sink_(sink), values_left_(value_count), random_(seed) {}

    bool is_full() const { return values_left_ == 0; }

    void curve() {
        sink_.begin_group("curve", "");
        const std::string target = "joint_" + std::to_string(random_.below(200)) + ".rotation";
        put(SceneShape::plain, "target", SceneValue::Kind::string, {target});
        put(SceneShape::plain, "channel", SceneValue::Kind::integer, {std::to_string(random_.below(3))});
        const unsigned int keys = 8 + random_.below(40);
        for (unsigned int i = 0; i < keys; ++i) {
            decimals(SceneShape::plain, "key", 4);
        }
        decimals(SceneShape::array, "samples", 64 + random_.below(192));
        sink_.end_group();
    }

private:
    void decimals(SceneShape shape, std::string_view name, unsigned int count) {
        std::vector<std::string> texts;
        for (unsigned int i = 0; i < count; ++i) {
            texts.push_back(random_.decimal(400, true));
        }
        put(shape, name, SceneValue::Kind::decimal, texts);
    }

    void put(SceneShape shape, std::string_view name, SceneValue::Kind kind,
             const std::vector<std::string>& texts) {
        const auto count = std::min(static_cast<unsigned int>(texts.size()), values_left_);
        std::vector<SceneValue> values;
        for (unsigned int i = 0; i < count; ++i) {
            values.push_back({kind, texts[i]});
        }
        if (count != 0) {
            sink_.entry(shape, name, values);
        }
        values_left_ -= count;
    }

    SceneSink& sink_;
    unsigned int values_left_;
    SceneRandom random_;
};

} // namespace

void make_curves(SceneSink& sink, unsigned int value_count, std::uint64_t seed) {
    CurveWriter writer(sink, value_count, seed);
    while (!writer.is_full()) {
        writer.curve();
    }
}

} // namespace bench
