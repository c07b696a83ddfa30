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

/// A loaded document, and its name in reports.
class OpenedDocument {
public:
    OpenedDocument(std::string operand, bk_parser::LoadResult&& result, bool is_json = false)
        : operand_(std::move(operand)), result_(std::move(result)), is_json_(is_json) {}

    /// As the command line gives it; "-" is standard input.
    const std::string& operand() const noexcept { return operand_; }
    /// The name in reports: "<stdin>" for "-".
    std::string name() const { return operand_ == "-" ? "<stdin>" : operand_; }
    bk_parser::Document& document() noexcept { return result_.document; }
    const bk_parser::Document& document() const noexcept { return result_.document; }
    ParserGroup& root() { return result_.document.root(); }
    const ParserGroup& root() const { return result_.document.root(); }
    bk_parser::Form form() const { return result_.document.form(); }
    const std::vector<bk_parser::Problem>& problems() const noexcept { return result_.problems; }

    /// Whether there is a tree, even an incomplete one.
    bool is_read() const noexcept { return !result_.cancelled && refusal() == nullptr; }
    /// The problem because of which nothing was read, or null.
    const bk_parser::Problem* refusal() const noexcept;
    /// The problem that ended the read of a binary, encrypted or archive file early, or null. The tree has what stands before
    /// it.
    const bk_parser::Problem* damage() const noexcept;
    bool is_damaged() const noexcept { return damage() != nullptr; }
    bool is_json() const noexcept { return is_json_; }
    /// Whether it is JSON with an error, read up to there.
    bool is_broken_json() const noexcept;
    bool has_errors() const noexcept { return !result_.ok(); }
    /// Whether an include failed, so that the tree lacks its content.
    bool lacks_includes() const;
    bool is_cancelled() const noexcept { return result_.cancelled; }
    /// The exit code of the load alone.
    ExitCode exit_code() const noexcept;

private:
    std::string operand_;
    bk_parser::LoadResult result_;
    bool is_json_;
};

/// Loads the document that an operand names; "-" is standard input. Pipes work, too. Shows progress on a terminal, and stops at
/// an interrupt.
OpenedDocument open_document(const std::string& operand, const OpenOptions& options, Streams& streams);
/// Loads a document on any thread, without a progress line. `tell`, which may be empty, gets the progress from 0 to 1.
OpenedDocument open_quietly(const std::string& operand, const OpenOptions& options,
                            std::function<void(double)> tell = {});
/// Loads a document from bytes in memory.
OpenedDocument open_bytes(std::string name, std::string_view bytes, const OpenOptions& options);

/// The name of an operand in reports: "<stdin>" for "-".
std::string shown_operand(const std::string& operand);

/// "text", "binary", "encrypted text", "archive".
std::string_view form_word(bk_parser::Form form) noexcept;

} // namespace bkdoc
