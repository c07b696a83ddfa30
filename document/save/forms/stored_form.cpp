#include "document/save/forms/stored_form_impl.h"

#include "document/load/form_impl.h"
#include "document/save/proof/read_back_impl.h"
#include "document/save/proof/same_tree_impl.h"
#include "document/save/record/save_sources_impl.h"
#include "parser/archive/parser_archive_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/cipher/parser_cipher_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/parser_archive.h"
#include "parser/text/parser_text_writer_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

constexpr std::string_view binary_tag = "UDFS";

std::string version_line() {
    CoreString line;
    line.append(bk::version_directive);
    line += bk::written_version;
    return std::string(line.get_view());
}

constexpr std::string_view not_as_it_is = " would not read back as it is";

std::string reason_of(const ParserEntry* difference) {
    return (difference == nullptr ? "the document"
                                  : "entry '" + std::string(difference->get_name().get_view()) + "'") +
           std::string(not_as_it_is);
}

/// Why a text cannot be read back at all. The text begins with a version line or with the name of an entry.
std::string why_unreadable(std::string_view bytes, bool is_enciphered) {
    if (!is_enciphered && form_of(bytes) != Form::text) {
        return "the text would be taken for another form, because of the name that it begins with";
    }
    if (!is_enciphered && foreign_kind(bytes).empty()) {
        return reason_of(nullptr);
    }
    return "the text has so many control characters that it would not be taken for a text: choose the binary "
           "form";
}

/// Whether a file with these bytes reads back as the tree. Reads it under a path that nothing else uses.
bool reads_back_from_file(std::string bytes, const ParserGroup& root, const std::string& key,
                          bool is_enciphered, std::string& reason) {
    const std::string path = "/document";
    DocumentState state;
    state.key = key;
    state.beside = false;
    NewBytes replaced;
    replaced.emplace(path, std::move(bytes));
    SaveSources sources(state, replaced);
    const bool is_read = sources.read(path);
    if (!is_read ||
        (sources.text().empty() && root.get_entries().get_count() != 0)) { // a deciphered text is left out
        reason = why_unreadable(replaced.at(path), is_enciphered);
        return false;
    }
    ReadBack back(sources.text(), root, bk::has_escapes(CoreVersion(sources.version())));
    if (is_enciphered) {
        back.pass_over_version();
    }
    const bool is_equal = back.run();
    if (!is_equal) {
        reason = reason_of(back.difference());
    }
    return is_equal;
}

bool reads_back_from_archive(std::string_view bytes, const ParserGroup& root, std::string& reason) {
    ParserArchive archive;
    if (bk::take_archive(bytes, archive, false, nullptr).result != bk::ArchiveBytes::whole ||
        !bk::is_text_within(archive, ParserLimits())) {
        reason = reason_of(nullptr);
        return false;
    }
    const CoreString text = bk::join_words(archive, nullptr);
    ReadBack back(text.get_view(), root, true);
    const bool is_equal = back.run();
    if (!is_equal) {
        reason = reason_of(back.difference());
    }
    return is_equal;
}

bool reads_back_from_binary(const CoreVector<char>& binary, const ParserGroup& root, std::string& reason) {
    ParserGroup read{CoreString()};
    core_uint64 position = 0;
    const bool is_read = read.set_binary(binary, position);
    const ParserEntry* const other = is_read ? first_difference(root, read) : nullptr;
    const bool is_equal = is_read && other == nullptr;
    if (!is_equal) {
        reason = reason_of(other);
    }
    return is_equal;
}

/// Prints some entries of the root group, one per line.
bool print(const ParserGroup& root, unsigned int first, unsigned int end, CoreString& text) {
    bk::TextWriter writer(text, true);
    writer.write_entries_of(root, first, end);
    return writer.finish();
}

bool print_with_version(const ParserGroup& root, const VersionPlace& version, std::string& text) {
    const unsigned int count = root.get_entries().get_count();
    const unsigned int place = version.is_at_begin ? 0 : std::min(version.entry, count);
    CoreString before;
    CoreString behind;
    if (!print(root, 0, place, before) || !print(root, place, count, behind)) {
        return false;
    }
    text = before.get_view();
    text += version.is_at_begin ? "" : "\n";
    text += version_line();
    text += behind.get_view();
    return text.size() <= CoreString::max_length;
}

} // namespace

std::string enciphered(std::string_view text, std::string_view key) {
    std::string bytes(bk::cipher_magic);
    bytes.resize(bytes.size() + static_cast<std::size_t>(bk::cipher_block_size(text.size())));
    bk::encipher(text, key, reinterpret_cast<unsigned char*>(bytes.data()) + bk::cipher_magic.size());
    return bytes;
}

bool store(const ParserGroup& root, Form form, const std::string& key, const VersionPlace& version,
           StoredForm& stored) {
    switch (form) {
    case Form::text:
        stored.head = version_line() + '\n';
        if (!print(root, 0, root.get_entries().get_count(), stored.text) ||
            stored.text.get_length() == CoreString::max_length) {
            return false;
        }
        if (!stored.text.is_empty()) {
            stored.text += '\n'; // a file ends with a line end
        }
        return true;
    case Form::enciphered: {
        std::string text;
        if (!print_with_version(root, version, text)) {
            return false;
        }
        stored.bytes = enciphered(text, key);
        return true;
    }
    case Form::binary: {
        stored.head = binary_tag;
        bk::BinaryEncoder encoder(stored.binary);
        encoder.write_group(root);
        return encoder.finish("ParserGroup.get_binary") != 0;
    }
    case Form::archive: {
        ParserArchive archive;
        bk::add_words(archive, root);
        stored.bytes = bk::archive_file_bytes(archive);
        return true;
    }
    }
    return false;
}

bool reads_back(const StoredForm& stored, Form form, const ParserGroup& root, const std::string& key,
                std::string& reason) {
    switch (form) {
    case Form::text:
        return reads_back_from_file(stored.head + std::string(stored.text.get_view()), root, key, false,
                                    reason);
    case Form::enciphered:
        return reads_back_from_file(stored.bytes, root, key, true, reason);
    case Form::binary:
        return reads_back_from_binary(stored.binary, root, reason);
    case Form::archive:
        return reads_back_from_archive(stored.bytes, root, reason);
    }
    return false;
}

} // namespace bk_parser
