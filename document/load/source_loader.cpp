#include "document/load/source_loader_impl.h"

#include "core/files/sys_filesystem_impl.h"
#include "document/load/failure_text_impl.h"
#include "document/load/form_impl.h"
#include "document/sources/file_bytes_impl.h"
#include "document/sources/path_text_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

constexpr double reading_share = 0.3; // of what a file costs before it is parsed

bool ends_word(char character) noexcept {
    return bk::is_char(character, bk::CHAR_BLANK | bk::CHAR_DELIMITER);
}

double fraction(std::size_t part, std::size_t whole) noexcept {
    return whole == 0 ? 1.0 : static_cast<double>(part) / static_cast<double>(whole);
}

} // namespace

bk::SourceRead SourceLoader::read(const CoreString& path, core_uint64 most, CoreString& bytes) {
    std::string name(path.get_view());
    FileBytes file = read_file(name, most, range_.part(0, reading_share), meter_);
    range_ = range_.part(reading_share, 1);
    const bool is_text = form_of(file.bytes.get_view()) == Form::text;
    if (file.is_too_large && (!is_text || foreign_kind(file.bytes.get_view()).empty())) {
        size_ = file.size;
        most_ = most;
        return bk::SourceRead::too_large;
    }
    reason_ = std::move(file.reason);
    reason_code_ = codes::unreadable;
    if (reason_.empty() && form_of(file.bytes.get_view()) != Form::enciphered) {
        reason_ = why_no_text(file.bytes.get_view());
        reason_code_ = codes::not_a_document;
    }
    if (!reason_.empty()) {
        return bk::SourceRead::unreadable;
    }
    if (read_paths_.insert(name).second) {
        const bool is_enciphered = form_of(file.bytes.get_view()) == Form::enciphered;
        state_.files.push_back({std::move(name), file.bytes.get_length(), file.hash, is_enciphered});
    }
    includes_.read(file.bytes.get_length());
    facts_ = file.facts;
    bytes = std::move(file.bytes);
    return bk::SourceRead::done;
}

bool SourceLoader::read_as_text(const CoreString&, CoreString&) {
    return true; // no translation: places count in the bytes of the file, so its line ends stay
}

bool SourceLoader::accepts_deciphered(const CoreString& text) {
    return foreign_kind(text.get_view()).empty();
}

void SourceLoader::failed(const bk::SourceFailure& failure) {
    using bk::SourceFault;
    switch (failure.fault) {
    case SourceFault::no_version: // version_found reports it
        return;
    case SourceFault::include_left_open:
        problems_.add(Severity::error, codes::include_left_open, failure_text(failure, has_key_),
                      sources_.here(failure.piece.directive_offset, failure.piece.directive_length));
        return;
    case SourceFault::text_too_large:
        problems_.add(Severity::error, codes::too_large, failure_text(failure, has_key_),
                      sources_.here(failure.piece.offset, 0));
        return;
    case SourceFault::unreadable:
        includes_.failed(failure, reason_code_);
        tell(reason_code_, std::string(failure.found.get_view()) + ": " + reason_);
        break;
    case SourceFault::includes_itself:
        includes_.failed(failure, codes::include_circle);
        tell(codes::include_circle, failure_text(failure, has_key_) + circle_text(failure));
        break;
    case SourceFault::file_too_large:
        tell(codes::too_large,
             too_large_text("'" + std::string(failure.name.get_view()) + "'", size_, most_));
        break;
    default:
        includes_.failed(failure, failure_code(failure, has_key_));
        tell(failure_code(failure, has_key_), failure_text(failure, has_key_));
        break;
    }
    resume();
}

