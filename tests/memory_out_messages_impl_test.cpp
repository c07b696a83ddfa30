#include "tests/support/run_out.h"

#include "parser/parser_read_observer.h"

#include <gtest/gtest.h>

// Memory runs out while a message is composed. The message is lost, and the operation that it is about
// continues.

namespace {

/// Takes the memory away at the first fault, and gives it back at the third.
class ForgetfulObserver : public ParserReadObserver {
public:
    void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                     const CoreString& message) override {
        EXPECT_EQ(fault, FAULT_VALUE_WITHOUT_ENTRY);
        EXPECT_EQ(length, 25u);
        EXPECT_EQ(expanded, faults * 26);
        has_message[faults++] = !message.is_empty();
        if (faults == 1) {
            FailingMemory::fail_at(1, true);
        } else if (faults == 3) {
            FailingMemory::disarm();
        }
    }

    unsigned int faults = 0;
    bool has_message[8] = {};
};

/// Counts the messages, and keeps none.
class TallyLog : public CountingLog {
public:
    void log(const int& level, const CoreLogStream& stream) override {
        CountingLog::log(level, stream);
        ++messages;
    }

    int messages = 0;
};

constexpr char bytes[] = {1, 2, 3};

} // namespace

TEST(memory_out_of_a_message, a_typed_read_gives_its_value) {
    const ParserValue group(static_cast<ParserGroup*>(nullptr));
    const ParserValue data(const_cast<char*>(bytes), 3);
    TallyLog log;
    FailingMemory::fail_at(1, true);
    const bool as_bool = group.get_as_bool();
    const char as_char = group.get_as_char();
    const int as_int = data.get_as_int();
    const double as_double = data.get_as_double();
    const bool is_empty = data.get_as_string().is_empty();
    unsigned int size = 7;
    const void* const as_bytes = group.get_as_binary_data(size);
    const CoreString name = ParserValue::get_type_name(ParserValue::TYPE_BINARY_DATA);
    EXPECT_TRUE(FailingMemory::disarm());
    EXPECT_FALSE(as_bool);
    EXPECT_EQ(as_char, 0);
    EXPECT_EQ(as_int, 0);
    EXPECT_EQ(as_double, 0.0);
    EXPECT_TRUE(is_empty);
    EXPECT_EQ(as_bytes, nullptr);
    EXPECT_EQ(log.messages, 0);
    EXPECT_TRUE(name == "TYPE_BINARY_DATA");
}

TEST(memory_out_of_a_message, a_parse_goes_on_and_tells_an_observer_the_place) {
    const CoreString text(
        "\"a value without entry 1\" \"a value without entry 2\" \"a value without entry 3\" "
        "\"a value without entry 4\" a 1 ");
    TallyLog log;
    ForgetfulObserver observer;
    ParserGroup group("root");
    const bool is_clean = group.set_text(text, default_parser_serial_version, nullptr, &observer);
    FailingMemory::disarm();
    EXPECT_TRUE(is_clean);
    EXPECT_EQ(print(group), " a 1");
    EXPECT_EQ(observer.faults, 4u);
    EXPECT_TRUE(observer.has_message[0]);
    EXPECT_FALSE(observer.has_message[1]);
    EXPECT_FALSE(observer.has_message[2]);
    EXPECT_TRUE(observer.has_message[3]);
    EXPECT_EQ(log.messages, 2);
    EXPECT_EQ(log.out_of_memory, 0);
}

TEST(memory_out_of_a_message, an_entry_that_claims_too_much_is_refused_all_the_same) {
    CoreVector<char> data;
    ParserValue::size_to_bin(data, 1000);
    ParserEntry entry("an_entry_of_a_long_name", ParserEntry::TYPE_ENTRY, 0, 0);
    TallyLog log;
    core_uint64 position = 0;
    FailingMemory::fail_at(1, true);
    const bool is_read = entry.set_binary(data, position);
    EXPECT_TRUE(FailingMemory::disarm());
    EXPECT_FALSE(is_read);
    EXPECT_EQ(position, data.get_count());
    EXPECT_EQ(log.messages, 0);
}

TEST(memory_out_of_a_question, it_has_no_answer_and_that_is_told) {
    ParserGroup group("root");
    group.set_text("a \"a string longer than eleven\" b { a 1 } a 2 ", default_parser_serial_version,
                   nullptr);
    const CoreString name("a");
    const ParserEntry& entry = *group.get_entry(0);
    for (std::size_t n = 1;; ++n) {
        const CountingLog log;
        FailingMemory::fail_at(n);
        const CoreString word = entry.get_word(0);
        const CoreVector<ParserEntry*> found = group.get_entries(name, true);
        if (!FailingMemory::disarm()) {
            EXPECT_EQ(found.get_count(), 3u);
            EXPECT_TRUE(word == "a string longer than eleven");
            EXPECT_GT(n, 3u);
            return;
        }
        EXPECT_EQ(log.out_of_memory, 1);
        EXPECT_TRUE(word.is_empty() || found.is_empty());
    }
}
