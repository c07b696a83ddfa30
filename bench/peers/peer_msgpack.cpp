#include "bench/peers/peer_list.h"

#define MSGPACK_NO_BOOST
#include <msgpack.hpp>

namespace bench {

namespace {

void walk_object(const msgpack::object& object, Checksum& sum) {
    switch (object.type) {
    case msgpack::type::BOOLEAN:
        sum.flag(object.via.boolean);
        break;
    case msgpack::type::POSITIVE_INTEGER:
        sum.integer(static_cast<std::int64_t>(object.via.u64));
        break;
    case msgpack::type::NEGATIVE_INTEGER:
        sum.integer(object.via.i64);
        break;
    case msgpack::type::FLOAT64:
        sum.decimal(object.via.f64);
        break;
    case msgpack::type::STR:
        sum.string({object.via.str.ptr, object.via.str.size});
        break;
    case msgpack::type::ARRAY:
        for (std::uint32_t i = 0; i < object.via.array.size; ++i) {
            walk_object(object.via.array.ptr[i], sum);
        }
        break;
    case msgpack::type::MAP:
        for (std::uint32_t i = 0; i < object.via.map.size; ++i) {
            walk_object(object.via.map.ptr[i].val, sum);
        }
        break;
    default:
        break;
    }
}

/// Has no text form, so that only the binary forms are compared.
class Msgpack : public Peer {
public:
    explicit Msgpack(const Source& source) : source_(source) {}

    bool parse() override {
        try {
            tree_ = msgpack::unpack(source_.text.data(), source_.text.size());
        } catch (const msgpack::unpack_error&) {
            return false;
        }
        return true;
    }
    Checksum walk() const override {
        Checksum sum;
        walk_object(tree_.get(), sum);
        return sum;
    }
    std::size_t encode() override {
        encoded_ = std::make_unique<msgpack::sbuffer>();
        msgpack::pack(*encoded_, tree_.get());
        return encoded_->size();
    }
    /// Decodes the bytes that it was given, because its own encoding stores whole doubles as integers.
    bool decode() override { return parse(); }
    void destroy() override { tree_ = msgpack::object_handle(); }

private:
    const Source& source_;
    msgpack::object_handle tree_;
    std::unique_ptr<msgpack::sbuffer> encoded_;
};

} // namespace

void add_msgpack(PeerList& peers) {
    peers.push_back({"msgpack-cxx", Form::msgpack, PeerKind::NONE,
                     stores | bit(Operation::destroy) | bit(Operation::memory), make_peer<Msgpack>});
}

} // namespace bench
