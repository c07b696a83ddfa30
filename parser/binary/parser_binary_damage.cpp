#include "core/reports/core_diagnostic_impl.h"
#include "parser/binary/parser_binary_cut_impl.h"
#include "parser/binary/parser_binary_impl.h"

// What the decoder does about damage. With a host it is strict: it reports the first damage to the host and ends. Without a host it
// logs and goes on.

namespace bk {

/// Ends the decoding. Every open group keeps the entries that are whole.
BinaryDecoder::Step BinaryDecoder::stop_at_depth() {
    if (!damage(BinaryDamage::Kind::nested_too_deeply, cursor_.position())) {
        report_warning("ParserGroup.set_binary: Group is nested too deeply\n");
        is_stopped_ = true;
        cursor_.move_to_end();
    }
    return Step::failed;
}

/// Returns false when this decoder is not strict. Otherwise ends the decoding, and tells the host only of the first damage.
bool BinaryDecoder::damage(BinaryDamage::Kind kind, core_uint64 position, core_uint64 announced,
                           core_uint64 present) {
    if (host_ == nullptr) {
        return false;
    }
    if (!is_told_) {
        is_told_ = true;
        host_->damaged({kind, position, announced, present});
    }
    is_stopped_ = true;
    cursor_.move_to_end();
    return true;
}

/// Whether a strict decoder read a value that ends beyond the data.
bool BinaryDecoder::is_past_end() {
    return cursor_.position() > data_.size() && damage(BinaryDamage::Kind::data_end, data_.size());
}

/// Whether an entry or group ends at `end`. A decoder that is not strict does not ask.
bool BinaryDecoder::ends_at(core_uint64 end) {
    return is_stopped_ || cursor_.position() == end || !damage(BinaryDamage::Kind::size_mismatch, end);
}

/// Called for a group that is larger than the rest of the data. A strict decoder takes the rest when the document is cut off.
bool BinaryDecoder::take_rest_of_cut_group(core_uint64 size) {
    const core_uint64 start = cursor_.position();
    const core_uint64 present = cursor_.rest().size();
    if (host_ != nullptr && (levels_.empty() || is_cut_) && start <= data_.size()) {
        is_cut_ = true;
        if (!is_told_) {
            is_told_ = true;
            host_->damaged({BinaryDamage::Kind::group_too_large, start, size, present});
        }
        return true;
    }
    if (!damage(BinaryDamage::Kind::group_too_large, start, size, present)) {
        report_warning("ParserGroup.set_binary: ParserGroup size larger than the given data\n");
    }
    return false;
}

/// For a strict decoder: whether the entry lies in the data whole, or is the one in which the document is cut off.
bool BinaryDecoder::may_hold_entry(Level& level, core_uint64 size) {
    const core_uint64 start = cursor_.position();
    const core_uint64 present = cursor_.rest().size();
    level.is_cut = false;
    if (start <= data_.size() && size <= present) {
        return true;
    }
    level.is_cut = is_cut_ && start < data_.size();
    return level.is_cut || !damage(BinaryDamage::Kind::entry_too_large, start, size, present);
}

/// Whether an entry may be kept at its end. The entry in which a document is cut off may be kept when its last value is a group,
/// which has its whole entries.
bool BinaryDecoder::ends_well(const Level& level) {
    if (!level.is_cut) {
        return ends_at(level.entry_end);
    }
    const bool ends_with_group =
        pending_.size() > level.first_value && pending_.back().type == ParserValue::TYPE_GROUP;
    return ends_with_group || !damage(BinaryDamage::Kind::data_end, data_.size());
}

BinaryDecoder::Step BinaryDecoder::fail_at_name(core_uint64 start) {
    if (!damage(BinaryDamage::Kind::no_entry_name, start)) {
        report_warning("ParserGroup.set_binary: Failed to read entry name\n");
    }
    return Step::failed;
}

std::string_view BinaryDecoder::take_text() {
    if (host_ == nullptr) {
        return take_string(cursor_);
    }
    const core_uint64 start = cursor_.position();
    std::string_view text;
    if (!cut_string(cursor_, text)) {
        damage(BinaryDamage::Kind::open_string, start);
    }
    return text;
}

std::string_view BinaryDecoder::take_bytes() {
    if (host_ == nullptr) {
        return take_binary_data(cursor_);
    }
    const core_uint64 start = cursor_.position();
    std::string_view bytes;
    if (!cut_binary_data(cursor_, bytes)) {
        damage(BinaryDamage::Kind::open_binary_data, start);
    }
    return bytes;
}

/// Whether the progress of reading an entry is not watched, or the entry is small.
bool BinaryDecoder::is_paced_as_one(const Level& level) const noexcept {
    return !pace_->is_watched() || level.entry_end - cursor_.position() <= pace_step ||
           level.entry_end < cursor_.position();
}

} // namespace bk
