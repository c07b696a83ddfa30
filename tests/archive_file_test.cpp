#include "tests/support/archive_form.h"
#include "tests/support/full_disk.h"
#include "tests/support/random_tree.h"
#include "tests/support/recording_log.h"
#include "tests/support/recording_progress.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace archive_form;
using Calls = std::vector<std::string>;

class ArchiveFile : public testing::Test {
protected:
    ~ArchiveFile() override { EXPECT_TRUE(log.is_empty()) << "nothing is logged"; }

    std::string save(const ParserArchive& archive) const {
        EXPECT_EQ(plain(ParserImpl::save_archive(archive, folder.core_path("out"), nullptr)), "");
        return folder.read("out");
    }
    ParserArchive load() const {
        ParserArchive archive;
        EXPECT_EQ(plain(ParserImpl::load_archive(archive, folder.core_path("out"), nullptr)), "");
        return archive;
    }
    /// Saves `count` strings with `count` + 2 indices, and expects each index to take `width` bytes.
    void expect_width(unsigned int count, unsigned int width) const {
        Strings strings;
        Indices indices = {count - 1, 0};
        for (unsigned int i = 0; i < count; ++i) {
            strings.push_back(std::to_string(i));
            indices.push_back(i);
        }
        std::string expected = head(count);
        for (const std::string& text : strings) {
            expected += stored(text);
        }
        expected += little(count + 2, 4);
        for (const unsigned int index : indices) {
            expected += little(index, width);
        }
        EXPECT_TRUE(save(archive(strings, indices)) == expected);
        const ParserArchive again = load();
        EXPECT_TRUE(strings_of(again) == strings);
        EXPECT_TRUE(indices_of(again) == indices);
    }

    const ScratchFolder folder;
    RecordingLog log;
};

} // namespace

using archive_file = ArchiveFile;

