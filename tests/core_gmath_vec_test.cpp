#include "core/gmath_vec.h"

#include <gtest/gtest.h>

namespace {

TEST(gmath_vec, a_new_vector_is_all_zeros) {
    EXPECT_EQ(GMathVec2<double>(), GMathVec2<double>(0, 0));
    EXPECT_EQ(GMathVec2<int>(), GMathVec2<int>(0, 0));
    EXPECT_EQ(GMathVec3<double>(), GMathVec3<double>(0, 0, 0));
    EXPECT_EQ(GMathVec4<double>(), GMathVec4<double>(0, 0, 0, 0));
}

TEST(gmath_vec, components_are_named_in_order_and_numbered_from_zero) {
    GMathVec4<int> four(1, 2, 3, 4);
    EXPECT_EQ(four.x, 1);
    EXPECT_EQ(four.y, 2);
    EXPECT_EQ(four.z, 3);
    EXPECT_EQ(four.w, 4);
    for (unsigned int i = 0; i < 4; ++i) {
        EXPECT_EQ(four[i], static_cast<int>(i) + 1);
    }
    const GMathVec3<int> three(5, 6, 7);
    EXPECT_EQ(three[0] * 100 + three[1] * 10 + three[2], 567);
    const GMathVec2<int> two(8, 9);
    EXPECT_EQ(two[0] * 10 + two[1], 89);
}

TEST(gmath_vec, a_component_is_changed_through_its_number) {
    GMathVec2<double> two;
    GMathVec3<double> three;
    GMathVec4<double> four;
    for (unsigned int i = 0; i < 4; ++i) {
        four[i] = i + 1.0;
        if (i < 3) {
            three[i] = i + 1.0;
        }
        if (i < 2) {
            two[i] = i + 1.0;
        }
    }
    EXPECT_EQ(two, GMathVec2<double>(1, 2));
    EXPECT_EQ(three, GMathVec3<double>(1, 2, 3));
    EXPECT_EQ(four, GMathVec4<double>(1, 2, 3, 4));
}

TEST(gmath_vec, vectors_differ_when_any_component_does) {
    EXPECT_NE(GMathVec2<int>(1, 2), GMathVec2<int>(1, 3));
    EXPECT_NE(GMathVec2<int>(1, 2), GMathVec2<int>(0, 2));
    EXPECT_NE(GMathVec3<int>(1, 2, 3), GMathVec3<int>(1, 2, 4));
    EXPECT_NE(GMathVec4<int>(1, 2, 3, 4), GMathVec4<int>(1, 2, 3, 5));
}

} // namespace
