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

    /// Whether other formats store it as a scalar, not as a list: one value of an ordinary entry or a keyword.
    bool is_scalar() const {
        return !is_group && values.size() == 1 &&
               (shape == SceneShape::plain || shape == SceneShape::keyword);
    }
    /// The name without the '#' of a keyword, because other formats cannot have it.
    std::string_view plain_name() const {
        return shape == SceneShape::keyword ? std::string_view(name).substr(1) : std::string_view(name);
    }
};

/// Records the content that a generator or a reader produces, so that every form is written from the same content.
class Document : public SceneSink {
public:
    Document();

    void begin_group(std::string_view name, std::string_view template_name) override;
    void end_group() override;
    void entry(SceneShape shape, std::string_view name, std::span<const SceneValue> values) override;

    const Entry& root() const { return open_.front(); }
    /// The number of values, without templates.
    std::size_t value_count() const { return value_count_; }
    std::size_t decimal_count() const { return decimal_count_; }

private:
    std::vector<Entry> open_; // the root and the groups that have not ended
    std::size_t value_count_ = 0;
    std::size_t decimal_count_ = 0;
};

/// The entries of a group by their names, in the order of the first entry of each name. Formats without repeated names store the entries of
/// one name as a list.
std::vector<std::vector<const Entry*>> grouped_by_name(const Entry& group);

} // namespace bench