TEST_F(archive_file, an_empty_archive_is_twenty_bytes) {
    EXPECT_EQ(hex(save(ParserArchive())), "4B 57 41 46 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    const ParserArchive again = load();
    EXPECT_EQ(again.strings.get_count(), 0u);
    EXPECT_EQ(again.indices.get_count(), 0u);
}

TEST_F(archive_file, strings_are_stored_fifteen_lower) {
    ParserArchive document;
    for (const char* word : {"a", "12", "a"}) {
        document += word;
    }
    EXPECT_EQ(hex(save(document)), "4B 57 41 46 00 00 00 00 00 00 00 00 02 00 00 00 52 00 22 23 00 "
                                   "03 00 00 00 00 01 00");
}

TEST_F(archive_file, what_was_saved_is_loaded) {
    const Strings strings = {"a", "", "\"x y\"", std::string(1000, 'x')};
    const Indices indices = {3, 0, 1, 2, 0};
    EXPECT_TRUE(save(archive(strings, indices)) == file(strings, indices));
    EXPECT_EQ(strings_of(load()), strings);
    EXPECT_EQ(indices_of(load()), indices);
}

TEST_F(archive_file, every_byte_but_0x0F_comes_back) {
    Strings strings;
    for (int code = 0; code < 256; ++code) {
        if (code != 0x0F) {
            strings.push_back("<" + std::string(1, static_cast<char>(code)) + ">");
        }
    }
    EXPECT_EQ(hex(save(archive(strings, {0, 254}))), hex(file(strings, {0, 254})));
    EXPECT_EQ(strings_of(load()), strings);
    EXPECT_EQ(indices_of(load()), (Indices{0, 254}));
}

TEST_F(archive_file, control_characters_are_stored_as_the_highest_bytes) {
    const std::string bytes = save(archive({std::string("\x01\x0E\x10\x7F\x80\xFF\x00", 7)}, {}));
    EXPECT_EQ(hex(bytes.substr(16)), "F2 FF 01 70 71 F0 F1 00 00 00 00 00");
}

TEST_F(archive_file, a_word_with_0x0F_is_split_there) {
    save(archive({"x\x0Fy", ""}, {}));
    EXPECT_EQ(strings_of(load()), (Strings{"x", "y"}))
        << "the empty string's byte is taken for another field";
}

TEST_F(archive_file, up_to_255_strings_have_indices_of_one_byte) {
    expect_width(1, 1);
    expect_width(254, 1);
    expect_width(255, 1);
}

TEST_F(archive_file, from_256_strings_on_indices_have_two_bytes) {
    expect_width(256, 2);
    expect_width(257, 2);
    expect_width(65535, 2);
}

TEST_F(archive_file, from_65536_strings_on_indices_have_four_bytes) {
    expect_width(65536, 4);
    expect_width(65537, 4);
}

TEST_F(archive_file, many_indices_of_few_strings_have_one_byte) {
    const Indices indices(100000, 1);
    EXPECT_TRUE(save(archive({"a", "b"}, indices)) == file({"a", "b"}, indices));
    EXPECT_TRUE(indices_of(load()) == indices);
}

TEST_F(archive_file, an_index_past_the_strings_is_narrowed_to_the_width) {
    EXPECT_EQ(hex(save(archive({"a"}, {300, 0xFFFFFFFF})).substr(18)), "02 00 00 00 2C FF");
}

TEST_F(archive_file, an_old_file_is_replaced_whole) {
    folder.write("out", std::string(1000, 'x'));
    EXPECT_EQ(save(ParserArchive()).size(), 20u);
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(archive_file, saving_sets_the_progress_three_times) {
    RecordingProgress progress;
    EXPECT_EQ(plain(ParserImpl::save_archive(archive({"a"}, {0}), folder.core_path("out"), &progress)), "");
    EXPECT_EQ(progress.calls, (Calls{"set_value(0)", "set_value(0.5)", "set_value(1)"}));
}

TEST_F(archive_file, loading_makes_no_progress_calls) {
    save(archive({"a"}, {0}));
    RecordingProgress progress;
    ParserArchive again;
    EXPECT_EQ(plain(ParserImpl::load_archive(again, folder.core_path("out"), &progress)), "");
    EXPECT_EQ(progress.calls, Calls{});
}

TEST_F(archive_file, saving_without_a_name_is_refused) {
    RecordingProgress progress;
    EXPECT_EQ(plain(ParserImpl::save_archive(ParserArchive(), "", &progress)), "empty filename");
    EXPECT_EQ(progress.calls, Calls{});
}

TEST_F(archive_file, saving_where_no_file_can_be_is_refused) {
    RecordingProgress progress;
    folder.make_folder("folder");
    for (const char* name : {"missing/out", "folder"}) {
        EXPECT_EQ(plain(ParserImpl::save_archive(ParserArchive(), folder.core_path(name), &progress)),
                  "cannot open file");
    }
    EXPECT_EQ(progress.calls, Calls{});
}

TEST_F(archive_file, what_could_not_be_stored_is_logged_and_the_old_file_stays) {
    folder.write("out", "the old archive");
    const FullDisk disk;
    EXPECT_EQ(plain(ParserImpl::save_archive(archive({"a"}, {0}), folder.core_path("out"), nullptr)), "");
    EXPECT_EQ(log.take(), (std::vector<LoggedMessage>{{1, "ParserImpl.save_archive: Can't save archive '" +
                                                              folder.path("out") + "'.\n"}}));
    EXPECT_EQ(folder.read("out"), "the old archive");
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(archive_file, below_verbosity_1_nothing_is_logged_of_what_could_not_be_stored) {
    const RecordingLog quiet(0);
    const FullDisk disk;
    EXPECT_EQ(plain(ParserImpl::save_archive(archive({"a"}, {0}), folder.core_path("out"), nullptr)), "");
    EXPECT_TRUE(quiet.is_empty());
}

TEST_F(archive_file, saving_leaves_the_archive_as_it_was) {
    const ParserArchive document = archive({"a\x0F", "b"}, {1, 0, 7});
    save(document);
    EXPECT_EQ(strings_of(document), (Strings{"a\x0F", "b"}));
    EXPECT_EQ(indices_of(document), (Indices{1, 0, 7}));
}

TEST_F(archive_file, random_documents_come_back) {
    unsigned int compared = 0;
    for (unsigned int seed = 0; seed < 30; ++seed) {
        ParserGroup group("g");
        RandomTree(seed).fill(group);
        ParserArchive document;
        ParserImpl::archive_group(group, document, false, nullptr);
        const Strings strings = strings_of(document);
        EXPECT_EQ(hex(save(document)), hex(file(strings, indices_of(document)))) << seed;
        bool can_be_stored = true;
        for (const std::string& text : strings) {
            can_be_stored = can_be_stored && text.find('\x0F') == std::string::npos;
        }
        if (can_be_stored) {
            EXPECT_EQ(strings_of(load()), strings) << seed;
            EXPECT_EQ(indices_of(load()), indices_of(document)) << seed;
            ++compared;
        }
    }
    EXPECT_GT(compared, 10u);
}
