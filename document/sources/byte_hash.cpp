#include "document/sources/byte_hash_impl.h"

#include <algorithm>
#include <cstring>

namespace bk_parser {

void ByteHash::add(std::string_view piece) noexcept {
    size_ += piece.size();
    const auto* bytes = reinterpret_cast<const unsigned char*>(piece.data());
    std::size_t left = piece.size();
    if (rest_size_ != 0) {
        const std::size_t taken = std::min(left, block_size - rest_size_);
        std::copy_n(bytes, taken, rest_.data() + rest_size_);
        rest_size_ += taken;
        bytes += taken;
        left -= taken;
        if (rest_size_ != block_size) {
            return;
        }
        add_blocks(rest_.data(), 1);
        rest_size_ = 0;
    }
    add_blocks(bytes, left / block_size);
    rest_size_ = left % block_size;
    std::copy_n(bytes + (left - rest_size_), rest_size_, rest_.data());
}

void ByteHash::add_blocks(const unsigned char* bytes, std::size_t count) noexcept {
    std::array<std::uint64_t, lane_count> lanes = lanes_;
    for (; count != 0; --count, bytes += block_size) {
        for (std::size_t i = 0; i < lane_count; ++i) {
            lanes[i] = mix(lanes[i], bk::load_le64(bytes + i * sizeof(std::uint64_t)));
        }
    }
    lanes_ = lanes;
}

std::uint64_t ByteHash::finish() const noexcept {
    std::uint64_t hash = size_;
    std::array<unsigned char, block_size> last{};
    std::copy_n(rest_.data(), rest_size_, last.data());
    for (std::size_t i = 0; i < lane_count; ++i) {
        hash = spread(hash ^ lanes_[i]);
        hash = spread(hash ^ bk::load_le64(last.data() + i * sizeof(std::uint64_t)));
    }
    return hash;
}

} // namespace bk_parser
