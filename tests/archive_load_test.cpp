#include "tests/support/archive_form.h"
#include "tests/support/memory_device.h"
#include "tests/support/recording_log.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace archive_form;

/// Loads the bytes as an archive file. Keeps the error text, and what the archive holds afterwards.
class Loaded {
public:
    explicit Loaded(std::string_view bytes) {
        MemoryDevice device;
        const RecordingLog log;
        device.files["archive"] = bytes;
        error = plain(ParserImpl::load_archive(archive, "archive", nullptr));
        EXPECT_TRUE(log.is_empty());
    }

    Strings strings() const { return strings_of(archive); }
    Indices indices() const { return indices_of(archive); }

    ParserArchive archive;
    std::string error;
};

const std::string bad_size = "invalid file size";
const std::string bad_format = "unknown file format";

} // namespace

TEST(archive_load, a_name_is_needed) {
    ParserArchive archive;
    EXPECT_EQ(plain(ParserImpl::load_archive(archive, "", nullptr)), "empty filename");
}

TEST(archive_load, a_file_that_is_missing_or_a_folder_cannot_be_opened) {
    const ScratchFolder folder;
    ParserArchive archive;
    EXPECT_EQ(plain(ParserImpl::load_archive(archive, folder.core_path("missing"), nullptr)),
              "cannot open file");
    EXPECT_EQ(plain(ParserImpl::load_archive(archive, folder.core_path(""), nullptr)), "cannot open file");
}

TEST(archive_load, a_file_of_less_than_four_bytes_has_an_invalid_size) {
    for (const char* bytes : {"", "K", "KW", "KWA", "xyz"}) {
        EXPECT_EQ(Loaded(bytes).error, bad_size) << bytes;
    }
}

TEST(archive_load, another_magic_is_an_unknown_format) {
    for (const char* magic : {"KWAG", "kwaf", "KWBF", "UDFS", "\xCBWAF"}) {
        EXPECT_EQ(Loaded(magic).error, bad_format) << magic;
        EXPECT_EQ(Loaded(magic + file({"a"}, {0}).substr(4)).error, bad_format) << magic;
    }
}

TEST(archive_load, four_to_fifteen_bytes_that_begin_with_the_magic_are_an_invalid_size) {
    for (std::size_t size = 4; size < 16; ++size) {
        EXPECT_EQ(Loaded(file({}, {}).substr(0, size)).error, bad_size) << size;
        EXPECT_EQ(Loaded("KWAG" + std::string(size - 4, '\0')).error, bad_format) << size;
    }
}

TEST(archive_load, the_reserved_bytes_may_be_anything) {
    std::string bytes = file({"a"}, {0});
    bytes.replace(4, 8, "\xFF\x01reserv");
    const Loaded loaded(bytes);
    EXPECT_EQ(loaded.error, "");
    EXPECT_EQ(loaded.strings(), Strings{"a"});
}

TEST(archive_load, bytes_after_the_indices_are_ignored) {
    const Loaded loaded(file({"a", "b"}, {1, 0}) + "rest");
    EXPECT_EQ(loaded.error, "");
    EXPECT_EQ(loaded.strings(), (Strings{"a", "b"}));
    EXPECT_EQ(loaded.indices(), (Indices{1, 0}));
}

TEST(archive_load, empty_strings_are_strings) {
    const Loaded loaded(file({"", "a", ""}, {2}));
    EXPECT_EQ(loaded.error, "");
    EXPECT_EQ(loaded.strings(), (Strings{"", "a", ""}));
}

TEST(archive_load, indices_past_the_strings_are_loaded_as_they_are) {
    EXPECT_EQ(Loaded(file({"a"}, {0, 1, 255})).indices(), (Indices{0, 1, 255}));
    EXPECT_EQ(Loaded(head(0) + little(2, 4) + "\x05\x06").indices(), (Indices{5, 6}));
}

TEST(archive_load, what_is_loaded_is_appended) {
    ParserArchive archive = archive_form::archive({"x"}, {0});
    MemoryDevice device;
    device.files["archive"] = file({"a", "b"}, {1, 0});
    EXPECT_EQ(plain(ParserImpl::load_archive(archive, "archive", nullptr)), "");
    EXPECT_EQ(plain(ParserImpl::load_archive(archive, "archive", nullptr)), "");
    EXPECT_EQ(strings_of(archive), (Strings{"x", "a", "b", "a", "b"}));
    EXPECT_EQ(indices_of(archive), (Indices{0, 1, 0, 1, 0}));
}

TEST(archive_load, a_file_that_ends_inside_a_string_keeps_those_before) {
    const Loaded loaded(head(3) + stored("a") + stored("bc").substr(0, 1));
    EXPECT_EQ(loaded.error, bad_size);
    EXPECT_EQ(loaded.strings(), Strings{"a"});
}

TEST(archive_load, a_file_that_ends_between_strings_keeps_those_before) {
    const Loaded loaded(head(3) + stored("a") + stored("bc"));
    EXPECT_EQ(loaded.error, bad_size) << "there is no number of indices";
    EXPECT_EQ(loaded.strings(), (Strings{"a", "bc"}));
    EXPECT_EQ(Loaded(head(3)).error, bad_size);
}

