#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/described.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using bk_parser::get;
using bk_parser::set;

class access_floats : public testing::Test {
protected:
    void fill(std::string_view text) { root_.set_text(core(text), default_parser_serial_version, nullptr); }
    std::string text() const { return described(root_); }

    ParserGroup root_{"root"};
};

} // namespace

TEST_F(access_floats, a_float_that_is_written_back_changes_nothing) {
    fill("f 0.1 g 0.100 h 3.14159265358979 i 16777217 j 7 v 0.1 1 2.7182818284590452 ");
    const std::string before = text();
    for (const char* path : {"f", "g", "h", "i", "j"}) {
        EXPECT_TRUE(set(root_, path, *get<float>(root_, path))) << path;
    }
    EXPECT_TRUE(set(root_, "v", *get<GMathVec3<float>>(root_, "v")));
    EXPECT_TRUE(set(root_, "v", *get<std::vector<float>>(root_, "v")));
    EXPECT_EQ(text(), before);
}

TEST_F(access_floats, another_float_is_written_with_its_shortest_digits) {
    fill("f 0.1 i 7 c \"text\" ");
    EXPECT_TRUE(set(root_, "f", 0.3f));
    EXPECT_TRUE(set(root_, "i", 0.7f));
    EXPECT_TRUE(set(root_, "c", 1e-20f));
    EXPECT_TRUE(set(root_, "new", std::vector<float>{0.2f, 5.0f, -1.1f}));
    EXPECT_EQ(text(), " f 0.3 i 0.7 c 1e-20 new 0.2 5.0 -1.1");
    EXPECT_TRUE(set(root_, "f", 0.1));
    EXPECT_EQ(get<double>(root_, "f"), 0.1) << "a double is written as it is";
}

TEST_F(access_floats, a_whole_float_keeps_an_int) {
    fill("i 7 ");
    EXPECT_TRUE(set(root_, "i", 2147483520.0f));
    EXPECT_EQ(text(), " i 2147483520");
    EXPECT_TRUE(set(root_, "i", 0.0f));
    EXPECT_EQ(text(), " i 0");
    EXPECT_TRUE(set(root_, "i", -0.0f));
    EXPECT_EQ(text(), " i -0.0");
}

TEST_F(access_floats, every_float_reads_back_with_the_same_bits) {
    std::mt19937 random(7);
    std::vector<float> floats{std::numeric_limits<float>::max(),
                              std::numeric_limits<float>::lowest(),
                              std::numeric_limits<float>::min(),
                              std::numeric_limits<float>::denorm_min(),
                              std::nextafter(1.0f, 2.0f),
                              0x1p-126f - 0x1p-149f,
                              std::nextafter(0x1.fffffep127f, 0.0f),
                              16777216.0f};
    while (floats.size() < 20000) {
        const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isfinite(value)) {
            floats.push_back(value);
        }
    }
    ParserEntry& entry = *root_.add_entry("f", 0, 0);
    for (const float value : floats) {
        ASSERT_TRUE(set(entry, 0, value)) << value;
        const auto read = get<float>(entry);
        ASSERT_TRUE(read) << value;
        EXPECT_EQ(std::bit_cast<std::uint32_t>(*read), std::bit_cast<std::uint32_t>(value)) << value;
    }
    EXPECT_FALSE(set(entry, 0, std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FALSE(set(entry, 0, std::numeric_limits<float>::infinity()));
}
