#include "parser/parser_file.h"
#include "tests/support/archive_form.h"
#include "tests/support/binary_form.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/heap_meter.h"
#include "tests/support/memory_device.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

/// The limit of memory for a few bytes that contain huge counts.
constexpr std::size_t few_kilobytes = 8 * 1024;

constexpr core_uint64 huge_counts[] = {0x10000,    0xFFFFFF,           0x7FFFFFFF, 0x80000000,
                                       0xFFFFFFFF, 0x7FFFFFFFFFFFFFFF, ~0ull};

class Measured : public testing::Test {
protected:
    void SetUp() override {
#if defined(_WIN32)
        GTEST_SKIP() << "a library does not take its operator new from the program here";
#endif
        const CoreVector<char> honest = buffer(binary_form::data_value(std::string(100000, 'x')));
        HeapMeter::start();
        unsigned long long position = 0;
        const std::unique_ptr<ParserValue> value(ParserValue::bin_to_value(honest, position));
        ASSERT_GE(HeapMeter::growth(), 100000u) << "the library's memory is not seen";
    }

    template <class Work>
    std::size_t growth_of(Work work) {
        HeapMeter::start();
        work();
        return HeapMeter::growth();
    }

    template <class Work>
    void expect_small_multiple(std::size_t size, Work work) {
        EXPECT_LT(growth_of(work), 64 * size);
    }

    static std::string repeated(const std::string& part) {
        std::string result;
        for (unsigned int i = 0; i < many; ++i) {
            result += part;
        }
        return result;
    }

    static constexpr unsigned int many = 20000;
    const RecordingLog quiet{0};
};

} // namespace

using binary_memory = Measured;

TEST_F(binary_memory, binary_data_of_a_huge_size_take_a_few_kilobytes) {
    for (const core_uint64 count : huge_counts) {
        const CoreVector<char> data = buffer("\6" + size_field(count) + "12345678901");
        EXPECT_LT(growth_of([&] {
                      unsigned long long position = 0;
                      delete ParserValue::bin_to_value(data, position);
                  }),
                  few_kilobytes)
            << count;
    }
}

TEST_F(binary_memory, an_entry_of_a_huge_size_takes_a_few_kilobytes) {
    for (const core_uint64 count : huge_counts) {
        const CoreVector<char> data = buffer(size_field(count) + "\0\6" + size_field(count) + "12");
        EXPECT_LT(growth_of([&] {
                      ParserEntry entry("e", ParserEntry::TYPE_ENTRY, 0, 0);
                      core_uint64 position = 0;
                      entry.set_binary(data, position);
                      position = 9;
                      entry.set_binary(data, position);
                  }),
                  few_kilobytes)
            << count;
    }
}

TEST_F(binary_memory, groups_of_a_huge_size_take_a_few_kilobytes) {
    for (const core_uint64 count : huge_counts) {
        const std::string inside = binary_form::entry("a", '\0' + size_field(count));
        for (const std::string& bytes :
             {"UDFS" + size_field(count) + "12345678", binary_form::file(inside)}) {
            const CoreVector<char> data = buffer(bytes);
            EXPECT_LT(growth_of([&] { ParserFile(CoreString{}).set_binary(data); }), few_kilobytes) << count;
        }
    }
}

TEST_F(binary_memory, an_archive_with_huge_counts_takes_a_few_kilobytes) {
    MemoryDevice device;
    for (const core_uint64 count : huge_counts) {
        for (const std::string& bytes :
             {archive_form::head(count) + "1234", archive_form::head(count),
              archive_form::head(0) + little(count, 4),
              archive_form::head(1) + archive_form::stored("") + little(count, 4)}) {
            device.files["archive"] = bytes;
            EXPECT_LT(growth_of([&] {
                          ParserArchive archive;
                          EXPECT_EQ(plain(ParserImpl::load_archive(archive, "archive", nullptr)),
                                    "invalid file size");
                      }),
                      few_kilobytes)
                << count;
        }
    }
}

TEST_F(binary_memory, an_enciphered_text_of_a_huge_length_takes_a_few_kilobytes) {
    for (const core_uint64 count : huge_counts) {
        const std::string block = cipher_reference::enciphered_stating(count, "a 1 b 2 ", "key");
        const CoreArray<unsigned char> bytes = byte_array(block);
        const CoreString digits = core(dense_hex(block));
        EXPECT_LT(growth_of([&] {
                      ParserGroup group("g");
                      EXPECT_FALSE(group.set_encrypted_text(bytes, "key"));
                      EXPECT_FALSE(group.set_encrypted_text(digits, "key"));
                  }),
                  few_kilobytes)
            << count;
    }
}

TEST_F(binary_memory, the_smallest_parts_of_a_binary_document_take_a_small_multiple_of_their_bytes) {
    using namespace binary_form;
    for (const std::string& part : {bool_value(true), string_value(""), data_value(""), group_value("")}) {
        const CoreVector<char> data = buffer(binary_form::file(entry("a", repeated(part))));
        expect_small_multiple(data.get_count(), [&] {
            ParserFile file(CoreString{});
            EXPECT_TRUE(file.set_binary(data));
        });
    }
    const CoreVector<char> entries = buffer(binary_form::file(repeated(entry("a", ""))));
    expect_small_multiple(entries.get_count(), [&] {
        ParserFile file(CoreString{});
        EXPECT_TRUE(file.set_binary(entries));
    });
}

TEST_F(binary_memory, the_smallest_parts_of_an_archive_take_a_small_multiple_of_their_bytes) {
    MemoryDevice device;
    const std::string strings(many, '\0');
    const std::string indices = archive_form::head(0) + little(many, 4) + std::string(many, '\1');
    for (const std::string& bytes : {archive_form::head(many) + strings, indices}) {
        device.files["archive"] = bytes;
        expect_small_multiple(bytes.size(), [&] {
            ParserArchive archive;
            ParserImpl::load_archive(archive, "archive", nullptr);
            EXPECT_EQ(archive.strings.get_count() + archive.indices.get_count(), many);
        });
    }
}

TEST_F(binary_memory, encoding_takes_a_small_multiple_of_the_output) {
    ParserGroup group("g");
    ASSERT_TRUE(group.set_text(core(std::string("a { b 1 c \"some text\" } ")), CoreVersion(1.2), nullptr));
    for (int i = 0; i < 10; ++i) { // doubled in each round
        ParserGroup copy(group);
        copy.move_entries(group);
    }
    unsigned int size = 0;
    const std::size_t growth = growth_of([&] { size = group.get_binary(false).get_count(); });
    EXPECT_GT(size, 40000u);
    EXPECT_LT(growth, 8u * size);
}
