#include "parser/parser_file.h"
#include "tests/support/archive_form.h"
#include "tests/support/binary_form.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/counting_log.h"
#include "tests/support/golden.h"
#include "tests/support/heap_meter.h"
#include "tests/support/memory_device.h"
#include "tests/support/mutator.h"
#include "tests/support/sanitizer.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

#if defined(BK_PARSER_SANITIZED_MEMORY) // a file takes ten times as long there, and the fuzzers try more
constexpr unsigned int mutations = 50000;
#else
constexpr unsigned int mutations = 200000;
#endif

/// The limit of memory for reading a document: `room` for a buffer, which an empty file needs, too, plus
/// `multiple` times its size.
constexpr std::size_t room = 68 * 1024;
constexpr std::size_t multiple = 64;

/// Reads documents of every form, checks what must hold for any bytes, and counts the documents that were
/// accepted.
class HostileForms : public testing::Test {
public:
    using Take = void (HostileForms::*)(std::string_view);

    void take(Take form, std::string_view bytes) {
        HeapMeter::start();
        (this->*form)(bytes);
        EXPECT_LE(HeapMeter::growth(), room + multiple * bytes.size()) << hex(bytes);
    }

    void take_binary(std::string_view bytes) {
        ParserFile file(CoreString{});
        count(file.set_binary(buffer(bytes)));
        use(file.get_root());
        // The content that was kept must encode and decode without a change.
        const CoreVector<char> kept = file.get_binary();
        ParserFile again(CoreString{});
        EXPECT_TRUE(again.set_binary(kept)) << hex(bytes);
        EXPECT_TRUE(bytes_of(again.get_binary()) == bytes_of(kept)) << hex(bytes);
    }

    void take_file(std::string_view bytes) {
        device_.files["main.bkd"] = bytes;
        ParserFile file(CoreString{});
        const bool result = file.read("main.bkd", "lantern", nullptr);
        count(result);
        EXPECT_EQ(file.get_serial_version().is_set(), result);
        expect_empty_unless(result, file.get_root(), bytes);
        use(file.get_root());
    }

    void take_hexadecimal(std::string_view digits) {
        ParserGroup group("g");
        const bool result = group.set_encrypted_text(core(digits), "lantern");
        count(result);
        expect_empty_unless(result, group, digits);
        use(group);
    }

    void take_archive(std::string_view bytes) {
        device_.files["main.kwaf"] = bytes;
        ParserArchive archive;
        const std::string error = plain(ParserImpl::load_archive(archive, "main.kwaf", nullptr));
        count(error.empty());
        EXPECT_TRUE(error.empty() || error == "invalid file size" || error == "unknown file format") << error;
        ParserGroup group("g");
        ParserImpl::group_set_archive(group, archive, nullptr, ParserLimits::untrusted());
        use(group);
    }

    static Take form_of(const std::filesystem::path& path) {
        return path.extension() == ".udfs"   ? &HostileForms::take_binary
               : path.extension() == ".kwaf" ? &HostileForms::take_archive
               : path.extension() == ".txt"  ? &HostileForms::take_hexadecimal
                                             : &HostileForms::take_file;
    }

    /// Calls `work` for each golden file, with the function that reads it.
    template <class Work>
    static void for_each_golden_file(Work work) {
        unsigned int files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(golden::path(""))) {
            const std::string name = entry.path().filename().string();
            if (name.front() != '.') {
                work(form_of(entry.path()), golden::bytes(name));
                ++files;
            }
        }
        EXPECT_GE(files, 25u);
    }

    void expect_both_ends() const {
        EXPECT_GT(accepted_, mutations / 100);
        EXPECT_GT(refused_, mutations / 100);
    }

    unsigned int accepted_ = 0;
    unsigned int refused_ = 0;

private:
    void count(bool accepted) { ++(accepted ? accepted_ : refused_); }

    static void expect_empty_unless(bool result, const ParserGroup& group, std::string_view bytes) {
        EXPECT_TRUE(result || group.get_entries().get_count() == 0) << hex(bytes);
    }

    /// Prints, copies and edits a tree that was read.
    static void use(ParserGroup& group) {
        CoreString text;
        group.get_text(text, true, false, 1);
        ParserGroup copy(group);
        copy.remove_entry(0u);
        EXPECT_EQ(copy.get_entries().get_count(),
                  group.get_entries().get_count() - (group.get_entries().get_count() == 0 ? 0 : 1));
    }

    CountingLog log_;
    MemoryDevice device_;
};

