#include "parser/files/parser_file_preprocess_impl.h"

#include "core/files/sys_filesystem_impl.h"
#include "core/files/sys_path_impl.h"
#include "core/numbers/core_number_impl.h"
#include "parser/cipher/parser_cipher_impl.h"

#include <algorithm>

namespace bk {

namespace {

constexpr core_uint64 max_file_size = CoreString::max_length;
constexpr double failed = 0.0;

} // namespace

Preprocessor::Preprocessor(const CoreVector<CoreString>& search_paths, const CoreString& key,
                           SourceHost& host, const ParserLimits& limits, IncludeRules rules)
    : search_paths_(search_paths), key_(key), host_(host), limits_(limits), rules_(rules) {}

double Preprocessor::run(const CoreString& name, Progress progress, CoreString& text) {
    out_ = &text;
    return enter(name, progress) ? finish(progress) : failed;
}

double Preprocessor::run(const CoreString& name, const CoreString& path, CoreString&& bytes,
                         CoreString& text) {
    out_ = &text;
    top_path_ = path;
    Place place{name, name, path};
    Source source{std::move(bytes), false};
    if (is_too_large(place, source.text.get_length()) ||
        (source.text.get_view().starts_with(cipher_magic) && !decipher_source(place, source))) {
        return failed;
    }
    open(std::move(place), std::move(source), Progress(nullptr));
    return finish(Progress(nullptr));
}

double Preprocessor::finish(Progress progress) {
    const double version = within_task(
        progress, [&] { return scan(progress); }, 0.7F);
    while (!open_files_.empty()) { // the last read failed
        leave();
    }
    return version;
}

/// When an exception ends the read, also tells the host of each open file that it is left. Drops what the host throws then, so that the
/// first exception stays. The text may be gone by then.
Preprocessor::~Preprocessor() {
    shown_ = {};
    while (!open_files_.empty()) {
        try {
            leave();
        } catch (...) {
            continue;
        }
    }
}

/// Opens a file, inside those that are open.
bool Preprocessor::enter(const CoreString& name, Progress progress) {
    Place place{name, {}, {}};
    Source source;
    if (!find(place) || !may_open(place) || !load(place, source, progress)) {
        return false;
    }
    open(std::move(place), std::move(source), progress);
    return true;
}

void Preprocessor::open(Place&& place, Source&& source, Progress progress) {
    OpenFile& file = open_files_.emplace_back(std::move(place), std::move(source), progress);
    open_paths_.insert(file.place.path.get_view());
    file.scanner.set_longest_piece(rules_.longest_piece);
    if (file.source.is_encrypted && open_files_.size() == 1) {
        file.scanner.keep_later_version_lines(); // the entry that writing put there
    }
    host_.entered({file.place.name, file.place.found, file.place.path, file.source.text,
                   file.source.is_encrypted, file.source.rest, tried_});
    file.is_told = true;
}

/// Closes the innermost file; the result is its version.
double Preprocessor::leave() {
    if (open_files_.size() == 1 && !shown_.empty()) {
        finish_shown();
    }
    OpenFile& file = open_files_.back();
    const double version = file.version;
    if (std::exchange(file.is_told, false)) {
        host_.left(std::move(file.source.text));
    }
    open_paths_.erase(file.place.path.get_view());
    open_files_.pop_back();
    return version;
}

bool Preprocessor::find(Place& place) {
    tried_.clear();
    if (rules_.searches_beside && !open_files_.empty()) {
        const std::string_view beside =
            folder_of(open_files_.back().place.found.get_view(), native_path_style);
        if (find_at(CoreString(beside), place)) {
            return true;
        }
    }
    const bool takes_as_it_stands = open_files_.empty() || rules_.searches_working_folder ||
                                    is_absolute_path(place.name.get_view(), native_path_style);
    for (const CoreString& folder : search_paths_) {
        if (folder.is_empty() && !takes_as_it_stands) {
            continue;
        }
        if (find_at(folder, place)) {
            return true;
        }
    }
    return fail(SourceFault::not_found, place);
}

bool Preprocessor::find_at(const CoreString& folder, Place& place) {
    CoreString candidate(folder);
    if (!folder.is_empty() && folder.get_view().back() != '/') {
        candidate += '/';
    }
    candidate += place.name;
    // A document may be a pipe, which a shell makes. An include may not: reading it could wait for ever.
    if (!(open_files_.empty() ? is_file(candidate.get_view()) : is_regular_file(candidate.get_view()))) {
        tried_.push_back(open_files_.empty() ? std::move(candidate) : path_without_steps_back(candidate));
        return false;
    }
    place.path = opened_path(candidate);
    place.found = open_files_.empty() ? std::move(candidate) : path_without_steps_back(candidate);
    if (open_files_.empty()) {
        top_path_ = place.path;
    } else if (!(place.path == top_path_)) {
        included_paths_.add(place.path);
    }
    return true;
}

bool Preprocessor::may_open(const Place& place) {
    if (open_paths_.contains(place.path.get_view())) {
        return fail(SourceFault::includes_itself, place);
    }
    if (open_files_.size() > limits_.include_depth) {
        return fail(SourceFault::included_too_deeply, place);
    }
    return rules_.goes_on || may_include(place); // with `goes_on`, `include` has asked already
}

bool Preprocessor::may_include(const Place& place) {
    if (open_files_.empty() || include_count_++ < limits_.include_count) {
        return true;
    }
    is_ended_ = true;
    return fail(SourceFault::too_many_includes, place);
}

bool Preprocessor::is_too_large(const Place& place, core_uint64 size) {
    if (size > max_file_size || size > limits_.source_size - source_size_) {
        is_ended_ = true;
        return !fail(SourceFault::file_too_large, place);
    }
    source_size_ += size;
    return false;
}

bool Preprocessor::load(const Place& place, Source& source, Progress progress) {
    const core_uint64 most = std::min<core_uint64>(max_file_size, limits_.source_size - source_size_);
    const SourceRead read = host_.read(place.path, most, source.text);
    if (read == SourceRead::unreadable) {
        return fail(SourceFault::unreadable, place);
    }
    if (read == SourceRead::too_large) {
        is_ended_ = true;
        return fail(SourceFault::file_too_large, place);
    }
    source_size_ += source.text.get_length();
    if (source.text.get_length() > cipher_magic.size()) {
        progress.set_value(0.3F);
        if (source.text.get_view().starts_with(cipher_magic)) {
            return decipher_source(place, source);
        }
    }
    if (!host_.read_as_text(place.path, source.text)) {
        return fail(SourceFault::unreadable, place);
    }
    progress.set_value(0.3F);
    note_storage(false);
    return true;
}

bool Preprocessor::decipher_source(const Place& place, Source& source) {
    const std::string_view block = source.text.get_view().substr(cipher_magic.size());
    const core_uint64 length = announced_cipher_length(block, key_.get_view());
    if (static_cast<std::uint32_t>(length) >= source.text.get_length()) {
        return fail(SourceFault::enciphered_length, place, {}, length, block.size());
    }
    CoreString text;
    if (!decipher(block, key_.get_view(), text) || !host_.accepts_deciphered(text)) {
        return fail(SourceFault::enciphered_block, place, {}, length, block.size());
    }
    source.rest = block.size() - std::min<core_uint64>(block.size(), cipher_block_size(text.get_length()));
    source.text = std::move(text);
    source.is_encrypted = true;
    note_storage(true);
    return true;
}

void Preprocessor::note_storage(bool is_encrypted) noexcept {
    if (!has_loaded_) {
        has_loaded_ = true;
        is_encrypted_ = is_encrypted;
    }
}

/// Scans the innermost open file, until the outermost one has ended.
double Preprocessor::scan(Progress progress) {
    progress.set_step_count(open_files_.back().source.text.get_length());
    double version = failed;
    while (!open_files_.empty()) {
        OpenFile& file = open_files_.back();
        const SourcePiece piece = file.scanner.next();
        if (!append_piece(file, piece)) {
            return failed;
        }
        bool is_had = true;
        switch (piece.then) {
        case SourcePiece::Then::end:
            is_had = end_file(version);
            break;
        case SourcePiece::Then::version:
            file.version = text_to_double(piece.argument).value;
            host_.version_found(piece, file.version);
            break;
        case SourcePiece::Then::include:
            is_had = include(piece);
            break;
        case SourcePiece::Then::open_include:
            is_had = fail(SourceFault::include_left_open, file.place, piece);
            break;
        case SourcePiece::Then::comment:
        case SourcePiece::Then::pause:
            break;
        }
        if (!is_had && (!rules_.goes_on || is_ended_)) {
            return failed;
        }
    }
    return version;
}

/// Returns false when the file's version line makes the read fail.
bool Preprocessor::end_file(double& version) {
    const OpenFile& file = open_files_.back();
    const bool is_good = file.version != failed || fail(SourceFault::no_version, file.place);
    version = leave();
    return is_good;
}

bool Preprocessor::append_piece(const OpenFile& file, const SourcePiece& piece) {
    if (!piece.text.empty()) {
        host_.copied(piece, static_cast<unsigned int>(out_->get_length() + shown_.size()));
    }
    const core_uint64 size = core_uint64{out_->get_length()} + shown_.size() + piece.text.size();
    if (size > limits_.expanded_size || !(show_piece(piece) || (copy_shown() && append(piece.text)))) {
        is_ended_ = true;
        return fail(SourceFault::text_too_large, file.place, piece);
    }
    return true;
}

/// Extends `shown_` by the piece instead of copying it, as long as the text so far is one range of the first file. Returns false when the
/// piece must be appended to a copy.
bool Preprocessor::show_piece(const SourcePiece& piece) noexcept {
    if (!rules_.shows_source || !out_->is_empty() || open_files_.size() != 1) {
        return false;
    }
    if (shown_.empty()) {
        shown_ = piece.text;
        return true;
    }
    if (!piece.text.empty() && shown_.data() + shown_.size() != piece.text.data()) {
        return false;
    }
    shown_ = {shown_.data(), shown_.size() + piece.text.size()};
    return true;
}

bool Preprocessor::copy_shown() {
    return shown_.empty() || append(std::exchange(shown_, {}));
}

/// Called at the end of the first file. Borrows `shown_` when it reaches the end of the file: a NUL follows it, and it keeps its address
/// when the file's text moves to the host. Otherwise copies it.
void Preprocessor::finish_shown() {
    const std::string_view source = open_files_.back().source.text.get_view();
    const bool is_rest = shown_.data() + shown_.size() == source.data() + source.size();
    if (is_rest && shown_.size() > CoreString::inline_capacity) {
        out_->set_borrowed(shown_.data(), static_cast<unsigned int>(shown_.size()));
        shown_ = {};
    } else {
        copy_shown();
    }
}

/// Appends the text. The first time it takes as much room as the first file has, instead of growing by doubling.
bool Preprocessor::append(std::string_view text) {
    if (!out_->append(text)) {
        return false;
    }
    if (!has_room_ && out_->get_length() > CoreString::inline_capacity) {
        has_room_ = true;
        out_->reserve(open_files_.front().source.text.get_length());
    }
    return true;
}

bool Preprocessor::include(const SourcePiece& piece) {
    host_.include_found(piece);
    if (!rules_.follows_includes) {
        return true;
    }
    const CoreString name(piece.argument);
    if (rules_.goes_on && !may_include({name, {}, {}})) { // counts includes that fail, too
        return false;
    }
    return enter(name, Progress(nullptr));
}

/// Tells the host, and returns false.
bool Preprocessor::fail(SourceFault fault, const Place& place, const SourcePiece& piece,
                        core_uint64 announced, core_uint64 present) {
    host_.failed({fault, place.name, place.found, tried_, piece, announced, present});
    return false;
}

} // namespace bk
