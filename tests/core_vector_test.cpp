#include "core/core_containers.h"

#include "tests/support/counted.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

std::vector<int> numbers(const CoreVector<int>& vector) {
    return {vector.begin(), vector.end()};
}

std::vector<int> values(const CoreVector<Counted>& vector) {
    std::vector<int> result;
    for (const Counted& element : vector) {
        result.push_back(element.value());
    }
    return result;
}

TEST(core_vector, an_element_may_be_the_count_of_what_is_added) {
    CoreVector<unsigned int> vector;
    vector.add(3);
    vector.extend(vector[0])[2] = 2;
    EXPECT_EQ(vector.get_count(), 4u);
    const unsigned int more[] = {7, 8};
    vector.add_range(more, vector[3]);
    EXPECT_EQ(vector.get_count(), 6u);
    EXPECT_EQ(vector[5], 8u);
}

TEST(core_vector, a_new_vector_has_neither_elements_nor_storage) {
    const CoreVector<int> vector;
    EXPECT_EQ(vector.get_count(), 0u);
    EXPECT_EQ(vector.get_capacity(), 0u);
    EXPECT_EQ(vector.get_data(), nullptr);
    EXPECT_EQ(vector.begin(), vector.end());
}

TEST(core_vector, the_capacity_starts_at_one_and_doubles_when_the_vector_is_full) {
    CoreVector<int> vector;
    const unsigned int expected[] = {1, 2, 4, 4, 8, 8, 8, 8, 16};
    for (unsigned int i = 0; i < 9; ++i) {
        vector.add(static_cast<int>(i));
        EXPECT_EQ(vector.get_count(), i + 1);
        EXPECT_EQ(vector.get_capacity(), expected[i]);
    }
    EXPECT_EQ(numbers(vector), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(core_vector, elements_are_read_and_changed_by_index_and_through_the_data_pointer) {
    CoreVector<int> vector{10, 20, 30};
    vector[1] = 21;
    vector.get_data()[2] = 31;
    const CoreVector<int>& read_only = vector;
    EXPECT_EQ(read_only[0], 10);
    EXPECT_EQ(read_only[1], 21);
    EXPECT_EQ(read_only.get_data()[2], 31);
}

TEST(core_vector, a_list_of_elements_keeps_its_order) {
    const CoreVector<int> vector{3, 1, 2};
    EXPECT_EQ(numbers(vector), (std::vector<int>{3, 1, 2}));
    EXPECT_EQ(CoreVector<int>({}).get_count(), 0u);
}

TEST(core_vector, an_own_element_is_added_even_when_the_storage_is_given_up) {
    CoreVector<CoreString> vector;
    vector.add(core("a text that stands in a block"));
    for (unsigned int i = 0; i < 40; ++i) {
        vector.add(vector[i / 2]);
    }
    for (const CoreString& element : vector) {
        EXPECT_EQ(plain(element), "a text that stands in a block");
    }
    EXPECT_EQ(vector.get_count(), 41u);
}

TEST(core_vector, a_copy_is_deep) {
    CoreVector<CoreString> source{core("one"), core("a text that stands in a block")};
    const CoreVector<CoreString> copy(source);
    CoreVector<CoreString> assigned{core("gone")};
    assigned = source;
    source[0] += " changed";
    source.add(core("three"));
    for (const CoreVector<CoreString>* each : {&copy, &std::as_const(assigned)}) {
        EXPECT_EQ(each->get_count(), 2u);
        EXPECT_EQ(plain((*each)[0]), "one");
        EXPECT_EQ(plain((*each)[1]), "a text that stands in a block");
        EXPECT_NE(each->get_data(), source.get_data());
    }
}

TEST(core_vector, moving_hands_the_storage_over) {
    CoreVector<int> source{1, 2, 3};
    const int* storage = source.get_data();
    CoreVector<int> moved(std::move(source));
    EXPECT_EQ(moved.get_data(), storage);
    EXPECT_EQ(source.get_count(), 0u);
    EXPECT_EQ(source.get_capacity(), 0u);
    CoreVector<int> assigned{9};
    assigned = std::move(moved);
    EXPECT_EQ(assigned.get_data(), storage);
    EXPECT_EQ(moved.get_count(), 0u);
}

TEST(core_vector, assigning_a_vector_to_itself_keeps_it) {
    CoreVector<CoreString> vector{core("one"), core("two")};
    CoreVector<CoreString>& same = vector;
    vector = same;
    EXPECT_EQ(vector.get_count(), 2u);
    EXPECT_EQ(plain(vector[1]), "two");
}

TEST(core_vector, clear_gives_up_elements_and_storage) {
    CoreVector<int> vector{1, 2, 3};
    vector.clear();
    EXPECT_EQ(vector.get_count(), 0u);
    EXPECT_EQ(vector.get_capacity(), 0u);
    vector.add(4);
    EXPECT_EQ(numbers(vector), (std::vector<int>{4}));
    EXPECT_EQ(vector.get_capacity(), 1u);
}

TEST(core_vector, a_range_is_appended_with_the_capacity_that_single_adds_would_have_made) {
    const int range[] = {1, 2, 3, 4, 5};
    for (unsigned int before = 0; before < 6; ++before) {
        for (unsigned int added = 0; added <= 5; ++added) {
            CoreVector<int> one_by_one;
            CoreVector<int> at_once;
            for (unsigned int i = 0; i < before; ++i) {
                one_by_one.add(0);
                at_once.add(0);
            }
            for (unsigned int i = 0; i < added; ++i) {
                one_by_one.add(range[i]);
            }
            at_once.add_range(range, added);
            EXPECT_EQ(numbers(at_once), numbers(one_by_one));
            EXPECT_EQ(at_once.get_capacity(), one_by_one.get_capacity()) << before << " and " << added;
        }
    }
}

TEST(core_vector, truncating_keeps_the_first_elements_and_the_storage) {
    CoreVector<int> vector{1, 2, 3, 4, 5};
    const unsigned int capacity = vector.get_capacity();
    vector.truncate(2);
    EXPECT_EQ(numbers(vector), (std::vector<int>{1, 2}));
    EXPECT_EQ(vector.get_capacity(), capacity);
}

TEST(core_vector, reserving_makes_exactly_the_room_asked_for_and_never_less) {
    CoreVector<int> vector{1, 2};
    vector.reserve(7);
    EXPECT_EQ(vector.get_capacity(), 7u);
    EXPECT_EQ(numbers(vector), (std::vector<int>{1, 2}));
    vector.reserve(3);
    EXPECT_EQ(vector.get_capacity(), 7u);
}

TEST(core_vector, swapping_exchanges_everything) {
    CoreVector<int> left{1, 2, 3};
    CoreVector<int> right{4};
    left.swap(right);
    EXPECT_EQ(numbers(left), (std::vector<int>{4}));
    EXPECT_EQ(numbers(right), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(left.get_capacity(), 1u);
}

TEST(core_vector, every_element_is_destroyed_exactly_once) {
    ASSERT_EQ(Counted::alive, 0);
    {
        CoreVector<Counted> vector;
        for (int i = 0; i < 100; ++i) {
            vector.add(Counted(i));
        }
        EXPECT_EQ(Counted::alive, 100);
        CoreVector<Counted> copy(vector);
        EXPECT_EQ(Counted::alive, 200);
        EXPECT_EQ(values(copy), values(vector));
        copy.truncate(10);
        EXPECT_EQ(Counted::alive, 110);
        copy = std::move(vector);
        EXPECT_EQ(Counted::alive, 100);
        copy = CoreVector<Counted>{1, 2};
        EXPECT_EQ(values(copy), (std::vector<int>{1, 2}));
        EXPECT_EQ(Counted::alive, 2);
        copy.clear();
        EXPECT_EQ(Counted::alive, 0);
        copy.add(Counted(3));
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(core_vector, a_hundred_thousand_strings_keep_their_texts_while_the_vector_grows) {
    CoreVector<CoreString> vector;
    for (int i = 0; i < 100000; ++i) {
        CoreString text("number ");
        text += i;
        vector.add(text);
    }
    for (int i = 0; i < 100000; ++i) {
        ASSERT_EQ(plain(vector[static_cast<unsigned int>(i)]), "number " + std::to_string(i));
    }
}

} // namespace
