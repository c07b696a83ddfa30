#include "bench/scene.h"

#include "bench/scene_random.h"

#include <algorithm>
#include <string>
#include <vector>

namespace bench {

namespace {

using Kind = SceneValue::Kind;

constexpr std::string_view object_names[] = {"chair", "table",  "spot_lamp", "window_frame", "stair",
                                             "shelf", "column", "door_leaf", "rail",         "curtain"};
constexpr std::string_view object_templates[] = {"mesh", "nurbs", "instance", "light"};
constexpr std::string_view materials[] = {"lacquer", "oak", "brushed_steel", "glass", "linen"};
constexpr std::string_view texture_files[] = {"textures/oak_planks_2k.png", "textures/linen.tif",
                                              "C:\\maps\\steel\\brushed.exr", "textures/noise.png"};
constexpr std::string_view tags[] = {"interior",
                                     "static",
                                     "casts_shadow",
                                     "ground floor",
                                     "reviewed",
                                     "fa\xC3\xA7"
                                     "ade"};
constexpr std::string_view notes[] = {"Painted by hand.\nSecond coat is missing.",
                                      "The \"old\" one:\tkeep until the new one is approved",
                                      "scale is the carpenter's, not the drawing's", ""};
constexpr std::string_view modifiers[] = {"noise", "bend", "subdivide", "mirror"};
constexpr std::string_view modes[] = {"ridged", "smooth", "keep_edges"};

/// Writes entries until the values of the scene are used up; what comes after that is left out.
class SceneWriter {
public:
    SceneWriter(SceneSink& sink, unsigned int value_count, std::uint64_t seed)
        : sink_(sink), values_left_(value_count), random_(seed) {}

    bool is_full() const { return values_left_ == 0; }

    void layer() {
        begin("layer", "");
        keyword("#revision", std::to_string(random_.between(1, 40)));
        string("title", std::string(random_.pick(tags)) + " " + std::to_string(++layer_count_));
        colour();
        while (!is_full() && !random_.one_in(7)) {
            assembly();
        }
        end();
    }

private:
    void begin(std::string_view name, std::string_view template_name) {
        sink_.begin_group(name, template_name);
    }
    void end() { sink_.end_group(); }

    void assembly() {
        begin("assembly", "");
        flag("expanded");
        transform();
        const unsigned int object_count = 4 + random_.below(9);
        for (unsigned int i = 0; i < object_count && !is_full(); ++i) {
            object();
        }
        end();
    }

    void object() {
        begin("object", random_.pick(object_templates));
        string("name", std::string(random_.pick(object_names)) + "_" + std::to_string(++object_count_));
        integer("id", object_count_);
        flag("visible");
        flag("locked");
        transform();
        colour();
        tag_list();
        if (random_.one_in(3)) {
            string("note", random_.pick(notes));
        }
        modifier();
        material();
        geometry();
        end();
    }

    void transform() {
        begin("transform", "");
        decimals("position", 3, 500, true);
        decimals("rotation", 4, 1, true);
        decimals("scale", 3, 4, false);
        end();
    }

    void material() {
        begin("material", random_.pick(materials));
        channel("base");
        channel("bump");
        decimals("roughness", 1, 1, false);
        flag("double_sided");
        end();
    }

    void channel(std::string_view name) {
        begin("channel", name);
        colour();
        if (random_.one_in(2)) {
            begin("texture", "");
            string("file", random_.pick(texture_files));
            decimals("tiling", 2, 16, false);
            flag("wrap");
            end();
        }
        end();
    }

    void geometry() {
        begin("geometry", "");
        decimals("bounds", 6, 500, true);
        const unsigned int faces = 4 + random_.below(9);
        for (unsigned int i = 0; i < 3 * faces; ++i) {
            add(Kind::integer, std::to_string(random_.below(2 * faces)));
        }
        put(SceneShape::array, "indices");
        end();
    }

    void modifier() {
        add(Kind::integer, std::to_string(random_.between(-8, 8)));
        add(Kind::decimal, random_.decimal(2, false));
        add(Kind::string, random_.pick(modes));
        add(Kind::flag, random_.one_in(2) ? "yes" : "no");
        put(SceneShape::call, random_.pick(modifiers));
    }

    void tag_list() {
        const unsigned int count = 1 + random_.below(3);
        for (unsigned int i = 0; i < count; ++i) {
            add(Kind::string, random_.pick(tags));
        }
        put(SceneShape::array, "tags");
    }

    void colour() { decimals("colour", 4, 1, false); }

    void decimals(std::string_view name, unsigned int count, unsigned int whole, bool is_signed) {
        for (unsigned int i = 0; i < count; ++i) {
            add(Kind::decimal, random_.decimal(whole, is_signed));
        }
        put(SceneShape::plain, name);
    }
    void integer(std::string_view name, unsigned int value) {
        add(Kind::integer, std::to_string(value));
        put(SceneShape::plain, name);
    }
    void flag(std::string_view name) {
        add(Kind::flag, random_.one_in(2) ? "yes" : "no");
        put(SceneShape::plain, name);
    }
    void string(std::string_view name, std::string_view text) {
        add(Kind::string, text);
        put(SceneShape::plain, name);
    }
    void keyword(std::string_view name, std::string_view number) {
        add(Kind::integer, number);
        put(SceneShape::keyword, name);
    }

    void add(Kind kind, std::string_view text) {
        kinds_.push_back(kind);
        texts_.emplace_back(text);
    }

    /// Ends an entry: hands over what was added, as far as the scene still has room for it.
    void put(SceneShape shape, std::string_view name) {
        const auto count = std::min(static_cast<unsigned int>(texts_.size()), values_left_);
        std::vector<SceneValue> values;
        for (unsigned int i = 0; i < count; ++i) {
            values.push_back({kinds_[i], texts_[i]});
        }
        if (count != 0) {
            sink_.entry(shape, name, values);
        }
        values_left_ -= count;
        kinds_.clear();
        texts_.clear();
    }

    SceneSink& sink_;
    unsigned int values_left_;
    SceneRandom random_;
    unsigned int layer_count_ = 0;
    unsigned int object_count_ = 0;
    std::vector<Kind> kinds_; // of the entry that is being put together
    std::vector<std::string> texts_;
};

} // namespace

void make_scene(SceneSink& sink, unsigned int value_count, std::uint64_t seed) {
    SceneWriter writer(sink, value_count, seed);
    while (!writer.is_full()) {
        writer.layer();
    }
}

} // namespace bench
