#include "document/problems/files/source_checks_impl.h"

#include "core/core_version.h"
#include "core/numbers/core_number_impl.h"
#include "document/problems/files/line_reader_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/sources/byte_scan_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace bk_parser {

namespace {

constexpr std::string_view blanks = " \t\r\n";

/// Checks one file by its pieces, at the first place where it is included.
class FileChecks {
public:
    FileChecks(std::size_t inclusion, std::size_t expanded, const SourceFile& file, bool has_escapes,
               const Losses& losses, ProblemList& problems)
        : inclusion_(inclusion), text_(file.text.get_text()), has_escapes_(has_escapes), losses_(losses),
          problems_(problems), quotes_(text_), stray_(file.is_clean ? StrayBytes() : find_stray_bytes(text_)),
          has_stray_bytes_(!stray_.are_none()), expanded_(expanded) {}

    std::size_t get_inclusion() const noexcept { return inclusion_; }

    /// Adds the place of a directive. Call it in the order of the file.
    void add_directive(std::uint32_t offset) { directives_.push_back(offset); }

    /// Whether there is nothing to check before the last piece.
    bool is_indifferent() const noexcept {
        return !has_stray_bytes_ && next_directive_ == directives_.size();
    }

    void take_piece(const SourceMap::Piece& piece) {
        if (has_directive_before(piece.offset)) { // else only comments were removed
            take_gap(piece.offset, piece.expanded);
        }
        read_ = std::size_t{piece.offset} + piece.length;
        expanded_ = std::size_t{piece.expanded} + piece.length;
        if (has_stray_bytes_) {
            tell_stray_bytes(piece.offset, piece.expanded, 0);
            tell_stray_bytes(read_, expanded_, piece.length);
        }
    }
    void finish() {
        take_gap(text_.size(), expanded_);
        tell_stray_bytes(text_.size(), expanded_, 0);
    }

private:
    Spot spot(std::size_t offset, std::size_t length, std::size_t expanded) const noexcept {
        return {inclusion_, offset, length, expanded};
    }

    bool has_directive_before(std::uint32_t offset) noexcept {
        const std::size_t first = next_directive_;
        while (next_directive_ < directives_.size() && directives_[next_directive_] < offset) {
            ++next_directive_;
        }
        return next_directive_ != first;
    }

    /// Comments and directives, one after the other.
    void take_gap(std::size_t end, std::size_t expanded) {
        std::size_t at = read_;
        while (at < end) {
            const std::string_view rest = text_.substr(at);
            if (rest.starts_with("//")) {
                at = after_line(at);
            } else if (rest.starts_with(bk::include_directive)) {
                const std::size_t quote = text_.find('"', at + bk::include_directive.size());
                const std::size_t stop = std::min(quote, text_.size() - 1) + 1;
                check_directive(at, stop - at, expanded);
                at = stop;
            } else if (rest.starts_with(bk::version_directive)) {
                check_version(at, expanded);
                at = after_line(at);
            } else {
                return;
            }
        }
    }

    std::size_t after_line(std::size_t at) const noexcept {
        return std::min(text_.find('\n', at), text_.size() - 1) + 1;
    }

    void check_directive(std::size_t at, std::size_t length, std::size_t expanded) {
        if (quotes_.state_at(at) == LineReader::State::string) {
            const Spot place = spot(at, length, expanded);
            problems_.add(losses_.severity(codes::directive_in_string, place), codes::directive_in_string,
                          "a directive takes effect inside a string, too: write the string differently",
                          place);
        }
    }

    void check_version(std::size_t at, std::size_t expanded) {
        const std::size_t number_at = at + bk::version_directive.size();
        const std::size_t line_end = std::min(text_.find('\n', number_at), text_.size());
        std::string_view argument = text_.substr(number_at, line_end - number_at);
        check_directive(at, bk::version_directive.size() - 1, expanded);
        const bk::DoubleText version = bk::text_to_double(argument);
        if (!(version.value > 0)) {
            return; // reported when it was found
        }
        const Spot place = spot(number_at, version.length, expanded);
        check_text_after(number_at, argument, version.length, expanded);
        if (CoreVersion(bk::written_version).is_older_than(CoreVersion(version.value))) {
            problems_.add(codes::version_too_new,
                          "version " + std::string(argument.substr(0, version.length)) +
                              " is newer than 1.2, the latest that this library knows",
                          place);
        }
        if (inclusion_ != 0 && text_.find('\\') != std::string_view::npos &&
            bk::has_escapes(CoreVersion(version.value)) != has_escapes_) {
            problems_.add(codes::version_of_include,
                          std::string("the version of an included file does not count: here a backslash ") +
                              (has_escapes_ ? "begins an escape" : "stands for itself"),
                          place);
        }
        if (inclusion_ == 0 && version_ && *version_ != version.value) {
            problems_.add(codes::version_repeated, "the file states a version twice; this one counts", place);
        }
        version_ = version.value;
    }

