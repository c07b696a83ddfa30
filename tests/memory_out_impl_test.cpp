#include "tests/support/run_out.h"

#include "parser/parser_word.h"

#include <gtest/gtest.h>

// In every operation that reads, decodes, loads, prints or saves, each request for memory fails once: first
// alone, then with all later ones. The operation reports it, nothing leaks, the previous content stays, and
// the process continues.

using memory_out = MemoryOut;

TEST_P(memory_out, while_a_text_is_parsed) {
    expect_group_operation(
        [&](ParserGroup& group) { return group.set_text(text_, default_parser_serial_version, nullptr); },
        whole_);
}

TEST_P(memory_out, while_a_text_is_parsed_the_entries_before_are_kept) {
    // Entries on one level. When only request n fails, all entries that were complete are still there.
    std::string flat;
    for (int i = 0; i < 40; ++i) {
        flat += "entry_number_" + std::to_string(i) + " " + std::to_string(i) + " ";
    }
    const CoreString text = core_text(flat);
    std::unique_ptr<ParserGroup> group;
    unsigned int most = 0;
    run_out_everywhere(
        false, [&] { group = std::make_unique<ParserGroup>("root"); },
        [&] { return group->set_text(text, default_parser_serial_version, nullptr); },
        [&](bool) {
            EXPECT_TRUE((" " + flat).starts_with(print(*group))) << print(*group);
            EXPECT_GE(group->get_entries().get_count() + 1, most) << "later requests leave no less";
            most = std::max(most, group->get_entries().get_count());
        },
        [&] { group.reset(); });
    EXPECT_EQ(most, 40u);
}

TEST_P(memory_out, while_a_faulty_text_is_parsed) {
    const CoreString text("1 a 1 { b } = c ( d 1 (2) e 3 \"unfinished\n # <x> y<z 1 last 1 ");
    ParserGroup whole("root");
    {
        CountingLog log;
        whole.set_text(text, default_parser_serial_version, nullptr);
    }
    const std::string expected = print(whole);
    expect_group_operation(
        [&](ParserGroup& group) { return group.set_text(text, default_parser_serial_version, nullptr); },
        expected);
}

TEST_P(memory_out, while_binary_data_is_decoded) {
    const CoreVector<char> data = tree_.get_binary(false);
    ParserGroup whole("root");
    core_uint64 start = 0;
    ASSERT_TRUE(whole.set_binary(data, start));
    expect_group_operation(
        [&](ParserGroup& group) {
            core_uint64 position = 0;
            return group.set_binary(data, position);
        },
        print(whole));
}

TEST_P(memory_out, while_an_entry_is_decoded) {
    const ParserEntry& source = *tree_.get_entry("object_number_3");
    const CoreVector<char> data = source.get_binary();
    std::unique_ptr<ParserEntry> entry;
    run_out_everywhere(
        GetParam(), [&] { entry = std::make_unique<ParserEntry>("entry", ParserEntry::TYPE_ENTRY, 0, 0); },
        [&] {
            core_uint64 position = source.get_name().get_length() + 1;
            return entry->set_binary(data, position);
        },
        [&](bool is_whole) { EXPECT_EQ(entry->get_value_count(), is_whole ? 1u : 0u); },
        [&] { entry.reset(); });
}

TEST_P(memory_out, while_a_value_is_decoded) {
    CoreVector<char> data;
    unsigned long long size = 0;
    ParserValue(new ParserGroup(tree_)).get_binary(data, size, true);
    const unsigned long long bytes_at = size;
    char bytes[100] = {1, 2, 3};
    ParserValue(bytes, 100).get_binary(data, size, true);
    const unsigned long long string_at = size;
    ParserValue(text_).get_binary(data, size, true);
    for (const unsigned long long at : {0ull, bytes_at, string_at}) {
        std::unique_ptr<ParserValue> value;
        run_out_everywhere(
            GetParam(), [] {},
            [&] {
                unsigned long long position = at;
                value.reset(ParserValue::bin_to_value(data, position));
                return value != nullptr;
            },
            [&](bool is_whole) { EXPECT_EQ(is_whole, value != nullptr); }, [&] { value.reset(); });
    }
}

TEST_P(memory_out, while_pieces_are_decoded) {
    CoreVector<char> string_data;
    ParserValue::string_to_bin(string_data, text_);
    expect_making<CoreString>(
        [&](CoreString& string) {
            unsigned long long position = 0;
            string = ParserValue::bin_to_string(string_data, position);
            EXPECT_EQ(position, string_data.get_count());
            return !string.is_empty();
        },
        [&](const CoreString& string, bool is_whole) {
            EXPECT_TRUE(string == (is_whole ? text_ : CoreString()));
        });

    CoreVector<char> bytes_data;
    char bytes[2000] = {};
    ParserValue::binary_data_to_bin(bytes_data, bytes, sizeof bytes);
    void* got = nullptr;
    run_out_everywhere(
        GetParam(), [] {},
        [&] {
            unsigned long long position = 0;
            unsigned int size = 77;
            got = ParserValue::bin_to_binary_data(bytes_data, position, size);
            EXPECT_EQ(size, got == nullptr ? 0 : sizeof bytes);
            return got != nullptr;
        },
        [](bool) {}, [&] { CoreMemory::release(got, sizeof bytes); });

    const CoreString literal("0x0102030405060708090A0B0C0D0E0F00000000");
    const ParserWord word(literal, true, CoreVersion(1.2));
    run_out_everywhere(
        GetParam(), [] {},
        [&] {
            unsigned int size = 77;
            ParserValue::word_to_binary_data(got, size, word);
            EXPECT_EQ(size, got == nullptr ? 0u : 15u);
            return got != nullptr;
        },
        [](bool) {}, [&] { CoreMemory::release(got, 15); });
}

