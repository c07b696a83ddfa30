#include "document/load/loader_impl.h"

#include "core/sys_device.h"

#include "core/files/sys_filesystem_impl.h"
#include "document/load/entry_places_impl.h"
#include "document/load/failure_text_impl.h"
#include "document/load/form_impl.h"
#include "document/load/source_loader_impl.h"
#include "document/problems/values/parse_checked_impl.h"
#include "document/sources/byte_hash_impl.h"
#include "document/sources/file_bytes_impl.h"
#include "document/sources/path_text_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/files/parser_file_preprocess_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

constexpr Meter::Range all{};
// The part of a text's range that parsing takes; the rest is for checks of the files.
constexpr double parsing_share = 0.88;
// Reading comes first. Then the places of the problems are looked up.
constexpr Meter::Range reading = all.part(0, 0.97);
constexpr Meter::Range locating = all.part(0.97, 1);

bool is_called_json(std::string_view name) noexcept {
    constexpr std::string_view ending = ".json";
    return name.size() > ending.size() &&
           std::equal(
               ending.begin(), ending.end(), name.end() - static_cast<std::ptrdiff_t>(ending.size()),
               [](char small, char any) { return any == small || (small != '.' && (any | 0x20) == small); });
}

} // namespace

Loader::Loader(const LoadOptions& options)
    : options_(options), meter_(options.progress), state_(std::make_unique<DocumentState>()),
      problems_(sources_, options.allow,
                std::min<std::size_t>(ProblemList::most_told, options.limits.message_count)) {
    state_->search = options.search;
    state_->beside = options.beside;
    state_->working_folder = options.working_folder;
    state_->follow_includes = options.follow_includes;
    state_->key = options.key;
    state_->limits = options.limits;
}

LoadResult Loader::load(const std::filesystem::path& path) {
    meter_.begin();
    name_ = path_text(path);
    state_->path = path;
    path_ = bk::opened_path(CoreString(std::string_view(name_))).get_view();
    state_->absolute = path_of_text(path_);
    const core_uint64 most = std::min<core_uint64>(CoreString::max_length, options_.limits.source_size);
    FileBytes file = read_file(name_, most, reading.part(0, 0.1), meter_);
    if (!file.reason.empty()) {
        refuse(codes::unreadable, (name_.empty() ? "''" : name_) + ": " + file.reason);
    } else if (file.is_too_large) {
        refuse_too_large(file, most);
    } else if (file.bytes.is_empty() && !options_.key.empty() && lost_ == nullptr) {
        refuse(codes::cut_off, name_ + " is cut off: it has no bytes, and a key is given for it");
    } else {
        const bool is_enciphered = form_of(file.bytes.get_view()) == Form::enciphered;
        state_->files.push_back({path_, file.bytes.get_length(), file.hash, is_enciphered});
        if (lost_ == nullptr) {
            facts_ = file.facts;
        }
        read_any(std::move(file.bytes), reading.part(0.1, 1));
    }
    return finish();
}

LoadResult Loader::parse(std::string_view text) {
    meter_.begin();
    const core_uint64 most = std::min<core_uint64>(CoreString::max_length, options_.limits.source_size);
    if (text.size() > most) {
        refuse(codes::too_large, too_large_text("the text", text.size(), most));
    } else {
        if (options_.keep_sources) {
            state_->memory_text = text;
            state_->files.push_back(
                {path_, text.size(), ByteHash::of(text), form_of(text) == Form::enciphered});
        }
        read_any(CoreString(text), reading);
    }
    return finish();
}

void Loader::read_any(CoreString&& bytes, const Meter::Range& range) {
    state_->form = lost_ == nullptr ? form_of(bytes.get_view()) : likely_form_of(bytes.get_view());
    state_->document_files.push_back({state_->path, state_->absolute, bytes.get_length(), 0, 0});
    if (lost_ != nullptr && state_->form != Form::text) {
        salvage(std::move(bytes), range);
        take_version_entry();
        return;
    }
    switch (state_->form) {
    case Form::binary:
        read_binary(bytes.get_view(), range);
        break;
    case Form::archive:
        read_archive(bytes.get_view(), range);
        break;
    case Form::enciphered:
    case Form::text:
        read_text(std::move(bytes), range);
        break;
    }
    if (state_->form != Form::text) {
        take_version_entry();
    }
}

