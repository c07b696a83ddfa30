#pragma once

#include "core/core_export.h"
#include "core/core_string.h"

/// Watches how a document is read, so that a tool can say which file, line and column a fault is in. The
/// operations of this base do nothing. Offsets and lengths are bytes; an "expanded" offset counts in the text that
/// the parser reads, after includes are spliced in and comments are dropped; any other counts in the text of the file
/// that is being read.
///
/// An exception that a call throws ends the read and passes to its caller, after file_left was called for every open file; what
/// file_left throws then is dropped. std::bad_alloc counts as the library's own in operations that have a result.
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

    /// An include directive stands at this place of the current file and its search begins.
    virtual void include_found(const unsigned int& offset, const unsigned int& length,
                               const CoreString& name);
    /// The current file is now this one: found at `path` and loaded; `text` is what it holds, deciphered, and
    /// stays where it is until file_left. A byte order mark at its beginning is counted in offsets and copied in no piece.
    virtual void file_entered(const CoreString& name, const CoreString& path, const CoreString& text);
    /// The current file is again the one that included this one.
    virtual void file_left();
    /// A piece of the current file became part of the expanded text.
    virtual void piece_copied(const unsigned int& offset, const unsigned int& length,
                              const unsigned int& expanded);
    /// A fault at a word of the expanded text, with the message as logged, less its class and place and line end; empty when
    /// there was no memory for it.
    virtual void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                             const CoreString& message);
    /// A fault of a directive in the current file.
    virtual void directive_fault_found(const Fault& fault, const unsigned int& offset,
                                       const unsigned int& length, const CoreString& message);
};