/// ": a.bkd includes b.bkd, which includes a.bkd", of a circle through other files.
std::string SourceLoader::circle_text(const bk::SourceFailure& failure) const {
    const CoreString path = bk::opened_path(failure.found);
    std::vector<std::string> chain; // from the innermost file on
    for (std::size_t inclusion = directive_.inclusion;;) {
        const SourceFile& file = sources_.file_of(Spot{inclusion, 0, 0, 0});
        chain.push_back(path_text(path_of_text(file.name.shown).filename()));
        if (inclusion == 0 || file.path == path.get_view()) {
            break;
        }
        inclusion = sources_.inclusion(inclusion).directive.inclusion;
    }
    if (chain.size() < 2) {
        return {};
    }
    constexpr std::size_t most_shown = 8;
    std::string text = ": ";
    for (std::size_t i = chain.size(); i-- > 0;) {
        const std::size_t before = chain.size() - 1 - i;
        if (before == most_shown - 1 && i != 0) {
            text += std::to_string(i) + " more files, then ";
            i = 0;
        }
        text += chain[i] + (before == 0 ? " includes " : ", which includes ");
    }
    return text + chain.back();
}

/// A problem of the file that is asked for: at the directive, or of the document itself.
void SourceLoader::tell(std::string_view code, std::string message) {
    if (sources_.is_empty()) {
        problems_.add(Severity::error, code, std::move(message), state_.path);
        state_.files.clear();
    } else {
        problems_.add(Severity::error, code, std::move(message), directive_);
    }
}

void SourceLoader::include_found(const bk::SourcePiece& piece) {
    sources_.note_directive(piece.directive_offset);
    includes_.found(piece);
    directive_ = sources_.here(piece.directive_offset, piece.directive_length);
    Open& open = open_.back();
    open.done = std::size_t{piece.directive_offset} + piece.directive_length;
    meter_.stop(open.done);
    range_ = open.range.part(fraction(piece.directive_offset, open.size), fraction(open.done, open.size));
    if (!state_.follow_includes) {
        resume(); // no file is entered
    }
}

void SourceLoader::version_found(const bk::SourcePiece& piece, double version) {
    sources_.note_directive(piece.directive_offset);
    if (state_.form == Form::enciphered && open_.size() == 1 && piece.directive_offset == 0) {
        state_.has_version_header = true;
    }
    if (!(version > 0)) {
        // The version of an included file does not count. ParserFile refuses one without any number, but reads one below 0.
        const bool is_lost = open_.size() == 1 || !(version < 0);
        problems_.add(
            is_lost ? Severity::error : Severity::warning, codes::no_version,
            [&] { return "'" + std::string(piece.argument) + "' is no version; the latest is 1.2"; },
            sources_.here(piece.directive_offset, piece.directive_length));
    }
}

/// An enciphered text may state a length that leaves a part of its file out.
void SourceLoader::tell_rest(const bk::SourceEntered& file) {
    std::string message = rest_text(
        file.found.is_empty() ? std::string_view("the document") : file.found.get_view(), file.rest);
    if (sources_.is_empty()) {
        problems_.add(Severity::error, codes::bytes_after_end, std::move(message), state_.path);
    } else {
        problems_.add(Severity::error, codes::bytes_after_end, std::move(message), directive_);
    }
}

void SourceLoader::entered(const bk::SourceEntered& file) {
    if (file.rest != 0) {
        tell_rest(file);
    }
    sources_.enter({std::string(file.found.get_view()), {}}, file.path.get_view(), directive_);
    if (file.is_enciphered) {
        facts_.reset();
    }
    includes_.entered(file, facts_);
    const bool is_clean = facts_ && facts_->are_clean();
    open_.push_back({range_, file.text.get_length(), 0, is_clean});
    facts_.reset();
    resume();
}

void SourceLoader::left(CoreString&& text) {
    const bool is_clean = open_.back().is_clean;
    meter_.stop(open_.back().size);
    open_.pop_back();
    includes_.left();
    sources_.leave(std::move(text), is_clean);
    resume();
}

/// Goes on with the innermost file.
void SourceLoader::resume() {
    if (!open_.empty()) {
        const Open& open = open_.back();
        meter_.start(open.range, open.size, open.done);
    }
}

void SourceLoader::copied(const bk::SourcePiece& piece, unsigned int expanded) {
    const std::string_view text = piece.text;
    const std::size_t end = std::size_t{piece.offset} + text.size();
    if (sources_.copy(piece.offset, text.size(), expanded) && !ends_word(last_) && !ends_word(text.front())) {
        sources_.note_joint();
    }
    last_ = text.back();
    meter_.reach(end);
}

} // namespace bk_parser
