#pragma once

#include "document/load.h"
#include "input/options/open_options.h"
#include "output/output.h"
#include "verbs/exit_code.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// A document as the library loaded it, and how it is called in reports.
class OpenedDocument {
public:
    OpenedDocument(std::string operand, bk_parser::LoadResult&& result, bool is_json = false)
        : operand_(std::move(operand)), result_(std::move(result)), is_json_(is_json) {}

    /// As the command line has it; "-" is standard input.
    const std::string& operand() const noexcept { return operand_; }
    /// As it is called in reports: "<stdin>" for "-".
    std::string name() const { return operand_ == "-" ? "<stdin>" : operand_; }
    bk_parser::Document& document() noexcept { return result_.document; }
    const bk_parser::Document& document() const noexcept { return result_.document; }
    ParserGroup& root() { return result_.document.root(); }
    const ParserGroup& root() const { return result_.document.root(); }
    bk_parser::Form form() const { return result_.document.form(); }
    const std::vector<bk_parser::Problem>& problems() const noexcept { return result_.problems; }

    /// Whether there is a tree, if only of what was good.
    bool is_read() const noexcept { return !result_.cancelled && refusal() == nullptr; }
    /// The problem that kept the whole document out; null when there is none.
    const bk_parser::Problem* refusal() const noexcept;
    /// The problem of a stored form that broke off: the tree ends where the damage begins. Null when there is none.
    const bk_parser::Problem* damage() const noexcept;
    bool is_damaged() const noexcept { return damage() != nullptr; }
    bool is_json() const noexcept { return is_json_; }
    /// Whether it is JSON that was read up to a fault.
    bool is_broken_json() const noexcept;
    bool has_errors() const noexcept { return !result_.ok(); }
    /// Whether an included file could not be had, or an include directive has no end: the tree lacks what they hold.
    bool lacks_includes() const;
    bool is_cancelled() const noexcept { return result_.cancelled; }
    /// What the loading alone means for the exit code.
    ExitCode exit_code() const noexcept;

private:
    std::string operand_;
    bk_parser::LoadResult result_;
    bool is_json_;
};

/// Loads the document that an operand names; "-" is standard input, and so is what a pipe gives. Shows the progress on a
/// terminal, and stops at an interrupt.
OpenedDocument open_document(const std::string& operand, const OpenOptions& options, Streams& streams);
/// The same for threads, without a progress line: `tell` is given how far the loading is, from 0 to 1. It may be empty.
OpenedDocument open_quietly(const std::string& operand, const OpenOptions& options,
                            std::function<void(double)> tell = {});
/// The same for a document in memory.
OpenedDocument open_bytes(std::string name, std::string_view bytes, const OpenOptions& options);

/// As operands are called in reports: "<stdin>" for "-".
std::string shown_operand(const std::string& operand);

/// "text", "binary", "enciphered text", "archive".
std::string_view form_word(bk_parser::Form form) noexcept;

} // namespace bkdoc
