#include "bench/peers/peer_list.h"

#define TOML_EXCEPTIONS 0
#include <toml++/toml.h>

#include <sstream>

namespace bench {

namespace {

void walk_node(const toml::node& node, Checksum& sum) {
    switch (node.type()) {
    case toml::node_type::boolean:
        sum.flag(node.ref<bool>());
        break;
    case toml::node_type::integer:
        sum.integer(node.ref<std::int64_t>());
        break;
    case toml::node_type::floating_point:
        sum.decimal(node.ref<double>());
        break;
    case toml::node_type::string:
        sum.string(node.ref<std::string>());
        break;
    case toml::node_type::array:
        for (const toml::node& item : *node.as_array()) {
            walk_node(item, sum);
        }
        break;
    case toml::node_type::table:
        for (const auto& [key, value] : *node.as_table()) {
            walk_node(value, sum);
        }
        break;
    default:
        break;
    }
}

/// Tables keep no order, and keys cannot be renamed, so it takes no part in the edit.
class Tomlplusplus : public Peer {
public:
    explicit Tomlplusplus(const Source& source) : source_(source) {}

    bool parse() override {
        toml::parse_result result = toml::parse(std::string_view(source_.text));
        if (!result) {
            return false;
        }
        tree_ = std::make_unique<toml::table>(std::move(result).table());
        return true;
    }
    Checksum walk() const override {
        Checksum sum;
        walk_node(*tree_, sum);
        return sum;
    }
    std::size_t print(bool) override {
        std::ostringstream out;
        out << toml::toml_formatter(*tree_);
        printed_ = std::move(out).str();
        return printed_.size();
    }
    void forget() override { printed_ = std::string(); }
    void destroy() override { tree_.reset(); }

private:
    const Source& source_;
    std::unique_ptr<toml::table> tree_;
    std::string printed_;
};

} // namespace

void add_tomlplusplus(PeerList& peers) {
    peers.push_back({"toml++", Form::toml, PeerKind::NONE, reads | bit(Operation::print_pretty),
                     make_peer<Tomlplusplus>});
}

} // namespace bench
