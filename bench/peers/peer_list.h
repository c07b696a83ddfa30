#pragma once

#include "bench/peers/peer.h"

/// One function for each peer's file. It adds the peer once for each way in which it is used.
namespace bench {

using PeerList = std::vector<PeerKind>;

void add_bk_parser(PeerList& peers);
void add_pugixml(PeerList& peers);
void add_rapidxml(PeerList& peers);
void add_rapidjson(PeerList& peers);
void add_yyjson(PeerList& peers);
void add_boostjson(PeerList& peers);
void add_nlohmann(PeerList& peers);
void add_simdjson(PeerList& peers);
void add_tomlplusplus(PeerList& peers);
void add_libconfig(PeerList& peers);
void add_msgpack(PeerList& peers);

} // namespace bench