    void check_text_after(std::size_t number_at, std::string_view argument, std::size_t length,
                          std::size_t expanded) {
        const std::size_t begin = argument.find_first_not_of(blanks, length);
        if (begin == std::string_view::npos || argument.substr(begin).starts_with("//")) {
            return;
        }
        const std::size_t end = argument.find_last_not_of(blanks) + 1;
        problems_.add(codes::text_after_version,
                      shown(argument.substr(begin, end - begin)) +
                          " is dropped with the version line: put it on the next line",
                      spot(number_at + begin, end - begin, expanded));
    }

    /// Reports the stray bytes before `end`. That place is at `expanded` in the expanded text, and the `length_there` bytes before it are a
    /// part of that text.
    void tell_stray_bytes(std::size_t end, std::size_t expanded, std::size_t length_there) {
        const auto place = [&](std::size_t at, std::size_t length) {
            const std::size_t distance = std::min(end - at, length_there);
            return spot(at, length, expanded - distance);
        };
        if (stray_.nul_count != 0 && stray_.first_nul < end) {
            problems_.add(codes::nul_byte,
                          "the file holds " + counted(stray_.nul_count, "NUL byte") +
                              ", the first one here: it is damaged or not text",
                          place(stray_.first_nul, 1));
            stray_.nul_count = 0;
        }
        if (stray_.bad_count != 0 && stray_.first_bad < end) {
            problems_.add(codes::not_utf_8,
                          "the file holds " + counted(stray_.bad_count, "byte") + " that " +
                              (stray_.bad_count == 1 ? "is" : "are") +
                              " not UTF-8, the first one here: save the file as UTF-8",
                          place(stray_.first_bad, 1));
            stray_.bad_count = 0;
        }
        for (; next_mark_ < stray_.marks.size() && stray_.marks[next_mark_] < end; ++next_mark_) {
            const std::size_t at = stray_.marks[next_mark_];
            if (quotes_.state_at(at) == LineReader::State::string) {
                problems_.add(codes::byte_order_mark_in_string,
                              "this string contains an invisible byte order mark: delete it", place(at, 3));
            }
        }
    }

    std::size_t inclusion_;
    std::string_view text_;
    bool has_escapes_;
    const Losses& losses_;
    ProblemList& problems_;
    LineReader quotes_;
    StrayBytes stray_;
    bool has_stray_bytes_;
    std::vector<std::uint32_t> directives_;
    std::size_t next_directive_ = 0;
    std::size_t next_mark_ = 0;
    std::size_t read_ = 0;
    std::size_t expanded_;
    std::optional<double> version_;
};

} // namespace

void check_sources(const SourceMap& sources, bool has_escapes, const Losses& losses, ProblemList& problems) {
    std::vector<FileChecks> files;
    files.reserve(sources.get_files().size());
    for (std::size_t i = 0; i < sources.get_inclusion_count();
         ++i) { // files are in the order of their first inclusion
        if (sources.file_of_inclusion(i) == files.size()) {
            files.emplace_back(i, sources.inclusion(i).directive.expanded, *sources.get_files()[files.size()],
                               has_escapes, losses, problems);
        }
    }
    for (const SourceMap::Directive& directive : sources.get_directives()) {
        FileChecks& file = files[sources.file_of_inclusion(directive.inclusion)];
        if (file.get_inclusion() == directive.inclusion) {
            file.add_directive(directive.offset);
        }
    }
    const SourceMap::Pieces& pieces = sources.get_pieces();
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (files.size() == 1 && files.front().is_indifferent()) {
            i = pieces.size() - 1;
        }
        FileChecks& file = files[sources.file_of_inclusion(pieces[i].inclusion)];
        if (file.get_inclusion() == pieces[i].inclusion) {
            file.take_piece(pieces[i]);
        }
    }
    for (FileChecks& file : files) {
        file.finish();
    }
}

} // namespace bk_parser
