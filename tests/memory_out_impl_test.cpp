#include "tests/support/failing_memory.h"

#include "core/core_log.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "parser/parser_word.h"
#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <functional>

// Every request for memory of every operation that reads, decodes, loads, prints or saves fails once, alone and with all
// that follow it. The operation says so, nothing leaks, what was good stays, and the process goes on.

namespace {

/// Counts what is logged, without taking memory.
class CountingLog : public CoreLogHandler {
public:
    CountingLog() : previous_(s_main_log_handler) { s_main_log_handler = this; }
    ~CountingLog() override { s_main_log_handler = previous_; }
    CountingLog(const CountingLog&) = delete;
    CountingLog& operator=(const CountingLog&) = delete;

    void log(const int& level, const CoreLogStream& stream) override {
        const std::string_view text = stream.get_message().get_view();
        out_of_memory += level == level_error && text.ends_with(": out of memory\n") ? 1 : 0;
    }

    int out_of_memory = 0;

private:
    CoreLogHandler* previous_;
};

std::string scene() {
    std::string text = "#use_of_scene \"a name that is longer than eleven characters\"\n";
    for (int i = 0; i < 6; ++i) {
        const std::string number = std::to_string(i);
        text += "object_number_" + number +
                "<a_template_name> { value 1 2.5 yes \"short\" data 0x01020306000000 "
                "text \"a text that is longer than one line of blocks " +
                std::string(40, 'x') +
                "\\n\" "
                "call(1, \"two\", 3.5) list[3] 1 2 3 #key \"word\" inner { a { b { c " +
                number + " } } } }\n";
    }
    return text + "last 1 ";
}

std::string print(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

CoreString core_text(const std::string& text) {
    return CoreString(std::string_view(text));
}

/// Lets request 1, 2, 3 ... of `operate` fail until it needs no more of them. `operate` gives whether it was whole.
/// `look` is called after each time, when memory is there again, with that result.
void run_out_everywhere(bool for_good, const std::function<void()>& prepare,
                        const std::function<bool()>& operate, const std::function<void(bool)>& look,
                        const std::function<void()>& clean_up) {
    constexpr std::size_t more_than_any_needs = 20000;
    for (std::size_t n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        const long live = FailingMemory::live();
        prepare();
        bool is_whole = false;
        int told = 0;
        {
            CountingLog log;
            FailingMemory::fail_at(n, for_good);
            is_whole = operate();
            told = log.out_of_memory;
        }
        const bool has_failed = FailingMemory::disarm();
        if (!is_whole) {
            EXPECT_TRUE(has_failed) << n;
            EXPECT_GE(told, 1) << "request " << n << " failed the operation, and nobody was told";
        }
        look(is_whole);
        clean_up();
        EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
        if (!has_failed) {
            EXPECT_TRUE(is_whole);
            EXPECT_GT(n, 1u) << "nothing was asked for";
            return;
        }
        if (testing::Test::HasFailure()) {
            FAIL() << "at request " << n;
        }
    }
}

class MemoryOut : public testing::TestWithParam<bool> {
protected:
    /// For an operation that fills a group.
    void expect_group_operation(const std::function<bool(ParserGroup&)>& operate,
                                const std::string& whole) const {
        std::unique_ptr<ParserGroup> group;
        run_out_everywhere(
            GetParam(), [&] { group = std::make_unique<ParserGroup>("root"); },
            [&] { return operate(*group); },
            [&](bool is_whole) {
                const std::string got = print(*group);
                if (is_whole) {
                    EXPECT_EQ(got, whole);
                    return;
                }
                // What stays is the beginning of the document, entry by entry.
                for (unsigned int i = 0; i < group->get_entries().get_count(); ++i) {
                    ASSERT_NE(group->get_entries()[i], nullptr);
                }
                EXPECT_LE(got.size(), whole.size());
                EXPECT_TRUE(operate(*group)) << "the group can be used further";
            },
            [&] { group.reset(); });
    }
    /// For an operation that makes something of a tree.
    template <class Result>
    void expect_making(const std::function<bool(Result&)>& operate,
                       const std::function<void(const Result&, bool)>& look) const {
        std::unique_ptr<Result> result;
        run_out_everywhere(
            GetParam(), [&] { result = std::make_unique<Result>(); }, [&] { return operate(*result); },
            [&](bool is_whole) { look(*result, is_whole); }, [&] { result.reset(); });
    }

    void SetUp() override {
        text_ = core_text(scene());
        tree_.set_text(text_, default_parser_serial_version, nullptr);
        whole_ = print(tree_);
        ASSERT_GT(whole_.size(), 1000u);
    }

    CoreString text_;
    ParserGroup tree_{"root"};
    std::string whole_;
};

using memory_out = MemoryOut;

} // namespace

TEST_P(memory_out, while_a_text_is_parsed) {
    expect_group_operation(
        [&](ParserGroup& group) { return group.set_text(text_, default_parser_serial_version, nullptr); },
        whole_);
}

TEST_P(memory_out, while_a_text_is_parsed_the_entries_before_are_kept) {
    // One entry after the other: when request n fails alone, all entries that were whole are still there.
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

namespace {

class MemoryOutOfFiles : public MemoryOut {
protected:
    void SetUp() override {
        MemoryOut::SetUp();
        folder_.write("part.bkd", "part 1 // and a comment\n");
        folder_.write("main.bkd", "#Brellwick_Serial_Version 1.2\n#include \"part.bkd\"\n" + scene());
        paths_.add(CoreString("/nowhere/that/there/is/a/folder"));
        paths_.add(folder_.core_path(""));
    }
    void expect_reading(const char* name, const char* key) const {
        const CoreString path = folder_.core_path(name);
        std::unique_ptr<ParserFile> file;
        ParserFile source{CoreString()};
        source.set_search_paths(paths_);
        ASSERT_TRUE(source.read(path, key, nullptr));
        const std::string whole = print(source.get_root());
        run_out_everywhere(
            GetParam(),
            [&] {
                file = std::make_unique<ParserFile>(CoreString());
                file->set_search_paths(paths_);
            },
            [&] { return file->read(path, key, nullptr); },
            [&](bool is_whole) {
                EXPECT_EQ(file->get_serial_version().get_value(), is_whole ? 1.2 : 0.0);
                EXPECT_TRUE(!is_whole || print(file->get_root()) == whole);
                file->clear();
                EXPECT_TRUE(file->read(path, key, nullptr)) << "the file can be read later";
                EXPECT_EQ(print(file->get_root()), whole);
            },
            [&] { file.reset(); });
    }
    /// Saves over an old file.
    void expect_saving(const std::function<void(ParserFile&, const CoreString&)>& save) const {
        const CoreString path = folder_.core_path("out");
        std::unique_ptr<ParserFile> file;
        const auto make_file = [&] {
            file = std::make_unique<ParserFile>(CoreString());
            file->get_root().set(tree_);
        };
        make_file();
        save(*file, path);
        file.reset();
        const std::string whole = folder_.read("out");
        ASSERT_GT(whole.size(), 500u);
        const std::size_t files = folder_.count();
        run_out_everywhere(
            GetParam(),
            [&] {
                make_file();
                folder_.write("out", "the old document");
            },
            [&] {
                save(*file, path);
                FailingMemory::pause();
                const bool is_whole = folder_.read("out") == whole;
                return is_whole;
            },
            [&](bool is_whole) {
                EXPECT_EQ(folder_.read("out"), is_whole ? whole : "the old document");
                EXPECT_EQ(folder_.count(), files) << "nothing stands beside it";
            },
            [&] { file.reset(); });
    }

    const ScratchFolder folder_;
    CoreVector<CoreString> paths_;
};

using memory_out_of_files = MemoryOutOfFiles;

} // namespace

TEST_P(memory_out_of_files, while_a_document_with_an_include_is_read) {
    expect_reading("main.bkd", "");
}

TEST_P(memory_out_of_files, while_an_enciphered_document_is_read) {
    ParserFile file(CoreString{});
    file.get_root().set(tree_);
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder_.core_path("cipher.bkd"), "key"));
    expect_reading("cipher.bkd", "key");
}

