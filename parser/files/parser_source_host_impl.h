#pragma once

#include "core/core_string.h"
#include "parser/files/parser_source_scanner_impl.h"

#include <string_view>
#include <vector>

namespace bk {

/// Why a file, or a part of it, is missing in the text.
enum class SourceFault {
    not_found,
    includes_itself,
    included_too_deeply, ///< ParserLimits::include_depth
    too_many_includes,   ///< ParserLimits::include_count
    file_too_large,      ///< the file, or all files together: ParserLimits::source_size
    text_too_large,      ///< the expanded text: ParserLimits::expanded_size
    unreadable,          ///< SourceHost::read said so
    enciphered_length,   ///< the encrypted block announces a longer text than the file has room for
    enciphered_block,    ///< the size of the encrypted block does not fit the length that it announces
    no_version,          ///< its version line says no number above 0
    include_left_open    ///< an include directive without a closing quote
};

/// What went wrong with a file.
struct SourceFailure {
    SourceFault fault;
    const CoreString& name;               // as it was asked for
    const CoreString& found;              // where it was found; empty when it was not
    const std::vector<CoreString>& tried; // the places that were tried, as they were named
    const SourcePiece& piece;             // where the fault is, when it is in the file itself
    core_uint64 announced = 0; // for enciphered_length and enciphered_block: the announced size of the text,
    core_uint64 present = 0;   // and the bytes that the block has
};

/// How a file was read.
enum class SourceRead { done, unreadable, too_large };

/// A file of a document while it is read.
struct SourceEntered {
    const CoreString& name;  // as it was asked for
    const CoreString& found; // where it was found, as that place was named
    const CoreString& path;  // absolute
    const CoreString& text;  // stays at its address until `left`
    bool is_enciphered;
    core_uint64 rest;                     // stored bytes after the enciphered text, which are not read
    const std::vector<CoreString>& tried; // the places that were looked at before
};

/// Gives the preprocessor its files, and is told what it does. What a function here throws passes through the preprocessor.
class SourceHost {
public:
    SourceHost() = default;
    virtual ~SourceHost() = default;
    SourceHost(const SourceHost&) = delete;
    SourceHost& operator=(const SourceHost&) = delete;

    /// The bytes of a file, at most `most` of them.
    virtual SourceRead read(const CoreString& path, core_uint64 most, CoreString& bytes) = 0;
    /// Replaces the bytes of a file with its text, with line ends translated as the platform does. False when it cannot be read.
    virtual bool read_as_text(const CoreString& path, CoreString& text) = 0;
    /// Whether the deciphered bytes can be a text: a wrong key gives arbitrary bytes.
    virtual bool accepts_deciphered(const CoreString& text) = 0;
    virtual void failed(const SourceFailure& failure) = 0;

    /// A piece ends at an include directive, whose file is looked for now.
    virtual void include_found(const SourcePiece& piece) = 0;
    /// A piece ends at a version line.
    virtual void version_found(const SourcePiece& piece, double version) = 0;
    virtual void entered(const SourceEntered& file) = 0;
    /// The innermost file has ended; the host takes over its text.
    virtual void left(CoreString&& text) = 0;
    /// A piece of the innermost file becomes part of the expanded text.
    virtual void copied(const SourcePiece& piece, unsigned int expanded) = 0;
};

} // namespace bk