TEST_P(memory_out, while_an_enciphered_text_is_read) {
    CoreArray<unsigned char> data;
    tree_.get_encrypted_text(data, "key", false, false, 1);
    CoreString digits;
    for (const unsigned char byte : data) {
        digits += "0123456789ABCDEF"[byte / 16];
        digits += "0123456789ABCDEF"[byte % 16];
    }
    expect_group_operation([&](ParserGroup& group) { return group.set_encrypted_text(data, "key"); }, whole_);
    expect_group_operation([&](ParserGroup& group) { return group.set_encrypted_text(digits, "key"); },
                           whole_);
}

TEST_P(memory_out, while_an_archive_is_parsed) {
    ParserArchive archive;
    ParserImpl::archive_group(tree_, archive, false, nullptr);
    expect_group_operation(
        [&](ParserGroup& group) {
            return ParserImpl::group_set_archive(group, archive, nullptr, ParserLimits());
        },
        whole_);
}

TEST_P(memory_out, while_a_tree_is_archived) {
    ParserArchive expected;
    ParserImpl::archive_group(tree_, expected, false, nullptr);
    expect_making<ParserArchive>(
        [&](ParserArchive& archive) {
            ParserImpl::archive_group(tree_, archive, false, nullptr);
            return archive.indices.get_count() != 0;
        },
        [&](const ParserArchive& archive, bool is_whole) {
            EXPECT_EQ(archive.strings.get_count(), is_whole ? expected.strings.get_count() : 0);
            EXPECT_EQ(archive.indices.get_count(), is_whole ? expected.indices.get_count() : 0);
        });
}

TEST_P(memory_out, an_archive_that_ran_out_of_memory_finds_its_words_again) {
    ParserArchive expected;
    ParserImpl::archive_group(tree_, expected, false, nullptr);
    expect_making<ParserArchive>(
        [&](ParserArchive& archive) {
            ParserImpl::archive_group(tree_, archive, false, nullptr);
            return archive.indices.get_count() != 0;
        },
        [&](const ParserArchive& made, bool is_whole) {
            if (!is_whole) {
                ParserArchive archive(made);
                ParserImpl::archive_group(tree_, archive, false, nullptr);
                EXPECT_EQ(archive.strings.get_count(), expected.strings.get_count());
            }
        });
}

TEST_P(memory_out, while_a_tree_is_printed) {
    const std::string before = "this stays in front of what is printed";
    expect_making<CoreString>(
        [&](CoreString& out) {
            out.set_borrowed(before.data(), static_cast<unsigned int>(before.size()));
            tree_.get_text(out, true, true, 1);
            return out.get_length() != before.size();
        },
        [&](const CoreString& out, bool is_whole) {
            EXPECT_TRUE(out.get_view().starts_with(before));
            EXPECT_EQ(is_whole, out.get_length() > whole_.size());
        });
    const ParserEntry& entry = *tree_.get_entry("object_number_3");
    expect_making<CoreString>(
        [&](CoreString& out) {
            entry.get_text(out, true, 1);
            return !out.is_empty();
        },
        [](const CoreString&, bool) {});
    expect_making<CoreString>(
        [&](CoreString& out) {
            entry.get_value_text(out, true, 1);
            return !out.is_empty();
        },
        [](const CoreString&, bool) {});
}

TEST_P(memory_out, while_a_tree_is_encoded) {
    const unsigned int size = tree_.get_binary(true).get_count();
    expect_making<CoreVector<char>>(
        [&](CoreVector<char>& data) {
            data = tree_.get_binary(true);
            return data.get_count() != 0;
        },
        [&](const CoreVector<char>& data, bool is_whole) {
            EXPECT_EQ(data.get_count(), is_whole ? size : 0);
        });
    const ParserValue value(new ParserGroup(tree_));
    expect_making<CoreVector<char>>(
        [&](CoreVector<char>& data) {
            unsigned long long count = 5;
            value.get_binary(data, count, true);
            EXPECT_EQ(count, data.get_count() + 5u);
            return data.get_count() != 0;
        },
        [](const CoreVector<char>&, bool) {});
}

TEST_P(memory_out, while_a_tree_is_enciphered) {
    expect_making<CoreArray<unsigned char>>(
        [&](CoreArray<unsigned char>& data) {
            tree_.get_encrypted_text(data, "key", false, false, 1);
            return data.get_count() != 0;
        },
        [](const CoreArray<unsigned char>&, bool) {});
    expect_making<CoreString>(
        [&](CoreString& digits) {
            tree_.get_encrypted_text(digits, "key", false, false, 1);
            return !digits.is_empty();
        },
        [](const CoreString&, bool) {});
}

INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out, testing::Bool());
