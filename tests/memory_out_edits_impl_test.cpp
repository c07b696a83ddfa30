#include "tests/support/run_out.h"

#include "core/reports/core_guard_impl.h"

#include <gtest/gtest.h>

// Memory runs out while objects are edited and copied. This throws, and nothing is lost.

TEST(memory_out_of_a_set, a_set_that_could_not_grow_still_knows_what_it_holds) {
    for (std::size_t n = 1; n < 60; ++n) {
        CoreSet<int> set;
        int added = 0;
        FailingMemory::fail_at(n);
        try {
            for (; added < 200; ++added) {
                set.add(added);
            }
        } catch (const std::bad_alloc&) {
            FailingMemory::disarm();
        }
        FailingMemory::disarm();
        for (int i = 0; i < 200; ++i) {
            set.add(i);
        }
        EXPECT_EQ(set.get_count(), 200u) << n;
        EXPECT_TRUE(set.exists(0) && set.exists(199));
    }
}

TEST(memory_out_of_a_group, a_group_that_could_not_grow_lists_only_what_it_owns) {
    for (std::size_t n = 1; n < 40; ++n) {
        const long live = FailingMemory::live();
        {
            ParserGroup group("root");
            FailingMemory::fail_at(n);
            try {
                for (int i = 0; i < 12; ++i) {
                    group.add_entry("a_name_of_some_length", 0, 0);
                    group.add_entry("#a_name_of_some_length", 0, 0);
                }
            } catch (const std::bad_alloc&) {
                FailingMemory::disarm();
            }
            FailingMemory::disarm();
            const unsigned int count = group.get_entries().get_count();
            EXPECT_EQ(group.get_entry_count(), (count + 1) / 2);
            for (unsigned int i = 0; i < group.get_entry_count(); ++i) {
                EXPECT_EQ(group.get_entry(i)->get_type(), ParserEntry::TYPE_ENTRY);
            }
        }
        EXPECT_EQ(FailingMemory::live(), live) << n;
    }
}

TEST(memory_out_of_a_copy, a_copy_that_could_not_be_made_leaves_nothing) {
    ParserGroup tree("root");
    tree.set_text(core_text(scene()), default_parser_serial_version, nullptr);
    for (std::size_t n = 1;; ++n) {
        const long live = FailingMemory::live();
        FailingMemory::fail_at(n);
        try {
            const ParserGroup copy(tree);
        } catch (const std::bad_alloc&) { // a constructor can report it only by an exception
            FailingMemory::disarm();
            EXPECT_EQ(FailingMemory::live(), live) << n;
            continue;
        }
        EXPECT_FALSE(FailingMemory::disarm());
        break;
    }
}

TEST(memory_out_of_an_assignment, what_could_not_be_shared_is_as_it_was) {
    const CoreString text("a 1 \"a text of its own, behind the values\" b 2 #k 3 c { d 4 } ");
    for (std::size_t n = 1;; ++n) {
        const long live = FailingMemory::live();
        bool has_failed = false;
        {
            ParserGroup source("root");
            source.set_text(text, default_parser_serial_version, nullptr);
            const std::string before = print(source);
            ParserGroup target("target");
            ParserEntry entry("entry", ParserEntry::TYPE_ENTRY, 0, 0);
            ParserValue value(CoreString("a string that is longer than eleven characters"));
            FailingMemory::fail_at(n);
            try {
                target = source;
                entry = *source.get_entry("a");
                ParserValue other(1);
                other = value;
                new (&other) ParserValue(1); // the source keeps the string
            } catch (const std::bad_alloc&) {
                FailingMemory::disarm();
                has_failed = true;
            }
            FailingMemory::disarm();
            EXPECT_EQ(print(source), before) << n;
            EXPECT_EQ(value.get_as_string().get_length(), 46u);
        }
        EXPECT_EQ(FailingMemory::live(), live) << n;
        if (!has_failed) {
            EXPECT_GT(n, 6u);
            return;
        }
    }
}

namespace {

/// A host's log handler that itself runs out of memory.
class StarvingLog : public CountingLog {
public:
    void log(const int&, const CoreLogStream&) override {
        ++calls;
        throw std::bad_alloc();
    }

    int calls = 0;
};

} // namespace

TEST(memory_out_of_a_handler, what_the_handler_cannot_take_is_left_out_and_the_parse_goes_on) {
    StarvingLog log;
    ParserGroup group("root");
    EXPECT_TRUE(group.set_text("1 2 a 1 ", default_parser_serial_version, nullptr));
    EXPECT_EQ(log.calls, 2);
    EXPECT_EQ(print(group), " a 1");
    CoreString text("a text that is longer than what a string keeps inside");
    FailingMemory::fail_at(1, true);
    const bool is_read = group.set_text(text, default_parser_serial_version, nullptr);
    FailingMemory::disarm();
    EXPECT_FALSE(is_read);
    EXPECT_EQ(log.calls, 3) << "it is told of the end of memory as well";
}

