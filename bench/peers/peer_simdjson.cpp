#include "bench/peers/peer_list.h"

#include <simdjson.h>

namespace bench {

namespace {

using simdjson::dom::element_type;

void walk_value(const simdjson::dom::element& value, Checksum& sum) {
    switch (value.type()) {
    case element_type::BOOL:
        sum.flag(value.get_bool().value_unsafe());
        break;
    case element_type::INT64:
        sum.integer(value.get_int64().value_unsafe());
        break;
    case element_type::DOUBLE:
        sum.decimal(value.get_double().value_unsafe());
        break;
    case element_type::STRING:
        sum.string(value.get_string().value_unsafe());
        break;
    case element_type::ARRAY: {
        const simdjson::dom::array items = value.get_array().value_unsafe();
        for (const simdjson::dom::element item : items) {
            walk_value(item, sum);
        }
        break;
    }
    case element_type::OBJECT: {
        const simdjson::dom::object members = value.get_object().value_unsafe();
        for (const simdjson::dom::key_value_pair member : members) {
            walk_value(member.value, sum);
        }
        break;
    }
    default:
        break;
    }
}

/// Its tape can be read but not changed. It is no editable tree, and is here to show what is possible.
class Simdjson : public Peer {
public:
    explicit Simdjson(const Source& source) : text_(source.text) {}

    bool parse() override {
        parser_ = std::make_unique<simdjson::dom::parser>();
        return parser_->parse(text_).get(root_) == simdjson::SUCCESS;
    }
    Checksum walk() const override {
        Checksum sum;
        walk_value(root_, sum);
        return sum;
    }
    void destroy() override { parser_.reset(); }
    void drop_text() override { text_ = simdjson::padded_string(); }

private:
    simdjson::padded_string text_;
    std::unique_ptr<simdjson::dom::parser> parser_;
    simdjson::dom::element root_;
};

} // namespace

void add_simdjson(PeerList& peers) {
    peers.push_back({"simdjson", Form::json, PeerKind::READ_ONLY, reads, make_peer<Simdjson>});
}

} // namespace bench
