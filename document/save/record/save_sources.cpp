#include "document/save/record/save_sources_impl.h"

#include "core/sys_device.h"
#include "document/load/failure_text_impl.h"
#include "document/load/form_impl.h"
#include "document/load/meter_impl.h"
#include "document/save/files/same_file_impl.h"
#include "document/sources/byte_hash_impl.h"
#include "document/sources/file_bytes_impl.h"
#include "document/sources/path_text_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/files/parser_file_preprocess_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

CoreVector<CoreString> folders_of(const DocumentState& state) {
    CoreVector<CoreString> folders;
    for (const std::filesystem::path& folder : state.search) {
        folders.add(CoreString(std::string_view(path_text(folder))));
    }
    folders.add(CoreString()); // last, the name as it is spelled
    return folders;
}

} // namespace

const ReadFile* find_file(const std::vector<ReadFile>& files, std::string_view path) noexcept {
    const auto found =
        std::find_if(files.begin(), files.end(), [path](const ReadFile& file) { return file.path == path; });
    return found == files.end() ? nullptr : &*found;
}

SaveSources::SaveSources(const DocumentState& state, const NewBytes& replaced) : state_(state) {
    for (const auto& [path, bytes] : replaced) {
        replace(path, bytes);
    }
}

void SaveSources::replace(const std::string& path, std::string_view bytes) {
    replaced_.emplace(path, bytes);
    replaced_.emplace(real_path(path), bytes);
}

bool SaveSources::is_enciphered(std::string_view path) const noexcept {
    const ReadFile* const file = find_file(files_, path);
    return file != nullptr && file->is_enciphered;
}

std::string SaveSources::place_of(std::size_t expanded) const {
    const Spot spot = map_.find(expanded, 1);
    const SourceFile& file = map_.file_of(spot);
    const std::string_view before = file.text.get_text().substr(0, spot.offset);
    return file.path + ":" + std::to_string(1 + std::count(before.begin(), before.end(), '\n'));
}

bool SaveSources::read(const std::string& path) {
    CoreString bytes;
    if (!load(path, bytes)) {
        return false;
    }
    const CoreVector<CoreString> folders = folders_of(state_);
    const CoreString key{std::string_view(state_.key)};
    const CoreString name{std::string_view(path)};
    bk::Preprocessor preprocessor(folders, key, *this, state_.limits,
                                  {state_.beside, state_.working_folder || path.empty(), true,
                                   std::string_view::npos, state_.follow_includes, true});
    version_ = preprocessor.run(name, name, std::move(bytes), text_);
    version_ = version_ > 0 ? version_ : bk::written_version; // as in a load
    if (!reason_.empty()) {
        return false;
    }
    if (preprocessor.is_ended()) {
        reason_ = path + ": too large to be read again";
        return false;
    }
    for (const CoreString& included : preprocessor.included_paths()) {
        included_.emplace_back(included.get_view());
    }
    return check_all_read(path);
}

/// Reads every file of the document again.
bool SaveSources::check_all_read(const std::string& path) {
    for (std::size_t i = 1; i < state_.files.size(); ++i) {
        if (find_file(files_, state_.files[i].path) == nullptr) {
            reason_ = state_.files[i].path + (replaced_.empty()
                                                  ? ": is not found by the includes of " + path + " any more"
                                                  : ": would not be included by " + path +
                                                        ", as an entry around its include is laid out anew, "
                                                        "or it is not found from there");
            return false;
        }
    }
    return true;
}

/// Skips the includes that failed when the document was loaded.
bk::SourceRead SaveSources::read(const CoreString& path, core_uint64, CoreString& bytes) {
    const std::string name(path.get_view());
    if (find_file(state_.files, name) != nullptr) {
        return load(name, bytes) ? bk::SourceRead::done : bk::SourceRead::unreadable;
    }
    if (can_be_read(name)) {
        reason_ = name + ": would be included, and was not when the document was loaded";
    }
    return bk::SourceRead::unreadable;
}

/// Searches in the same places as a load.
bool SaveSources::can_be_read(const std::string& path) const {
    const std::function<bool(double)> nobody;
    Meter meter(nobody);
    const FileBytes now = read_file(path, CoreString::max_length, {}, meter);
    return now.reason.empty() && !now.is_too_large &&
           (form_of(now.bytes.get_view()) == Form::enciphered || why_no_text(now.bytes.get_view()).empty());
}

/// Notes an include that only the working folder provides: the last place of the search is the name as it is spelled.
void SaveSources::entered(const bk::SourceEntered& file) {
    if (!map_.is_empty() && file.found == file.name && path_of_text(file.name.get_view()).is_relative()) {
        std::string what =
            "the include '" + std::string(file.name.get_view()) + "' is found from the working folder alone";
        if (std::find(from_working_folder_.begin(), from_working_folder_.end(), what) ==
            from_working_folder_.end()) {
            from_working_folder_.push_back(std::move(what));
        }
    }
    map_.enter({}, file.path.get_view(), directive_);
}

void SaveSources::include_found(const bk::SourcePiece& piece) {
    directive_ = map_.here(piece.directive_offset, piece.directive_length);
    if (!state_.follow_includes) {
        left_out_.push_back(directive_);
    }
}

/// Ignores errors in a file's text, which leave no file out.
void SaveSources::failed(const bk::SourceFailure& failure) {
    if (failure.fault != bk::SourceFault::no_version && failure.fault != bk::SourceFault::include_left_open &&
        !map_.is_empty()) {
        left_out_.push_back(directive_);
    }
}

bool SaveSources::load(const std::string& path, CoreString& bytes) {
    ReadFile file{path, 0, 0, false};
    auto replaced = replaced_.find(path);
    if (replaced == replaced_.end() && !replaced_.empty()) {
        replaced = replaced_.find(real_path(path));
    }
    if (replaced != replaced_.end()) {
        bytes.set_borrowed(replaced->second.data(), static_cast<unsigned int>(replaced->second.size()));
        const Form form = form_of(bytes.get_view());
        if (form != Form::enciphered && (form != Form::text || !foreign_kind(bytes.get_view()).empty())) {
            reason_ = path + ": would not be taken for a text any more";
            return false;
        }
        file.size = bytes.get_length();
        file.hash = find_file(files_, path) == nullptr ? ByteHash::of(bytes.get_view()) : 0;
    } else if (!load_stored(path, bytes, file)) {
        return false;
    }
    file.is_enciphered = form_of(bytes.get_view()) == Form::enciphered;
    if (find_file(files_, path) == nullptr) {
        files_.push_back(std::move(file));
    }
    return true;
}

bool SaveSources::load_stored(const std::string& path, CoreString& bytes, ReadFile& file) {
    const std::function<bool(double)> nobody;
    Meter meter(nobody);
    FileBytes stored = read_file(path, CoreString::max_length, {}, meter);
    if (!stored.reason.empty()) {
        const bool is_gone = SysDevice::get().inspect(path).kind == SysPathKind::missing;
        reason_ = path + (is_gone ? ": is not there any more: it was deleted or renamed since it was loaded"
                                  : ": cannot be read again: " + stored.reason);
        return false;
    }
    const ReadFile* const then = find_file(state_.files, path);
    file.size = stored.bytes.get_length();
    file.hash = stored.hash;
    if (then == nullptr || stored.is_too_large || then->size != file.size || then->hash != file.hash) {
        reason_ = path + ": has changed on the disk since it was loaded";
        return false;
    }
    bytes = std::move(stored.bytes);
    return true;
}

bool SaveSources::accepts_deciphered(const CoreString& text) {
    return foreign_kind(text.get_view()).empty();
}

} // namespace bk_parser