TEST(memory_out_of_a_handler, the_end_of_memory_is_not_told_below_verbosity_1) {
    CountingLog log;
    log.set_verbosity(0);
    ParserGroup group("root");
    FailingMemory::fail_at(1, true);
    const bool is_read = group.set_text("a 1 ", default_parser_serial_version, nullptr);
    FailingMemory::disarm();
    EXPECT_FALSE(is_read);
    EXPECT_EQ(log.out_of_memory, 0);
}

TEST(memory_out_of_a_count, a_count_beyond_32_bits_is_memory_that_there_is_not) {
    const CountingLog log;
    EXPECT_FALSE(bk::completed("test", [] { throw bk::CountRefused("too many"); }));
    EXPECT_EQ(log.out_of_memory, 1);
}

/// An edit that has to move values with strings that a host holds.
using ReferenceEdit = void (*)(ParserEntry& entry, ParserEntry& other);

class memory_out_of_a_list : public testing::TestWithParam<ReferenceEdit> {};

TEST_P(memory_out_of_a_list, strings_that_were_handed_out_stay_and_nothing_is_lost) {
    bool has_run_out = true;
    for (std::size_t n = 1; has_run_out; ++n) {
        const long live = FailingMemory::live();
        {
            ParserGroup group("root");
            group.set_text("e \"short\" 1 \"a string that is longer\" \"another that is long\" 2",
                           default_parser_serial_version, nullptr);
            ParserEntry& entry = *group.get_entry(0u);
            ParserEntry other("other", ParserEntry::TYPE_ENTRY, 0, 0);
            const CoreString& inner = entry.get_string(0);
            const CoreString& outer = entry.get_string(2);
            FailingMemory::fail_at(n);
            try {
                GetParam()(entry, other);
            } catch (const std::bad_alloc&) {
                FailingMemory::pause();
            }
            has_run_out = FailingMemory::disarm();
            EXPECT_TRUE(inner == "short" && outer == "a string that is longer");
            if (has_run_out) {
                EXPECT_EQ(entry.get_value_count(), 5u);
                EXPECT_EQ(&entry.get_string(2), &outer);
                EXPECT_EQ(entry.get_int(4), 2);
            }
            entry.add_int(3);
            entry.move_value(2, 1);
            EXPECT_TRUE(inner == "short" && outer == "a string that is longer");
        }
        EXPECT_EQ(FailingMemory::live(), live) << n;
    }
}

INSTANTIATE_TEST_SUITE_P(edits, memory_out_of_a_list,
                         testing::Values([](ParserEntry& entry, ParserEntry&) { entry.add_int(7); },
                                         [](ParserEntry& entry, ParserEntry&) { entry.move_value(0, 4); },
                                         [](ParserEntry& entry, ParserEntry&) { entry.remove_value(1u); },
                                         [](ParserEntry& entry, ParserEntry& other) { other = entry; }));

/// Expects null when there is no memory for the object itself, an exception when there is none for its block,
/// and no leak.
template <class Object, class... Arguments>
void expect_null_without_memory(const Arguments&... arguments) {
    const long live = FailingMemory::live();
    FailingMemory::fail_at(1);
    const Object* const made = new (std::nothrow) Object(arguments...);
    EXPECT_TRUE(FailingMemory::disarm());
    EXPECT_EQ(made, nullptr);
    FailingMemory::fail_at(2);
    EXPECT_THROW(static_cast<void>(new (std::nothrow) Object(arguments...)), std::bad_alloc);
    FailingMemory::disarm();
    delete new (std::nothrow) Object(arguments...);
    EXPECT_EQ(FailingMemory::live(), live);
}

TEST(memory_out_of_new, the_nothrow_form_gives_null) {
    const CoreString text("a text that stands in a block");
    expect_null_without_memory<ParserEntry>(text, ParserEntry::TYPE_ENTRY, core_ulong{1}, core_ulong{1});
    expect_null_without_memory<ParserGroup>(text);
    expect_null_without_memory<ParserValue>(text);
}

TEST(memory_out_of_new, an_object_larger_than_the_blocks_of_slabs_needs_the_ordinary_form) {
    struct Large : ParserEntry {
        using ParserEntry::ParserEntry;
        char bytes[CoreMemory::largest_slab_block];
    };
    EXPECT_EQ(new (std::nothrow) Large("large", ParserEntry::TYPE_ENTRY, 1, 1), nullptr);
    delete new Large("large", ParserEntry::TYPE_ENTRY, 1, 1);
}
