#include "document/load/failure_text_impl.h"
#include "document/load/loader_impl.h"
#include "parser/archive/parser_archive_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/files/parser_document_impl.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace bk_parser {

namespace {

/// Keeps the first damage of binary data.
class DamageKeeper final : public bk::BinaryHost {
public:
    void damaged(const bk::BinaryDamage& damage) override { first = damage; }

    std::optional<bk::BinaryDamage> first;
};

std::string what_is_damaged(const bk::BinaryDamage& damage) {
    using Kind = bk::BinaryDamage::Kind;
    switch (damage.kind) {
    case Kind::group_too_large:
        return "a group of " + grouped_number(damage.announced) + " bytes, " +
               grouped_number(damage.present) + " left";
    case Kind::entry_too_large:
        return "an entry of " + grouped_number(damage.announced) + " bytes, " +
               grouped_number(damage.present) + " left";
    case Kind::size_mismatch:
        return "an entry or a group does not end where its size says";
    case Kind::no_entry_name:
        return "an entry without a name";
    case Kind::open_string:
        return "a string without an end";
    case Kind::open_binary_data:
        return "binary data without an end";
    case Kind::unknown_value:
        return "a value of an unknown kind";
    case Kind::data_end:
    case Kind::nested_too_deeply:
        break;
    }
    return "a value without an end";
}

} // namespace

/// Decodes into the root. Returns the first damage. Sets `end` to the place after the last byte that was read.
std::optional<bk::BinaryDamage> Loader::decode_binary(std::string_view bytes, const Meter::Range& range,
                                                      core_uint64& end) {
    DamageKeeper keeper;
    bk::BinaryDecoder decoder(bytes, bk::binary_tag.size(), options_.limits.nesting_depth);
    decoder.be_strict(keeper);
    decoder.set_pace(meter_);
    meter_.start(range, bytes.size());
    decoder.read_group(*state_->root);
    meter_.stop(bytes.size());
    end = decoder.position();
    return keeper.first;
}

void Loader::read_binary(std::string_view bytes, const Meter::Range& range) {
    const std::string name = shown_name();
    if (bytes.size() < binary_head_size) {
        refuse(codes::cut_off, cut_off_text(name, binary_head_size, bytes.size()));
        return;
    }
    core_uint64 end = 0;
    const std::optional<bk::BinaryDamage> first = decode_binary(bytes, range, end);
    if (!first) {
        tell_rest(name, bytes.size(), end);
        return;
    }
    const bk::BinaryDamage& damage = *first;
    if (damage.position == binary_head_size && damage.kind == bk::BinaryDamage::Kind::group_too_large) {
        // A size near the largest number is damage, and would wrap.
        const core_uint64 most = ~core_uint64{0} - binary_head_size;
        tell_whole(codes::cut_off,
                   cut_off_text(name, std::min(damage.announced, most) + binary_head_size, bytes.size()));
    } else if (damage.kind == bk::BinaryDamage::Kind::nested_too_deeply) {
        tell_whole(codes::nested_too_deeply,
                   name + ": groups nest too deeply at byte " + grouped_number(damage.position) +
                       ", and what follows is not read: ParserLimits::nesting_depth");
    } else {
        tell_whole(codes::damaged, name + " is damaged at byte " + grouped_number(damage.position) + ": " +
                                       what_is_damaged(damage) + "; what follows is not read");
    }
}

void Loader::read_archive(std::string_view bytes, const Meter::Range& range) {
    const std::string name = shown_name();
    ParserArchive archive;
    meter_.start(range.part(0, 0.2), bytes.size());
    const bk::ArchiveTaken taken = bk::take_archive(bytes, archive, true, &meter_);
    meter_.stop(bytes.size());
    switch (taken.result) {
    case bk::ArchiveBytes::whole:
        tell_rest(name, bytes.size(), taken.size);
        break;
    case bk::ArchiveBytes::cut_in_head:
    case bk::ArchiveBytes::cut_in_indices:
        tell_whole(codes::cut_off, cut_off_text(name, taken.size, bytes.size()));
        break;
    case bk::ArchiveBytes::unknown_format:
    case bk::ArchiveBytes::cut_in_strings:
        tell_whole(codes::cut_off, name + " is cut off: it ends inside its list of words");
        break;
    }
    tell_nameless(name, archive);
    if (read_archive_text(std::move(archive), name, range) && taken.result != bk::ArchiveBytes::whole) {
        forget_faults_of_a_cut();
    }
}

/// False when the text would pass the limits.
bool Loader::read_archive_text(ParserArchive&& archive, const std::string& name, const Meter::Range& range) {
    if (!bk::is_text_within(archive, options_.limits)) {
        refuse(codes::too_large, name + " is too large: its text would have " +
                                     grouped_number(bk::archive_text_size(archive)) +
                                     " bytes: ParserLimits::archive_ratio and archive_size");
        return false;
    }
    meter_.start(range.part(0.2, 0.3), static_cast<std::size_t>(bk::archive_text_size(archive)));
    CoreString text = bk::join_words(archive, &meter_, lost_ == nullptr ? ' ' : '\n');
    archive = ParserArchive();
    meter_.stop(text.get_length());
    read_words(std::move(text), range.part(0.3, 1));
    return true;
}

/// For an archive whose words are cut off: the last entry may be incomplete, which is no fault of the text.
void Loader::forget_faults_of_a_cut() {
    for (const std::string_view code : {codes::group_left_open, codes::no_value, codes::unquoted_string,
                                        codes::arguments_left_open, codes::array_count}) {
        problems_.forget(code);
    }
}

/// The places of problems count in the text that the words make.
void Loader::read_words(CoreString&& text, const Meter::Range& range) {
    sources_.enter({name_, {}}, path_, {});
    sources_.copy(0, text.get_length(), 0);
    sources_.leave(std::move(text));
    parse_text(sources_.get_files().front()->text.get_text(), range);
    for (const std::string_view code : {codes::nul_byte, codes::not_utf_8}) {
        problems_.forget(code); // an archive holds any bytes in its strings
    }
}

/// Words that name no string are left out.
void Loader::tell_nameless(const std::string& name, const ParserArchive& archive) {
    core_uint64 count = 0;
    for (const unsigned int index : archive.indices) {
        count += index >= archive.strings.get_count() ? 1 : 0;
    }
    if (count != 0) {
        tell_whole(codes::damaged, name + " is damaged: " + grouped_number(count) +
                                       (count == 1 ? " word is" : " words are") +
                                       " left out, because its list of words has no such number");
    }
}

void Loader::tell_rest(const std::string& name, core_uint64 present, core_uint64 used) {
    if (used < present) {
        tell_whole(codes::bytes_after_end, rest_text(name, present - used));
    }
}

} // namespace bk_parser
