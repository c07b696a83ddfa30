#include "document/load/failure_text_impl.h"

#include "core/files/sys_reason_impl.h"
#include "core/sys_device.h"
#include "document/load/form_impl.h"
#include "document/sources/file_bytes_impl.h"
#include "parser/cipher/parser_cipher_impl.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace bk_parser {

namespace {

/// The bytes of an enciphered length.
constexpr core_uint64 length_size = 8;

std::string_view code_of_enciphered(const bk::SourceFailure& failure, bool has_key) {
    if (failure.present < length_size) {
        return codes::cut_off;
    }
    // Under a wrong key the length is any 64-bit number. A true one is below 2^32.
    if (failure.announced >> 32 != 0) {
        return has_key ? codes::wrong_key : codes::no_key;
    }
    return bk::cipher_block_size(failure.announced) > failure.present ? codes::cut_off : codes::damaged;
}

std::string text_of_enciphered(const bk::SourceFailure& failure, bool has_key) {
    const std::string name(failure.found.get_view());
    const std::string_view code = code_of_enciphered(failure, has_key);
    if (failure.present < length_size) {
        return name + " is cut off: it ends before the encrypted text";
    }
    if (code == codes::cut_off) {
        const core_uint64 mark = bk::cipher_magic.size();
        return cut_off_text(name, bk::cipher_block_size(failure.announced) + mark, failure.present + mark);
    }
    if (code == codes::no_key) {
        return name + " is encrypted, and no key is given";
    }
    return name + (code == codes::damaged ? ": damaged file" : ": wrong key, or a damaged file");
}

/// Says why the search for an include passed over this place, as in " (is a directory)". Returns an empty text when nothing is there.
std::string why_not_there(std::string_view place) {
    if (place.find('\0') != std::string_view::npos) {
        return {};
    }
    bk::forget_system_reason();
    const SysPathKind kind = SysDevice::get().inspect(std::string(place)).kind;
    const std::string reason = kind == SysPathKind::other ? "is not a regular file" : why_no_file(kind);
    return reason.empty() || reason == bk::no_such_file ? "" : " (" + reason + ")";
}

std::string text_of_missing(const bk::SourceFailure& failure) {
    if (failure.name.is_empty()) {
        return "an include without a name";
    }
    std::string text = "'" + std::string(failure.name.get_view()) + "' not found";
    std::vector<std::string_view> places; // each once, as many folders may be one; a handful
    for (const CoreString& tried : failure.tried) {
        const std::string_view place = tried.get_view();
        if (!place.empty() && std::find(places.begin(), places.end(), place) == places.end()) {
            text += places.empty() ? "; tried " : ", ";
            text += place;
            text += why_not_there(place);
            places.push_back(place);
        }
    }
    return text + "; a search folder adds a place";
}

} // namespace

std::string_view failure_code(const bk::SourceFailure& failure, bool has_key) {
    using bk::SourceFault;
    switch (failure.fault) {
    case SourceFault::not_found:
        return codes::include_not_found;
    case SourceFault::includes_itself:
        return codes::include_circle;
    case SourceFault::included_too_deeply:
        return codes::included_too_deeply;
    case SourceFault::too_many_includes:
        return codes::too_many_includes;
    case SourceFault::file_too_large:
    case SourceFault::text_too_large:
        return codes::too_large;
    case SourceFault::unreadable:
        return codes::unreadable;
    case SourceFault::enciphered_length:
    case SourceFault::enciphered_block:
        return code_of_enciphered(failure, has_key);
    case SourceFault::no_version:
        return codes::no_version;
    case SourceFault::include_left_open:
        break;
    }
    return codes::include_left_open;
}

std::string failure_text(const bk::SourceFailure& failure, bool has_key) {
    using bk::SourceFault;
    const std::string name(failure.name.get_view());
    switch (failure.fault) {
    case SourceFault::not_found:
        return text_of_missing(failure);
    case SourceFault::includes_itself:
        return "'" + name + "' includes itself";
    case SourceFault::included_too_deeply:
        return "'" + name + "' is included too deeply: ParserLimits::include_depth";
    case SourceFault::too_many_includes:
        return "too many includes: ParserLimits::include_count";
    case SourceFault::file_too_large:
        return "'" + name + "' is too large: ParserLimits::source_size";
    case SourceFault::text_too_large:
        return "the text with its includes is too large: ParserLimits::expanded_size";
    case SourceFault::enciphered_length:
    case SourceFault::enciphered_block:
        return text_of_enciphered(failure, has_key);
    case SourceFault::include_left_open:
        return "no closing quote after #include; the rest of the file is not read";
    case SourceFault::unreadable:
    case SourceFault::no_version:
        break;
    }
    return "'" + name + "' cannot be read";
}

std::string grouped_number(core_uint64 number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, 1, ',');
    }
    return text;
}

std::string too_large_text(std::string_view name, core_uint64 size, core_uint64 most) {
    const std::string limit = grouped_number(most);
    return std::string(name) + " is too large: " + (size == 0 ? "more than " + limit : grouped_number(size)) +
           " bytes, " +
           (most < CoreString::max_length ? "ParserLimits::source_size leaves " + limit
                                          : "at most " + limit + " can be read");
}

std::string cut_off_text(std::string_view name, core_uint64 announced, core_uint64 present) {
    return std::string(name) + " is cut off: " + grouped_number(announced) + " bytes announced, " +
           grouped_number(present) + " present";
}

std::string rest_text(std::string_view name, core_uint64 count) {
    return grouped_number(count) + (count == 1 ? " byte" : " bytes") + " after the end of " +
           std::string(name) + (count == 1 ? " is" : " are") + " not read";
}

std::string why_no_text(std::string_view bytes) {
    switch (form_of(bytes)) {
    case Form::binary:
        return "is a binary document; only texts can be included";
    case Form::archive:
        return "is an archive; only texts can be included";
    default:
        break;
    }
    const std::string_view kind = foreign_kind(bytes);
    return kind.empty() ? std::string() : "is " + std::string(kind) + ", not a document";
}

} // namespace bk_parser
