#include "parser/parser_group.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>

namespace {

constexpr unsigned int largest = 0xFFFFFFFFu;

using Write = std::function<unsigned long long(CoreVector<char>&)>;

/// A buffer of the largest size. No test touches its content, so it takes addresses but no memory.
class FullBuffer : public testing::Test {
protected:
    void SetUp() override {
        try {
            bytes_.extend(largest);
        } catch (const std::bad_alloc&) {
            GTEST_SKIP() << "there are not enough addresses for a buffer of 4 GiB";
        }
    }

    /// Writes with room for exactly `size` bytes, and then with room for one byte less.
    void expect_bound(unsigned int size, const std::string& operation, const Write& write) {
        RecordingLog log;
        bytes_.truncate(largest - size);
        EXPECT_EQ(write(bytes_), size) << operation;
        EXPECT_EQ(bytes_.get_count(), largest) << operation;
        EXPECT_TRUE(log.is_empty()) << operation;

        bytes_.truncate(largest - size);
        bytes_.extend(1);
        EXPECT_EQ(write(bytes_), 0u) << operation;
        EXPECT_EQ(bytes_.get_count(), largest - size + 1) << operation;
        EXPECT_EQ(log.take(), one_warning("ParserValue." + operation + ": data too large\n"));
        bytes_.extend(size - 1);
    }

private:
    CoreVector<char> bytes_;
};

} // namespace

using binary_limit = FullBuffer;

TEST_F(binary_limit, a_buffer_is_filled_to_its_last_byte_and_no_further) {
    expect_bound(1, "char_to_bin", [](CoreVector<char>& out) { return ParserValue::char_to_bin(out, 'x'); });
    expect_bound(4, "int_to_bin", [](CoreVector<char>& out) { return ParserValue::int_to_bin(out, 5); });
    expect_bound(8, "size_to_bin", [](CoreVector<char>& out) { return ParserValue::size_to_bin(out, 5); });
    expect_bound(4, "string_to_bin",
                 [](CoreVector<char>& out) { return ParserValue::string_to_bin(out, "abc"); });
}

TEST_F(binary_limit, what_does_not_fit_as_a_whole_leaves_nothing_in_the_buffer) {
    char bytes[] = {1, 2, 3};
    expect_bound(11, "binary_data_to_bin",
                 [&](CoreVector<char>& out) { return ParserValue::binary_data_to_bin(out, bytes, 3); });
    ParserGroup group("g");
    group.set_text("a 1 b { c \"x\" } d 2.5 ", CoreVersion(1.2), nullptr);
    const unsigned int size = group.get_binary(false).get_count();
    expect_bound(size, "group_to_bin",
                 [&](CoreVector<char>& out) { return ParserValue::group_to_bin(out, group); });
}

TEST_F(binary_limit, a_value_that_does_not_fit_counts_nothing) {
    for (const bool with_type : {false, true}) {
        expect_bound(with_type ? 5 : 4, "get_binary", [=](CoreVector<char>& out) {
            unsigned long long count = 0;
            ParserValue(7).get_binary(out, count, with_type);
            return count;
        });
    }
}
