#include "bench/peers/peer_list.h"

#include <boost/json/src.hpp>

namespace bench {

namespace {

namespace json = boost::json;

void walk_value(const json::value& value, Checksum& sum) {
    switch (value.kind()) {
    case json::kind::bool_:
        sum.flag(value.get_bool());
        break;
    case json::kind::int64:
        sum.integer(value.get_int64());
        break;
    case json::kind::double_:
        sum.decimal(value.get_double());
        break;
    case json::kind::string:
        sum.string(value.get_string());
        break;
    case json::kind::array:
        for (const json::value& item : value.get_array()) {
            walk_value(item, sum);
        }
        break;
    case json::kind::object:
        for (const json::key_value_pair& member : value.get_object()) {
            walk_value(member.value(), sum);
        }
        break;
    default:
        break;
    }
}

/// Its tree is in one arena. Members cannot be renamed, so it takes no part in the edit. It prints in one layout.
class BoostJson : public Peer {
public:
    explicit BoostJson(const Source& source) : source_(source) {}

    bool parse() override {
        json::error_code error;
        auto arena = json::make_shared_resource<json::monotonic_resource>();
        tree_ = std::make_unique<json::value>(json::parse(source_.text, error, std::move(arena)));
        return !error;
    }
    Checksum walk() const override {
        Checksum sum;
        walk_value(*tree_, sum);
        return sum;
    }
    /// The tree is the same whether it was read or built.
    bool build() override { return true; }
    std::size_t print(bool) override {
        printed_ = json::serialize(*tree_);
        return printed_.size();
    }
    void forget() override { printed_ = std::string(); }
    void destroy() override { tree_.reset(); }

private:
    const Source& source_;
    std::unique_ptr<json::value> tree_;
    std::string printed_;
};

} // namespace

void add_boostjson(PeerList& peers) {
    peers.push_back({"boost.json", Form::json, PeerKind::LOOSE_DECIMALS,
                     reads | bit(Operation::print_compact) | bit(Operation::built_compact),
                     make_peer<BoostJson>});
}

} // namespace bench
