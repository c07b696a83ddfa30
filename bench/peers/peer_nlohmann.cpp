#include "bench/peers/peer_list.h"

#include <nlohmann/json.hpp>

namespace bench {

namespace {

using nlohmann::json;

void walk_value(const json& value, Checksum& sum) {
    switch (value.type()) {
    case json::value_t::boolean:
        sum.flag(*value.get_ptr<const json::boolean_t*>());
        break;
    case json::value_t::number_unsigned:
    case json::value_t::number_integer:
        sum.integer(*value.get_ptr<const json::number_integer_t*>());
        break;
    case json::value_t::number_float:
        sum.decimal(*value.get_ptr<const json::number_float_t*>());
        break;
    case json::value_t::string:
        sum.string(*value.get_ptr<const json::string_t*>());
        break;
    case json::value_t::array:
    case json::value_t::object:
        for (const json& item : value) {
            walk_value(item, sum);
        }
        break;
    default:
        break;
    }
}

/// Objects keep no order, and members cannot be renamed, so it takes no part in the edit.
class Nlohmann : public Peer {
public:
    explicit Nlohmann(const Source& source) : source_(source) {}

    bool parse() override {
        tree_ = json::parse(source_.text, nullptr, false);
        return !tree_.is_discarded();
    }
    Checksum walk() const override {
        Checksum sum;
        walk_value(tree_, sum);
        return sum;
    }
    /// The tree is the same whether it was read or built.
    bool build() override { return true; }
    std::size_t print(bool pretty) override {
        printed_ = tree_.dump(pretty ? 4 : -1);
        return printed_.size();
    }
    void forget() override { printed_ = std::string(); }
    std::size_t encode() override {
        encoded_ = json::to_msgpack(tree_);
        return encoded_.size();
    }
    bool decode() override {
        tree_ = json::from_msgpack(encoded_, true, false);
        return !tree_.is_discarded();
    }
    void destroy() override { tree_ = nullptr; }

private:
    const Source& source_;
    json tree_;
    std::string printed_;
    std::vector<std::uint8_t> encoded_;
};

} // namespace

void add_nlohmann(PeerList& peers) {
    peers.push_back({"nlohmann", Form::json, PeerKind::NONE, reads | prints | built_prints | stores,
                     make_peer<Nlohmann>});
}

} // namespace bench
