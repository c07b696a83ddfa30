#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

/// Watches a read, so that a tool can say in which file, line and column an error (here: fault) is. The functions of this base class do
/// nothing.
///
/// Offsets and lengths are in bytes. An "expanded" offset counts in the text that the parser reads, with includes spliced in and
/// comments dropped. Every other offset counts in the text of the current file.
///
/// When a function here throws, the library calls file_left for every open file, drops what that throws, ends the read, and passes the
/// exception to the caller. In an operation that returns a result, std::bad_alloc counts as running out of memory.
class BK_PARSER_API ParserReadObserver {
public:
    /// What can be wrong with a text.
    enum Fault : unsigned int {
        FAULT_WRONGLY_PLACED,
        FAULT_NO_VALUE,
        FAULT_TEMPLATE_INSIDE_TEMPLATE,
        FAULT_VALUE_WITHOUT_ENTRY,
        FAULT_GROUP_WITHOUT_ENTRY,
        FAULT_ARGUMENTS_WITHOUT_ENTRY,
        FAULT_ARGUMENTS_AFTER_VALUES,
        FAULT_ARGUMENTS_INSIDE_ARGUMENTS,
        FAULT_ARGUMENTS_ON_KEYWORD,
        FAULT_CLOSING_WITHOUT_ENTRY,
        FAULT_CLOSING_NO_ARGUMENTS,
        FAULT_UNKNOWN_WORD,
        FAULT_INVALID_NAME,      ///< the name of an entry is refused
        FAULT_TEXT_AFTER_END,    ///< a "}" that closes nothing ends the document; not logged
        FAULT_GROUP_LEFT_OPEN,   ///< the text ends inside this group; not logged
        FAULT_INCLUDE_LEFT_OPEN, ///< an include directive without a closing quote; not logged
        FAULT_NESTED_TOO_DEEPLY  ///< the text is not read from here on: ParserLimits::nesting_depth
    };

    ParserReadObserver() = default;
    virtual ~ParserReadObserver();

    /// An include directive was found at this place of the current file. The search for its file begins.
    virtual void include_found(const unsigned int& offset, const unsigned int& length,
                               const CoreString& name);
    /// This file becomes the current one. It was found at `path`, loaded and decrypted. `text` stays at its address until file_left.
    /// Offsets count a byte order mark at its beginning, and no piece contains it. When this function throws, the file gets no file_left.
    virtual void file_entered(const CoreString& name, const CoreString& path, const CoreString& text);
    /// The current file ended. The file that included it is current again.
    virtual void file_left();
    /// A piece of the current file became part of the expanded text.
    virtual void piece_copied(const unsigned int& offset, const unsigned int& length,
                              const unsigned int& expanded);
    /// An error at a word of the expanded text. `message` is the logged message without the name of the function, the place and the line
    /// end; it is empty when there was no memory for it.
    virtual void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                             const CoreString& message);
    /// An error in a directive of the current file.
    virtual void directive_fault_found(const Fault& fault, const unsigned int& offset,
                                       const unsigned int& length, const CoreString& message);
};