/// A small document with a value of each kind.
std::string small_binary() {
    using namespace binary_form;
    const std::string inner = entry("c", string_value("x") + char_value('A')) + entry("d", "");
    return file(entry("a", int_value(1) + bool_value(true)) + entry("b", group_value(inner)) +
                entry("e", double_value(1.5) + data_value("\x01\x02")));
}

const char* const small_text =
    "\na 1, \"x\\ty\"\n#k 2.5\nb<t> { c[2] 0x01FF00010000 } // n\nf(1, no)\ng <empty>\n";

/// Enciphers many texts under one key.
class QuickCipher {
public:
    QuickCipher() : stream_(cipher_reference::shifted(std::string(4096, '\0'), "lantern", true)) {}

    std::string enciphered(std::string_view text) const {
        std::string block = cipher_reference::plain_block(text.size(), text);
        unsigned int carry = 0;
        for (std::size_t i = 0; i < block.size(); ++i) {
            carry = (i % 4 == 0 ? 0 : carry) + static_cast<unsigned char>(block[i]) +
                    static_cast<unsigned char>(stream_[i]);
            block[i] = static_cast<char>(carry);
            carry /= 256;
        }
        return block;
    }

private:
    std::string stream_;
};

} // namespace

using hostile_forms = HostileForms;

TEST_F(hostile_forms, every_cut_of_every_golden_file_is_survived) {
    for_each_golden_file([&](Take form, const std::string& bytes) {
        for (std::size_t size = 0; size <= bytes.size(); ++size) {
            take(form, std::string_view(bytes).substr(0, size));
        }
    });
    EXPECT_GT(refused_, 1000u);
}

TEST_F(hostile_forms, every_flipped_bit_of_every_small_golden_file_is_survived) {
    for_each_golden_file([&](Take form, const std::string& bytes) {
        for (std::size_t bit = 0; bytes.size() <= 512 && bit < 8 * bytes.size(); ++bit) {
            std::string flipped = bytes;
            flipped[bit / 8] =
                static_cast<char>(static_cast<unsigned char>(flipped[bit / 8]) ^ (1u << bit % 8));
            take(form, flipped);
        }
    });
    EXPECT_GT(accepted_, 1000u);
    EXPECT_GT(refused_, 1000u);
}

TEST_F(hostile_forms, mutated_binary_documents_are_survived) {
    Mutator mutator(1);
    const std::string document = small_binary();
    for (unsigned int i = 0; i < mutations; ++i) {
        take(&HostileForms::take_binary, mutator.mutated(document));
    }
    expect_both_ends();
}

TEST_F(hostile_forms, mutated_enciphered_files_are_survived) {
    Mutator mutator(2);
    const QuickCipher cipher;
    const std::string document = "KWBF" + cipher.enciphered(small_text);
    for (unsigned int i = 0; i < mutations; ++i) {
        take(&HostileForms::take_file, i % 2 == 0 ? mutator.mutated(document)
                                                  : "KWBF" + cipher.enciphered(mutator.mutated(small_text)));
    }
    expect_both_ends();
}

TEST_F(hostile_forms, mutated_hexadecimal_texts_are_survived) {
    Mutator mutator(3);
    const QuickCipher cipher;
    const std::string document = dense_hex(cipher.enciphered(small_text));
    for (unsigned int i = 0; i < mutations; ++i) {
        take(&HostileForms::take_hexadecimal,
             i % 2 == 0 ? mutator.mutated(document)
                        : dense_hex(cipher.enciphered(mutator.mutated(small_text))));
    }
    expect_both_ends();
}

TEST_F(hostile_forms, mutated_archives_are_survived) {
    Mutator mutator(4);
    const std::string document = archive_form::file({"a", "{", "\"x y\"", "}", "f", "(", "1", ",", ")"},
                                                    {0, 1, 0, 2, 3, 4, 5, 6, 7, 6, 8});
    for (unsigned int i = 0; i < mutations; ++i) {
        take(&HostileForms::take_archive, mutator.mutated(document));
    }
    expect_both_ends();
}

TEST_F(hostile_forms, mutated_text_files_are_survived) {
    Mutator mutator(5);
    const std::string document = std::string("#Brellwick_Serial_Version 1.2\n") + small_text;
    for (unsigned int i = 0; i < mutations; ++i) {
        take(&HostileForms::take_file, mutator.mutated(document));
    }
    EXPECT_GT(accepted_, mutations / 2);
}
