#include "core/core_version.h"

#include "parser/parser_file.h"

#include <gtest/gtest.h>

namespace {

TEST(core_version, a_version_holds_the_number_it_was_made_of) {
    EXPECT_EQ(CoreVersion(1.2).get_value(), 1.2);
    EXPECT_EQ(CoreVersion().get_value(), 0.0);
}

TEST(core_version, the_tolerance_is_a_billionth) {
    EXPECT_EQ(CoreVersion::epsilon, 1e-9);
}

TEST(core_version, a_version_is_older_when_it_is_less_by_more_than_the_tolerance) {
    EXPECT_TRUE(CoreVersion(1.0).is_older_than(1.1));
    EXPECT_FALSE(CoreVersion(1.1).is_older_than(1.1));
    EXPECT_FALSE(CoreVersion(1.2).is_older_than(1.1));
    EXPECT_FALSE(CoreVersion(1.1 - 0.5e-9).is_older_than(1.1));
    EXPECT_TRUE(CoreVersion(1.1 - 2e-9).is_older_than(1.1));
}

TEST(core_version, a_version_is_unset_unless_it_is_above_zero_by_more_than_the_tolerance) {
    EXPECT_FALSE(CoreVersion().is_set());
    EXPECT_FALSE(CoreVersion(-1.0).is_set());
    EXPECT_FALSE(CoreVersion(1e-9).is_set());
    EXPECT_TRUE(CoreVersion(2e-9).is_set());
    EXPECT_TRUE(CoreVersion(1.0).is_set());
}

TEST(core_version, the_default_serial_version_is_1_2) {
    EXPECT_EQ(default_parser_serial_version.get_value(), 1.2);
}

} // namespace
