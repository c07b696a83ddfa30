#include "core/reports/core_guard_impl.h"
#include "core/sys_file.h"
#include "parser/cipher/parser_cipher_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/parser_file.h"
#include "parser/text/parser_text_writer_impl.h"

#include <memory>
#include <vector>

namespace {

/// A name or key that begins with a NUL counts as empty, too.
bool is_given(const CoreString& text) noexcept {
    return !text.is_empty() && text.get_data()[0] != '\0';
}

/// The document's own version line, as an entry of the root group; null when there is none.
ParserEntry* find_version_entry(const ParserGroup& root) {
    return root.get_keyword(CoreString(bk::version_keyword));
}

void set_written_version(ParserEntry& entry) {
    if (entry.has_value()) {
        entry.set_double(bk::written_version, 0);
    } else {
        entry.add_double(bk::written_version);
    }
}

/// Adds the entry only when it is complete, so that no failure leaves half of it.
void add_version_entry(ParserGroup& root) {
    auto entry =
        std::make_unique<ParserEntry>(CoreString(bk::version_keyword), ParserEntry::TYPE_KEYWORD, 0, 0);
    set_written_version(*entry);
    root.add_entry(*entry);
    static_cast<void>(entry.release());
}

bool print_document(const ParserGroup& root, CoreString& out) {
    return bk::print_group(out, root, false, true, 1);
}

/// Writes all parts and closes the file. Returns false when not everything was written.
bool store(SysFile& file, std::string_view head, std::string_view body) {
    bool is_whole = true;
    for (const std::string_view part : {head, body}) {
        const auto size = static_cast<core_int64>(part.size());
        is_whole = file.write(part.data(), size) == size && is_whole;
    }
    return file.close() && is_whole;
}

} // namespace

bool ParserFile::write(const Mode& mode, const CoreString& filename, const CoreString& key) {
    // Copies both, because they may alias the string of the version entry, which writing changes.
    return bk::guarded("ParserFile.write", false,
                       [&] { return write_document(mode, CoreString(filename), CoreString(key)); });
}

bool ParserFile::write_document(const Mode& mode, const CoreString& filename, const CoreString& key) {
    if (is_given(filename)) {
        set_filename(filename);
    }
    const bool is_encrypted = is_given(key);
    if (!is_encrypted && mode != MODE_TEXT && mode != MODE_BINARY) {
        bk::report_error("ParserFile.write: Unknown file mode\n");
        return false;
    }
    const bool is_text = !is_encrypted && mode == MODE_TEXT;
    SysFile file;
    if (!file.open(filename_, SysFile::MODE_WRITE, is_text ? SysFile::TYPE_TEXT : SysFile::TYPE_BINARY)) {
        return false;
    }
    const bool is_stored = bk::guarded("ParserFile.write", false, [&] {
        return is_encrypted ? write_encrypted(file, key) : is_text ? write_text(file) : write_binary(file);
    });
    if (!is_stored) {
        bk::report_error("ParserFile.write: Can't save project '", filename, "'.\n");
    }
    return true;
}

bool ParserFile::write_encrypted(SysFile& file, const CoreString& key) {
    if (ParserEntry* const version = find_version_entry(*root_)) {
        set_written_version(*version);
    } else {
        add_version_entry(*root_);
    }
    CoreString text;
    if (!print_document(*root_, text)) {
        return false;
    }
    std::vector<unsigned char> block(bk::cipher_block_size(text.get_length()));
    bk::encipher(text.get_view(), key.get_view(), block.data());
    return store(file, bk::cipher_magic, {reinterpret_cast<const char*>(block.data()), block.size()});
}

bool ParserFile::write_text(SysFile& file) {
    CoreString head;
    if (ParserEntry* const version = find_version_entry(*root_)) {
        set_written_version(*version);
    } else {
        head.append(bk::version_directive);
        head += bk::written_version;
        head += '\n';
    }
    CoreString text;
    return print_document(*root_, text) && store(file, head.get_view(), text.get_view());
}

bool ParserFile::write_binary(SysFile& file) const {
    const CoreVector<char> data = get_binary();
    return !data.is_empty() && store(file, {}, {data.get_data(), data.get_count()});
}
