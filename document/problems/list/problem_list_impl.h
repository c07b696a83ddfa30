#pragma once

#include "document/load/meter_impl.h"
#include "document/problem.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/sources/source_map_impl.h"

#include <array>
#include <concepts>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace bk_parser {

/// The problems of one load, collected as they are noticed, by place. Computes lines and columns at the end of the load, so that a
/// document without problems costs nothing. A hostile document may have a problem at every other byte, so the number is bounded:
/// keeps up to `most` errors and up to `most` warnings, and only counts the others.
class ProblemList {
public:
    /// The largest number of problems in the result, whatever the limits say.
    static constexpr std::size_t most_told = 10000;

    /// The caller keeps the arguments alive as long as the list. Drops warnings of the allowed codes. Returns at most `most` problems.
    ProblemList(const SourceMap& sources, const std::vector<std::string>& allow, std::size_t most)
        : sources_(sources), allow_(allow), most_(most) {}

    /// Adds a problem at a place of a file.
    void add(Severity severity, std::string_view code, std::string message, const Spot& spot);
    /// Adds a problem at a place of a file, with the severity that the table gives its code.
    void add(std::string_view code, std::string message, const Spot& spot);
    /// Adds a problem of which a hostile document may have many. Does not compose the message of a problem that is only counted.
    template <std::invocable Compose>
    void add(Severity severity, std::string_view code, const Compose& compose, const Spot& spot) {
        if (keeps_message(severity, code)) {
            add(severity, code, compose(), spot);
        } else {
            last_kept_ = not_kept;
            if (!is_allowed(severity, code)) {
                leave_out(severity, code);
            }
        }
    }
    template <std::invocable Compose>
    void add(std::string_view code, const Compose& compose, const Spot& spot) {
        add(severity_of(code), code, compose, spot);
    }
    /// A problem of a whole file, or of none.
    void add(Severity severity, std::string_view code, std::string message, std::filesystem::path file);

    /// Identifies the problem that was added last, for `append`; not_kept when it was left out or had been reported before.
    static constexpr std::size_t not_kept = ~std::size_t{0};
    std::size_t last_kept() const noexcept { return last_kept_; }
    /// Adds to the message of a problem. Call it before any call of `forget`.
    void append(std::size_t kept, std::string_view text) { noticed_[kept].message += text; }

    bool is_empty() const noexcept { return noticed_.empty() && left_.empty(); }
    /// What was not read, in the words of the problems: parts of the document, and separately the includes that were left out.
    const std::vector<std::string>& unread_parts() const noexcept { return unread_parts_; }
    const std::vector<std::string>& unread_includes() const noexcept { return unread_includes_; }
    /// Removes the problems of a code.
    void forget(std::string_view code);
    /// The problems in the order of the text, each message on one line. Reports a mistake in a file that is included more than once at
    /// the first place. The last problem says how many were left out. The meter's range covers this work.
    std::vector<Problem> take(const Meter::Range& range, Meter& meter);

private:
    struct Noticed {
        Severity severity;
        std::string_view code; // one of document/problems/list/problem_codes_impl.h
        std::string message;
        std::filesystem::path file; // when it has no spot
        Spot spot;
        bool has_spot;
    };
    /// Identifies a problem that was added before: by its file, its offset there, and a hash of its code and message.
    using Told = std::array<std::size_t, 3>;
    struct ToldHash {
        std::size_t operator()(const Told& told) const noexcept {
            return (told[0] * 1000003 + told[1]) * 1000003 ^ told[2];
        }
    };
    struct Left {
        std::size_t count = 0;
        bool has_error = false;
    };

    bool is_allowed(Severity severity, std::string_view code) const;
    bool keeps_message(Severity severity, std::string_view code) const;
    void note_unread(std::string_view code, const std::string& message, bool has_spot);
    std::size_t kept(Severity severity) const noexcept { return kept_[severity == Severity::error ? 1 : 0]; }
    bool has_room(Severity severity) noexcept;
    Told told_of(const Spot& spot, std::string_view code, std::string_view message) const noexcept;
    bool is_told(const Spot& spot, std::string_view code, std::string_view message) const;
    void remember(const Spot& spot, std::string_view code, std::string_view message);
    bool is_before(const Noticed& a, const Noticed& b) const;
    void leave_out(Severity severity, std::string_view code);
    Problem problem_of(Noticed&& noticed, std::size_t& line_bytes) const;
    void add_left(std::vector<Problem>& problems) const;

    const SourceMap& sources_;
    const std::vector<std::string>& allow_;
    std::size_t most_;
    std::vector<Noticed> noticed_;
    std::size_t last_kept_ = not_kept;
    std::vector<std::string> unread_parts_;
    std::vector<std::string> unread_includes_;
    std::array<std::size_t, 2> kept_{}; // by severity
    std::unordered_set<Told, ToldHash> told_;
    std::unordered_map<std::string_view, Left> left_; // by code
};

} // namespace bk_parser
