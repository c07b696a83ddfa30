#include "parser/model/parser_value_impl.h"
#include "parser/parser_entry.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// How an entry stores a value in 16 bytes.

namespace {

using bk::StoredValue;

class stored_value : public testing::Test {
protected:
    alignas(StoredValue) std::array<unsigned char, 4 * sizeof(StoredValue)> places;

    void* place(std::size_t i) { return places.data() + i * sizeof(StoredValue); }
    static const char* behind(const void* place, std::uint64_t offset) {
        return reinterpret_cast<const char*>(reinterpret_cast<std::uintptr_t>(place) + offset);
    }
};

TEST_F(stored_value, it_has_16_bytes_and_fits_into_a_value_of_a_host) {
    EXPECT_EQ(sizeof(StoredValue), 16u);
    EXPECT_EQ(sizeof(ParserValue), 32u);
}

TEST_F(stored_value, a_spelling_may_stand_as_far_away_as_the_longest_list_takes) {
    if constexpr (sizeof(void*) == 8) {
        for (const std::uint64_t offset :
             {std::uint64_t{16}, std::uint64_t{0xFFFFFFFF}, std::uint64_t{0x100000000},
              (std::uint64_t{1} << 30) * sizeof(StoredValue) + 0xFFFFFFFF}) {
            StoredValue& value = *StoredValue::show_spelled(place(0), ParserValue::TYPE_INT,
                                                            {behind(place(0), offset), 0xFFFFE});
            EXPECT_EQ(value.type(), ParserValue::TYPE_INT);
            EXPECT_TRUE(value.is_spelled());
            EXPECT_FALSE(value.has_scalar_inside());
            EXPECT_EQ(value.spelling().data(), behind(place(0), offset));
            EXPECT_EQ(value.spelling().size(), 0xFFFFEu);
        }
    }
}

TEST_F(stored_value, the_spelling_stays_where_it_is_when_the_value_moves) {
    for (const std::uint64_t offset :
         {std::uint64_t{64}, std::uint64_t{0xFFFFFFF8}, std::uint64_t{0x100000008}}) {
        const char* const text = behind(place(0), offset);
        StoredValue& value = *StoredValue::show_spelled(place(1), ParserValue::TYPE_DOUBLE, {text, 3});
        StoredValue::relocate(value, place(3));
        StoredValue::relocate(*reinterpret_cast<StoredValue*>(place(3)), place(0));
        EXPECT_EQ(reinterpret_cast<StoredValue*>(place(0))->spelling().data(), text);
        StoredValue::relocate(*reinterpret_cast<StoredValue*>(place(0)), place(2), 100);
        EXPECT_EQ(reinterpret_cast<StoredValue*>(place(2))->spelling().data(), text + 100);
        EXPECT_EQ(reinterpret_cast<StoredValue*>(place(2))->spelling().size(), 3u);
    }
}

TEST_F(stored_value, every_type_is_told_from_its_first_four_bytes) {
    for (unsigned int type = 0; type <= 0xFFFFFF; type = type < 300 ? type + 1 : type * 2 + 1) {
        StoredValue value(static_cast<ParserValue::Type>(type));
        EXPECT_EQ(value.type(), type);
        EXPECT_EQ(value.has_string_inside(), type == ParserValue::TYPE_STRING);
        EXPECT_FALSE(value.is_spelled()) << type;
        EXPECT_TRUE(value.keeps_nothing_outside()) << type;
        value.clear();
        EXPECT_EQ(value.type(), type);
        value.release();
    }
}

TEST_F(stored_value, a_converted_scalar_has_the_bits_of_one_that_was_set) {
    const ParserValue read_bool(ParserValue::TYPE_BOOL, CoreString("yes"));
    EXPECT_EQ(StoredValue::of(read_bool).scalar_bits(), StoredValue::of(ParserValue(true)).scalar_bits());
    const ParserValue read_char(ParserValue::TYPE_CHAR, CoreString("-3"));
    EXPECT_EQ(StoredValue::of(read_char).scalar_bits(), StoredValue::of(ParserValue('\xFD')).scalar_bits());
    for (const int number : {-1, 0, 7, 123456789}) {
        const ParserValue read(ParserValue::TYPE_INT, core(std::to_string(number)));
        EXPECT_EQ(StoredValue::of(read).scalar_bits(), StoredValue::of(ParserValue(number)).scalar_bits());
    }
}

TEST_F(stored_value, only_strings_and_spellings_that_leave_no_room_for_a_mark_are_kept_apart) {
    EXPECT_FALSE(StoredValue::is_kept_apart(ParserValue::TYPE_STRING, 0xEFFFFFFE));
    EXPECT_TRUE(StoredValue::is_kept_apart(ParserValue::TYPE_STRING, 0xEFFFFFFF));
    EXPECT_FALSE(StoredValue::is_kept_apart(ParserValue::TYPE_WORD, 0xFFFFE));
    EXPECT_TRUE(StoredValue::is_kept_apart(ParserValue::TYPE_WORD, 0xFFFFF));
    EXPECT_EQ(StoredValue::string_need(0xEFFFFFFF), 0u);
    EXPECT_EQ(StoredValue::spelling_need(0xFFFFF), 0u);
}

TEST_F(stored_value, strings_that_were_handed_out_stay_when_lists_of_any_kind_grow) {
    for (const std::size_t first_count : {std::size_t{1}, std::size_t{3}, std::size_t{200}}) {
        ParserEntry entry(CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0);
        std::vector<const CoreString*> shown;
        for (unsigned int i = 0; i < first_count; ++i) {
            entry.add_string(core("a string of many characters " + std::to_string(i)));
            shown.push_back(&entry.get_string(i));
        }
        for (unsigned int i = 0; i < first_count; i += 2) { // removes strings in older blocks one by one
            entry.set_int(7, i);
        }
        for (unsigned int i = 1; i < first_count; i += 2) {
            EXPECT_EQ(&entry.get_string(i), shown[i]);
            EXPECT_EQ(plain(*shown[i]), "a string of many characters " + std::to_string(i));
        }
    }
}

TEST_F(stored_value, a_shallow_assignment_shares_a_string_and_a_spelling) {
    for (const char* const text : {"short", "a string of many characters"}) {
        ParserValue value{core(text)};
        alignas(ParserValue) unsigned char room[sizeof(ParserValue)];
        ParserValue& other = *new (room) ParserValue(1);
        other = value;
        EXPECT_EQ(&other.get_as_string(), &value.get_as_string());
        EXPECT_EQ(plain(other.get_as_string()), text);
    }
    ParserValue number(ParserValue::TYPE_DOUBLE, CoreString("1.500000000000"));
    alignas(ParserValue) unsigned char room[sizeof(ParserValue)];
    ParserValue& other = *new (room) ParserValue(1);
    other = number;
    EXPECT_EQ(other.get_as_double(), 1.5);
    EXPECT_EQ(number.get_as_double(), 1.5);
    EXPECT_EQ(written(other), "1.500000000000");
}

TEST_F(stored_value, a_type_that_is_not_listed_survives_edits_of_its_entry) {
    ParserEntry entry(CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0);
    OwnedWord word("word");
    entry.add_word(*word, static_cast<ParserValue::Type>(99));
    for (int i = 0; i < 9; ++i) {
        entry.add_int(i);
    }
    entry.move_value(0, 4);
    EXPECT_EQ(entry.get_value_type(4), static_cast<ParserValue::Type>(99));
    EXPECT_EQ(ParserEntry(entry).get_value_type(4), static_cast<ParserValue::Type>(99));
    EXPECT_EQ(plain(entry.get_word(4)), "");
}

} // namespace
