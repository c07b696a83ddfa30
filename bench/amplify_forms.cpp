#include "bench/amplify.h"
#include "bench/repeated.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "tests/support/archive_form.h"
#include "tests/support/binary_form.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/memory_disk.h"

#include <memory>

namespace bench {

namespace {

Work decode_and_encode(const std::string& bytes) {
    return {bytes.size(), [data = buffer(bytes)] {
                ParserFile file(CoreString{});
                file.set_binary(data);
                file.get_binary();
            }};
}

/// Nested groups around some bytes, which need not be valid.
std::string nested(unsigned int depth, const std::string& inside) {
    const std::size_t head = binary_form::entry("a", binary_form::group_value("")).size();
    std::string bytes = "UDFS" + size_field(depth * head + inside.size());
    for (unsigned int i = 0; i < depth; ++i) {
        const std::size_t below = (depth - i - 1) * head + inside.size();
        bytes +=
            "a" + std::string(1, '\0') + size_field(below + 10) + std::string(2, '\0') + size_field(below);
    }
    return bytes + inside;
}

Work load(const std::string& bytes) {
    const auto disk = std::make_shared<MemoryDisk>();
    disk->files["a"] = bytes;
    return {bytes.size(), [disk] {
                ParserArchive archive;
                ParserImpl::load_archive(archive, "a", nullptr);
                ParserGroup group("g");
                ParserImpl::group_set_archive(group, archive, nullptr);
            }};
}

Work archive(const std::string& text) {
    const auto disk = std::make_shared<MemoryDisk>();
    const auto group = std::make_shared<ParserGroup>("g");
    group->set_text(core(text), CoreVersion(1.2), nullptr);
    return {text.size(), [disk, group] {
                ParserArchive archive;
                AppProgressBar bar;
                ParserImpl::archive_group(*group, archive, false, &bar);
                ParserImpl::save_archive(archive, "a", nullptr);
            }};
}

std::string different_words(unsigned int count) {
    std::string text;
    for (unsigned int i = 0; i < count; ++i) {
        text += "a" + std::to_string(i) + " " + std::to_string(i) + " ";
    }
    return text;
}

Work load_one_string_many_times(unsigned int count) {
    return load(
        archive_form::file(archive_form::Strings(count, "a"), archive_form::Indices(count, count / 2)));
}

Work encipher(const std::string& text) {
    const auto group = std::make_shared<ParserGroup>("g");
    group->set_text(core(text), CoreVersion(1.2), nullptr);
    return {text.size(), [group] {
                CoreArray<unsigned char> block;
                group->get_encrypted_text(block, "lantern", false, false, 1);
                ParserGroup again("g");
                again.set_encrypted_text(block, "lantern");
                CoreString digits;
                group->get_encrypted_text(digits, "lantern", false, false, 1);
                again.set_encrypted_text(digits, "lantern");
            }};
}

} // namespace

const std::vector<Family>& form_families() {
    static const std::vector<Family> families = {
        {"binary entries", 10000,
         [](unsigned int n) {
             return decode_and_encode(
                 binary_form::file(repeated(binary_form::entry("a", binary_form::int_value(1)), n)));
         }},
        {"binary values in one entry", 20000,
         [](unsigned int n) {
             return decode_and_encode(
                 binary_form::file(binary_form::entry("a", repeated(binary_form::int_value(1), n))));
         }},
        {"binary groups in groups", 5000,
         [](unsigned int n) { return decode_and_encode(nested(n, binary_form::entry("b", ""))); }},
        {"binary groups around a name without end", 5000,
         [](unsigned int n) { return decode_and_encode(nested(n, repeated("x", 20 * n))); }},
        {"binary groups around a string without end", 5000,
         [](unsigned int n) {
             return decode_and_encode(nested(n, "b" + std::string(1, '\0') + size_field(20 * n + 2) +
                                                    std::string(1, '\0') + "\5" + repeated("x", 20 * n)));
         }},
        {"one long binary string", 100000,
         [](unsigned int n) {
             return decode_and_encode(
                 binary_form::file(binary_form::entry("a", binary_form::string_value(repeated("x", n)))));
         }},
        {"archived words that repeat", 10000, [](unsigned int n) { return archive(repeated("a 1 ", n)); }},
        {"archived words that differ", 5000, [](unsigned int n) { return archive(different_words(n)); }},
        {"archived groups in groups", 5000,
         [](unsigned int n) { return archive(repeated("a{", n) + "b 1" + repeated("}", n)); }},
        {"archive whose strings repeat", 10000, load_one_string_many_times},
        {"enciphered text", 10000, [](unsigned int n) { return encipher(repeated("a 1 ", n)); }},
    };
    return families;
}

} // namespace bench