void Loader::read_text(CoreString&& bytes, const Meter::Range& range) {
    std::string_view kind = state_->form == Form::text ? foreign_kind(bytes.get_view()) : std::string_view();
    if (kind.empty() && is_called_json(name_) && is_json_value(bytes.get_view())) {
        kind = "JSON";
    }
    if (!kind.empty()) {
        refuse(codes::not_a_document, shown_name() + " is " + std::string(kind) + ", not a document");
        return;
    }
    const CoreVector<CoreString> folders = search_folders();
    const CoreString key{std::string_view(options_.key)};
    SourceLoader host(*state_, sources_, problems_, meter_, range.part(0, 0.2), facts_);
    const bool is_file = !path_.empty();
    bk::Preprocessor preprocessor(folders, key, host, options_.limits,
                                  {options_.beside && is_file, options_.working_folder || !is_file, true,
                                   bk::pace_step, options_.follow_includes, true});
    CoreString text;
    const double version = preprocessor.run(CoreString(std::string_view(name_)),
                                            CoreString(std::string_view(path_)), std::move(bytes), text);
    expanded_ = std::move(text);
    for (const CoreString& path : preprocessor.included_paths()) {
        state_->dependencies.push_back(path_of_text(path.get_view()));
    }
    state_->has_hidden_comments = state_->form == Form::enciphered && has_comments();
    state_->version = CoreVersion(version > 0 && !lacks_version_ ? version : bk::written_version);
    if (preprocessor.is_ended()) {
        state_->files.clear();
    }
    if (!sources_.is_empty()) {
        parse_text(expanded_.get_view(), range.part(0.2, 1));
    }
    if (preprocessor.is_ended()) {
        problems_.forget(codes::group_left_open); // they are not: the text was not read to its end
    }
}

/// Comments and directives are between the pieces that became part of the expanded text.
bool Loader::has_comments() const {
    if (sources_.is_empty()) {
        return false;
    }
    const std::string_view text = sources_.get_files().front()->text.get_text();
    std::size_t end = 0;
    for (const SourceMap::Piece& piece : sources_.get_pieces()) {
        if (piece.inclusion == 0) {
            if (text.substr(end, piece.offset - end).starts_with("//")) {
                return true;
            }
            end = std::size_t{piece.offset} + piece.length;
        }
    }
    return text.substr(std::min(end, text.size())).starts_with("//");
}

void Loader::parse_text(std::string_view text, const Meter::Range& range) {
    state_->expanded_size = text.size();
    meter_.start(range.part(0, parsing_share), text.size());
    state_->unread_words = parse_checked(*state_->root, text, bk::has_escapes(state_->version), sources_,
                                         options_.limits, problems_, {meter_, range.part(parsing_share, 1)});
}

/// Tests first whether the file is a document, so that a foreign file is reported as such even when it is too large.
void Loader::refuse_too_large(const FileBytes& file, core_uint64 most) {
    const std::string_view kind = foreign_kind(file.bytes.get_view());
    if (form_of(file.bytes.get_view()) == Form::text && !kind.empty()) {
        refuse(codes::not_a_document, name_ + " is " + std::string(kind) + ", not a document");
    } else {
        refuse(codes::too_large, too_large_text(name_, file.size, most));
    }
}

/// A problem of the whole document.
void Loader::tell_whole(std::string_view code, std::string message) {
    problems_.add(Severity::error, code, std::move(message), state_->path);
}

/// Reports a problem of a document that cannot be read. The document stays empty.
void Loader::refuse(std::string_view code, std::string message) {
    tell_whole(code, std::move(message));
    state_->files.clear();
}

std::string Loader::shown_name() const {
    return name_.empty() ? "the document" : name_;
}

/// Takes the version's entry off the root: the forms without a version line have it, and it is no part of the content. A save puts it
/// back.
void Loader::take_version_entry() {
    const CoreString name(bk::version_keyword);
    const CoreVector<ParserEntry*>& entries = state_->root->get_entries();
    unsigned int count = 0;
    for (unsigned int i = 0; i < entries.get_count(); ++i) {
        if (entries[i]->get_name() == name && ++count == 1) {
            state_->version_entry = i;
        }
    }
    if (count == 0) {
        return;
    }
    if (state_->form != Form::enciphered) {
        state_->kept_version = std::make_unique<ParserEntry>(*entries[*state_->version_entry]);
    }
    state_->root->remove_entry(name);
    if (count > 1) {
        state_->unread_words.push_back(shown_name() + " states its version more than once");
    }
}

/// The last folder is empty, so that an include's name is tried unchanged. A text in memory gets no such folder, and so cannot
/// reach files elsewhere.
CoreVector<CoreString> Loader::search_folders() const {
    CoreVector<CoreString> folders;
    for (const std::filesystem::path& folder : options_.search) {
        folders.add(CoreString(std::string_view(path_text(folder))));
    }
    if (!path_.empty()) {
        folders.add(CoreString());
    }
    return folders;
}

/// A document that does not exist has lost nothing.
void Loader::note_unread() {
    state_->lost = problems_.unread_parts();
    state_->left_out = problems_.unread_includes();
    if (!options_.follow_includes && !state_->includes.empty()) {
        state_->left_out.emplace_back("its includes were not followed");
    }
    const bool is_whole = state_->lost.empty() && state_->left_out.empty();
    if (!is_whole && !name_.empty() && SysDevice::get().inspect(name_).kind == SysPathKind::missing) {
        state_->lost.clear();
        state_->left_out.clear();
    }
    state_->inclusion_count = sources_.get_inclusion_count();
}

LoadResult Loader::finish() {
    note_unread();
    LoadResult result;
    result.problems = problems_.take(locating, meter_);
    if (options_.keep_sources) {
        state_->places = std::make_unique<const EntryPlaces>(std::move(sources_), std::move(expanded_));
    }
    meter_.finish();
    result.document = DocumentState::document(std::move(state_));
    return result;
}

} // namespace bk_parser
