#include "core/core_containers.h"

#include "tests/support/counted.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(core_basic_array, its_elements_start_as_zeros) {
    const CoreBasicArray<unsigned int> array(4);
    ASSERT_EQ(array.get_count(), 4u);
    for (const unsigned int& element : array) {
        EXPECT_EQ(element, 0u);
    }
}

TEST(core_basic_array, it_has_no_elements_when_none_are_asked_for) {
    const CoreBasicArray<unsigned int> array;
    EXPECT_EQ(array.get_count(), 0u);
    EXPECT_EQ(array.begin(), array.end());
}

TEST(core_basic_array, a_list_of_elements_keeps_its_order_and_each_can_be_changed) {
    CoreBasicArray<unsigned int> array{5, 3, 5};
    array[1] = 4;
    array.get_data()[2] = 6;
    const CoreBasicArray<unsigned int>& read_only = array;
    EXPECT_EQ(std::vector<unsigned int>(read_only.begin(), read_only.end()),
              (std::vector<unsigned int>{5, 4, 6}));
    EXPECT_EQ(read_only[1], 4u);
    EXPECT_EQ(read_only.get_data()[0], 5u);
}

TEST(core_basic_array, a_copy_is_deep) {
    CoreBasicArray<unsigned int> array{1, 2};
    const CoreBasicArray<unsigned int> copy(array);
    array[0] = 9;
    EXPECT_EQ(copy[0], 1u);
}

TEST(core_array, growing_keeps_the_elements_and_adds_zeros) {
    CoreArray<unsigned char> array{1, 2};
    array.resize(5);
    EXPECT_EQ(std::vector<unsigned char>(array.begin(), array.end()),
              (std::vector<unsigned char>{1, 2, 0, 0, 0}));
}

TEST(core_array, shrinking_keeps_the_first_elements) {
    CoreArray<unsigned char> array{1, 2, 3};
    array.resize(1);
    EXPECT_EQ(array.get_count(), 1u);
    EXPECT_EQ(array[0], 1);
    array.resize(3);
    EXPECT_EQ(array[2], 0);
    array.resize(0);
    EXPECT_EQ(array.get_count(), 0u);
}

TEST(core_array, an_element_may_be_the_new_count) {
    CoreArray<unsigned int> array{5, 1};
    array.resize(array[0]);
    EXPECT_EQ(std::vector<unsigned int>(array.begin(), array.end()),
              (std::vector<unsigned int>{5, 1, 0, 0, 0}));
    array.resize(array[1]);
    EXPECT_EQ(array.get_count(), 1u);
}

TEST(core_array, it_is_handed_on_as_a_basic_array) {
    const CoreArray<unsigned int> array{7, 8};
    const CoreBasicArray<unsigned int>& basic = array;
    EXPECT_EQ(basic.get_count(), 2u);
    EXPECT_EQ(basic[1], 8u);
}

TEST(core_array, every_element_is_destroyed_exactly_once) {
    ASSERT_EQ(Counted::alive, 0);
    {
        CoreArray<Counted> array(3);
        EXPECT_EQ(Counted::alive, 3);
        array.resize(10);
        EXPECT_EQ(Counted::alive, 10);
        array.resize(4);
        EXPECT_EQ(Counted::alive, 4);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(core_list, it_keeps_the_order_of_adding_and_duplicates) {
    CoreList<unsigned int> list;
    EXPECT_EQ(list.get_count(), 0u);
    list.add(2);
    list.add(0);
    list.add(2);
    EXPECT_EQ(std::vector<unsigned int>(list.begin(), list.end()), (std::vector<unsigned int>{2, 0, 2}));
    list[1] = 7;
    EXPECT_EQ(list[1], 7u);
}

TEST(core_list, it_is_made_of_a_list_of_elements_and_emptied) {
    CoreList<CoreString> list{core("a"), core("b")};
    EXPECT_EQ(list.get_count(), 2u);
    EXPECT_EQ(plain(list[1]), "b");
    list.clear();
    EXPECT_EQ(list.get_count(), 0u);
}

} // namespace
