#include "bench/peers/peer_list.h"

#include <algorithm>

namespace bench {

const char* operation_name(Operation operation) {
    constexpr const char* names[operation_count] = {
        "parse",           "parse_walk",   "walk",          "walk_again", "edit",        "print_pretty",
        "print_compact",   "built_pretty", "built_compact", "encode",     "decode_walk", "destroy",
        "load_walk_close", "first",        "memory"};
    return names[static_cast<unsigned int>(operation)];
}

const PeerList& all_peers() {
    static const PeerList peers = [] {
        PeerList list;
        add_bk_parser(list);
#if defined(BK_PEER_PUGIXML)
        add_pugixml(list);
#endif
#if defined(BK_PEER_RAPIDXML)
        add_rapidxml(list);
#endif
#if defined(BK_PEER_RAPIDJSON)
        add_rapidjson(list);
#endif
#if defined(BK_PEER_YYJSON)
        add_yyjson(list);
#endif
#if defined(BK_PEER_BOOSTJSON)
        add_boostjson(list);
#endif
#if defined(BK_PEER_NLOHMANN)
        add_nlohmann(list);
#endif
#if defined(BK_PEER_SIMDJSON)
        add_simdjson(list);
#endif
#if defined(BK_PEER_TOMLPLUSPLUS)
        add_tomlplusplus(list);
#endif
#if defined(BK_PEER_LIBCONFIG)
        add_libconfig(list);
#endif
#if defined(BK_PEER_MSGPACK)
        add_msgpack(list);
#endif
        return list;
    }();
    return peers;
}

const PeerKind* find_peer(const std::string& name) {
    const PeerList& peers = all_peers();
    const auto found =
        std::find_if(peers.begin(), peers.end(), [&](const PeerKind& peer) { return peer.name == name; });
    return found == peers.end() ? nullptr : &*found;
}

} // namespace bench
