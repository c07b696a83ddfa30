#pragma once

#include "bench/scene.h"

#include <string>
#include <vector>

namespace bench {

struct Value {
    SceneValue::Kind kind;
    std::string text;
};

/// An entry of a document that belongs to no format: a group of entries, or a list of values.
struct Entry {
    bool is_group = false;
    SceneShape shape = SceneShape::plain;
    std::string name;
    std::string template_name;
    std::vector<Value> values;
    std::vector<Entry> children;

    /// One value that stands for itself, where other formats have a scalar and not a list.
    bool is_scalar() const {
        return !is_group && values.size() == 1 &&
               (shape == SceneShape::plain || shape == SceneShape::keyword);
    }
    /// The name without the mark of a keyword, as other formats can have it.
    std::string_view plain_name() const {
        return shape == SceneShape::keyword ? std::string_view(name).substr(1) : std::string_view(name);
    }
};

/// Keeps what a generator or a reader tells, so that each form can be written from the same content.
class Document : public SceneSink {
public:
    Document();

    void begin_group(std::string_view name, std::string_view template_name) override;
    void end_group() override;
    void entry(SceneShape shape, std::string_view name, std::span<const SceneValue> values) override;

    const Entry& root() const { return open_.front(); }
    /// Values, templates not counted.
    std::size_t value_count() const { return value_count_; }
    std::size_t decimal_count() const { return decimal_count_; }

private:
    std::vector<Entry> open_; // the root and the groups that have not ended
    std::size_t value_count_ = 0;
    std::size_t decimal_count_ = 0;
};

/// The entries of a group by their names, in the order in which a name first comes: formats that have no repeated
/// names make a list of those that share one.
std::vector<std::vector<const Entry*>> grouped_by_name(const Entry& group);

} // namespace bench