TEST(archive_load, a_file_that_ends_inside_the_number_of_indices_keeps_the_strings) {
    for (std::size_t size = 0; size < 4; ++size) {
        const Loaded loaded(head(1) + stored("a") + std::string(size, '\0'));
        EXPECT_EQ(loaded.error, bad_size) << size;
        EXPECT_EQ(loaded.strings(), Strings{"a"});
    }
}

TEST(archive_load, a_file_that_ends_inside_the_indices_has_none) {
    const std::string whole = file({"a"}, {0, 0, 0, 0});
    for (std::size_t left = 1; left <= 4; ++left) {
        const Loaded loaded(whole.substr(0, whole.size() - left));
        EXPECT_EQ(loaded.error, bad_size) << left;
        EXPECT_EQ(loaded.strings(), Strings{"a"});
        EXPECT_EQ(loaded.indices(), Indices{});
    }
}

TEST(archive_load, every_cut_has_an_invalid_size_and_keeps_whole_strings) {
    const std::string start = head(3) + stored("abc") + stored("") + stored("d");
    const std::string whole = file({"abc", "", "d"}, {0, 1, 2, 0});
    ASSERT_EQ(Loaded(whole).error, "");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Loaded loaded(whole.substr(0, size));
        EXPECT_EQ(loaded.error, bad_size) << size;
        const std::size_t strings = (size >= 20) + (size >= 21) + (size >= 23);
        EXPECT_EQ(loaded.strings().size(), strings) << size;
        EXPECT_EQ(loaded.indices(), Indices{});
    }
    EXPECT_EQ(start.size(), 23u);
}

TEST(archive_load, every_cut_of_a_file_with_wide_indices_has_an_invalid_size) {
    Strings strings(256);
    const std::string whole = file(strings, {0, 255, 1});
    ASSERT_EQ(Loaded(whole).indices(), (Indices{0, 255, 1}));
    for (std::size_t left = 1; left <= 12; ++left) {
        EXPECT_EQ(Loaded(whole.substr(0, whole.size() - left)).error, bad_size) << left;
    }
}

TEST(archive_load, numbers_of_indices_that_pass_4_gibibytes_are_an_invalid_size) {
    const std::string one_byte = head(1) + stored("a");
    const std::string two_bytes = head(256) + std::string(256, '\0');
    const std::string four_bytes = head(65536) + std::string(65536, '\0');
    for (const unsigned int count :
         {0xFFFFFFFFu, 0x80000000u, 0x80000001u, 0x40000000u, 0x40000001u, 0x7FFFFFFFu}) {
        EXPECT_EQ(Loaded(one_byte + little(count, 4) + "abcd").error, bad_size) << count;
        EXPECT_EQ(Loaded(two_bytes + little(count, 4) + "abcd").error, bad_size) << count;
        EXPECT_EQ(Loaded(four_bytes + little(count, 4) + "abcd").error, bad_size) << count;
    }
}

TEST(archive_load, the_width_goes_by_the_stated_number_of_strings) {
    EXPECT_EQ(Loaded(head(256) + std::string(256, '\0') + little(1, 4) + "\x05\x01").indices(),
              Indices{0x105});
    EXPECT_EQ(Loaded(head(65536) + std::string(65536, '\0') + little(1, 4) + "\x05\x01\x02\x03").indices(),
              Indices{0x03020105});
    EXPECT_EQ(Loaded(head(65535) + std::string(65535, '\0') + little(1, 4) + "\x05\x01").indices(),
              Indices{0x105});
    EXPECT_EQ(Loaded(head(255) + std::string(255, '\0') + little(1, 4) + "\x05").indices(), Indices{5});
}

TEST(archive_load, the_largest_number_of_strings_takes_those_that_are_there) {
    const Loaded loaded(head(0xFFFFFFFF) + std::string(1000, '\0'));
    EXPECT_EQ(loaded.error, bad_size);
    EXPECT_EQ(loaded.strings().size(), 1000u);
}

TEST(archive_load, a_failed_file_can_be_replaced_afterwards) {
    const ScratchFolder folder;
    folder.write("archive", "KWAF");
    ParserArchive archive;
    EXPECT_EQ(plain(ParserImpl::load_archive(archive, folder.core_path("archive"), nullptr)), bad_size);
    EXPECT_EQ(plain(ParserImpl::save_archive(archive_form::archive({"a"}, {0}), folder.core_path("archive"),
                                             nullptr)),
              "");
    EXPECT_EQ(plain(ParserImpl::load_archive(archive, folder.core_path("archive"), nullptr)), "");
    EXPECT_EQ(strings_of(archive), Strings{"a"});
}

TEST(archive_load, a_loaded_archive_can_be_saved_and_restored) {
    const ScratchFolder folder;
    const std::string bytes = file({"a", "1", "\"\x80\""}, {0, 1, 0, 2});
    const Loaded loaded(bytes);
    EXPECT_EQ(plain(ParserImpl::save_archive(loaded.archive, folder.core_path("out"), nullptr)), "");
    EXPECT_EQ(hex(folder.read("out")), hex(bytes));
    ParserGroup group("g");
    ParserImpl::group_set_archive(group, loaded.archive, nullptr);
    EXPECT_EQ(written(group), "g { a 1 a \"\x80\" }");
}