TEST_P(memory_out_of_files, while_a_binary_document_is_read) {
    ParserFile source(CoreString{});
    source.get_root().set(tree_);
    const CoreVector<char> data = source.get_binary();
    std::unique_ptr<ParserFile> file;
    run_out_everywhere(
        GetParam(), [&] { file = std::make_unique<ParserFile>(CoreString()); },
        [&] { return file->set_binary(data); }, [](bool) {}, [&] { file.reset(); });
}

TEST_P(memory_out_of_files, while_an_archive_is_loaded) {
    ParserArchive source;
    ParserImpl::archive_group(tree_, source, false, nullptr);
    const CoreString path = folder_.core_path("scene.archive");
    ASSERT_TRUE(ParserImpl::save_archive(source, path, nullptr).is_empty());
    expect_making<ParserArchive>(
        [&](ParserArchive& archive) { return ParserImpl::load_archive(archive, path, nullptr).is_empty(); },
        [&](const ParserArchive& archive, bool is_whole) {
            if (is_whole) {
                EXPECT_EQ(archive.strings.get_count(), source.strings.get_count());
                EXPECT_EQ(archive.indices.get_count(), source.indices.get_count());
            }
        });
}

TEST_P(memory_out_of_files, while_each_form_is_saved) {
    expect_saving(
        [](ParserFile& file, const CoreString& path) { file.write(ParserFile::MODE_TEXT, path, ""); });
    expect_saving(
        [](ParserFile& file, const CoreString& path) { file.write(ParserFile::MODE_TEXT, path, "key"); });
    expect_saving(
        [](ParserFile& file, const CoreString& path) { file.write(ParserFile::MODE_BINARY, path, ""); });
    ParserArchive archive;
    ParserImpl::archive_group(tree_, archive, false, nullptr);
    expect_saving(
        [&](ParserFile&, const CoreString& path) { ParserImpl::save_archive(archive, path, nullptr); });
}

TEST_P(memory_out_of_files, while_a_file_object_is_made) {
    std::unique_ptr<ParserFile> file;
    const CoreString path = folder_.core_path("main.bkd");
    for (std::size_t n = 1;; ++n) {
        const long live = FailingMemory::live();
        FailingMemory::fail_at(n, GetParam());
        try {
            file = std::make_unique<ParserFile>(path);
        } catch (const std::bad_alloc&) { // a constructor has no other way to say so
            EXPECT_EQ(file, nullptr);
        }
        const bool has_failed = FailingMemory::disarm();
        file.reset();
        EXPECT_EQ(FailingMemory::live(), live) << n;
        if (!has_failed) {
            EXPECT_GT(n, 3u);
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out, testing::Bool());
INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out_of_files, testing::Bool());

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
        } catch (const std::bad_alloc&) { // a constructor has no other way to say so
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
                new (&other) ParserValue(1); // the string stays the source's
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
