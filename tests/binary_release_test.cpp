#include "parser/parser_file.h"
#include "tests/support/binary_form.h"
#include "tests/support/heap_meter.h"

#include <gtest/gtest.h>

namespace {

/// The peak of memory in use while a document is read and destroyed 100 times.
std::size_t growth_of(const std::string& bytes) {
    const CoreVector<char> data = buffer(bytes);
    HeapMeter::start();
    for (int i = 0; i < 100; ++i) {
        ParserFile file(CoreString{});
        EXPECT_TRUE(file.set_binary(data));
    }
    return HeapMeter::growth();
}

} // namespace

// The blocks are too large for slabs, so each comes from the heap that the program shares with the library.

TEST(binary_release, binary_data_beside_a_number_are_given_back) {
    using namespace binary_form;
    const std::string values = data_value(std::string(100000, 'x')) + int_value(1);
    EXPECT_LT(growth_of(file(entry("a", values))), 1000000u);
    EXPECT_LT(growth_of(file(entry("a", int_value(1) + values))), 1000000u);
}

TEST(binary_release, a_group_beside_a_number_is_given_back) {
    using namespace binary_form;
    const std::string text = entry("b", string_value(std::string(100000, 'x')));
    EXPECT_LT(growth_of(file(entry("a", int_value(1) + group_value(text) + int_value(2)))), 1000000u);
}

TEST(binary_release, what_an_entry_held_that_fails_is_given_back) {
    using namespace binary_form;
    const std::string values = data_value(std::string(100000, 'x')) + group_value(entry("b", int_value(1)));
    EXPECT_LT(growth_of(file(entry("a", group_value(entry("c", values + word_value()))))), 1000000u);
}
