#include "core/text/core_bytes_impl.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

using namespace std::literals;

namespace {

std::string stored(std::uint32_t value) {
    unsigned char bytes[4];
    bk::store_le32(bytes, value);
    return {reinterpret_cast<char*>(bytes), 4};
}

std::string stored_wide(std::uint64_t value) {
    unsigned char bytes[8];
    bk::store_le64(bytes, value);
    return {reinterpret_cast<char*>(bytes), 8};
}

TEST(core_bytes_impl, numbers_are_stored_with_the_least_significant_byte_first) {
    EXPECT_EQ(stored(0x01020380u), "\x80\x03\x02\x01");
    EXPECT_EQ(stored_wide(0x0102030405060780u), "\x80\x07\x06\x05\x04\x03\x02\x01");
}

TEST(core_bytes_impl, a_stored_number_is_loaded_back) {
    for (const std::uint64_t value :
         {std::uint64_t{0}, std::uint64_t{255}, ~std::uint64_t{0}, std::uint64_t{0x8000000000000001u}}) {
        const std::string bytes = stored_wide(value);
        EXPECT_EQ(bk::load_le(reinterpret_cast<const unsigned char*>(bytes.data()), 8), value);
    }
}

TEST(core_bytes_impl, reading_advances_past_what_was_read) {
    const std::string bytes = "\x01\x02\x03\x04\x05\x06\x07"s;
    bk::ByteCursor cursor(bytes.data(), bytes.size(), 0);
    EXPECT_EQ(cursor.take(1), 0x01u);
    EXPECT_EQ(cursor.take(2), 0x0302u);
    EXPECT_EQ(cursor.take(4), 0x07060504u);
    EXPECT_EQ(cursor.position(), 7u);
    EXPECT_TRUE(cursor.at_end());
}

TEST(core_bytes_impl, missing_bytes_are_zero_and_the_position_advances_all_the_same) {
    const std::string bytes = "\xFF\xFF\xFF"s;
    bk::ByteCursor cursor(bytes.data(), bytes.size(), 2);
    EXPECT_EQ(cursor.take(4), 0xFFu);
    EXPECT_EQ(cursor.position(), 6u);
    EXPECT_EQ(cursor.take(8), 0u);
    EXPECT_EQ(cursor.position(), 14u);
}

TEST(core_bytes_impl, a_position_far_past_the_end_reads_zeros) {
    const std::string bytes = "\xFF"s;
    bk::ByteCursor cursor(bytes.data(), bytes.size(), 0xFFFFFFFFFFFFFFF0u);
    EXPECT_TRUE(cursor.at_end());
    EXPECT_EQ(cursor.take(8), 0u);
    bk::ByteCursor nothing(nullptr, 0, 0);
    EXPECT_TRUE(nothing.at_end());
    EXPECT_EQ(nothing.take(8), 0u);
    EXPECT_EQ(nothing.position(), 8u);
}

} // namespace
