#include "core/reports/app_progress_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "core/reports/core_guard_impl.h"
#include "core/sys_file.h"
#include "core/text/core_bytes_impl.h"
#include "parser/archive/parser_archive_impl.h"
#include "parser/parser_archive.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

/// An archive file: the magic, eight reserved bytes, the number of strings, the strings with a NUL after each, the
/// number of indices, the indices. Every character of a string is stored less the shift, modulo 256.
namespace {

using bk::archive_magic;
constexpr std::size_t reserved_size = bk::archive_reserved_size;

constexpr const char* no_error = "";
constexpr const char* empty_filename = "empty filename";
constexpr const char* cannot_open = "cannot open file";
constexpr const char* invalid_size = "invalid file size";
constexpr const char* unknown_format = "unknown file format";

char shifted(char character) noexcept {
    return static_cast<char>(static_cast<unsigned char>(character) - bk::archive_shift);
}

void append_number(std::string& out, std::uint32_t number, std::size_t width) {
    unsigned char bytes[sizeof(number)];
    bk::store_le32(bytes, number);
    out.append(reinterpret_cast<const char*>(bytes), width);
}

std::string string_block(const CoreVector<CoreString>& strings) {
    std::string block;
    append_number(block, strings.get_count(), sizeof(std::uint32_t));
    for (const CoreString& string : strings) {
        const std::string_view text = string.get_view();
        const std::size_t start = block.size();
        block.append(text);
        std::transform(text.begin(), text.end(), block.begin() + static_cast<std::ptrdiff_t>(start), shifted);
        block.push_back('\0');
    }
    return block;
}

std::string index_block(const CoreVector<unsigned int>& indices, std::size_t width) {
    std::string block;
    block.reserve(sizeof(std::uint32_t) + indices.get_count() * width);
    append_number(block, indices.get_count(), sizeof(std::uint32_t));
    for (const unsigned int index : indices) {
        append_number(block, index, width);
    }
    return block;
}

void write_all(SysFile& file, std::string_view bytes) {
    file.write(bytes.data(), static_cast<core_int64>(bytes.size()));
}

/// The whole file at once.
std::unique_ptr<char[]> read_all(SysFile& file, std::size_t& size) {
    size = static_cast<std::size_t>(file.get_size());
    std::unique_ptr<char[]> bytes(new char[size]);
    const core_int64 got = file.read(bytes.get(), 1, static_cast<core_int64>(size));
    size = static_cast<std::size_t>(std::max(got, core_int64{0}));
    return bytes;
}

/// Makes an error text for the caller without taking memory.
CoreString answer(const char* text) {
    CoreString shown;
    shown.set_borrowed(text, static_cast<unsigned int>(std::strlen(text)));
    return shown;
}

const char* save(const ParserArchive& archive, const CoreString& filename, bk::Progress bar) {
    if (filename.is_empty()) {
        return empty_filename;
    }
    SysFile file;
    if (!file.open(filename, SysFile::MODE_WRITE, SysFile::TYPE_BINARY)) {
        return cannot_open;
    }
    write_all(file, std::string(archive_magic) + std::string(reserved_size, '\0'));
    bar.set_value(0.0f);
    write_all(file, string_block(archive.strings));
    bar.set_value(0.5f);
    write_all(file, index_block(archive.indices, bk::archive_index_width(archive.strings.get_count())));
    bar.set_value(1.0f);
    if (!file.close()) {
        bk::report_error("ParserImpl.save_archive: Can't save archive '", filename, "'.\n");
    }
    return no_error;
}

const char* answer_to(bk::ArchiveBytes result) noexcept {
    if (result == bk::ArchiveBytes::whole) {
        return no_error;
    }
    return result == bk::ArchiveBytes::unknown_format ? unknown_format : invalid_size;
}

const char* load(ParserArchive& archive, const CoreString& filename) {
    if (filename.is_empty()) {
        return empty_filename;
    }
    SysFile file;
    if (!file.open(filename, SysFile::MODE_READ, SysFile::TYPE_BINARY)) {
        return cannot_open;
    }
    std::size_t size = 0;
    const std::unique_ptr<char[]> bytes = read_all(file, size);
    if (!file.close()) {
        return cannot_open;
    }
    return answer_to(bk::take_archive({bytes.get(), size}, archive, false, nullptr).result);
}

} // namespace

std::string bk::archive_file_bytes(const ParserArchive& archive) {
    return std::string(archive_magic) + std::string(reserved_size, '\0') + string_block(archive.strings) +
           index_block(archive.indices, archive_index_width(archive.strings.get_count()));
}

CoreString ParserImpl::save_archive(const ParserArchive& archive, const CoreString& filename,
                                    AppProgressBar* progress) {
    return answer(bk::guarded("ParserImpl.save_archive", cannot_open,
                              [&] { return save(archive, filename, bk::Progress(progress)); }));
}

CoreString ParserImpl::load_archive(ParserArchive& archive, const CoreString& filename, AppProgressBar*) {
    return answer(
        bk::guarded("ParserImpl.load_archive", invalid_size, [&] { return load(archive, filename); }));
}
