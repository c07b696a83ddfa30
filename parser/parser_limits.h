#pragma once

#include "core/core_string.h"

/// Bounds the memory and time that one read may use. A host passes its own limits to ParserFile::set_limits, to LoadOptions, and to
/// the functions of ParserGroup and ParserImpl that take them. A read that would pass a limit logs that, stops there, and fails.
///
/// **To open documents of strangers (downloads, attachments, uploads to a server), use `ParserLimits::untrusted()`**, which also bounds
/// how large the text of a small archive may become. bk_parser::load does so by default.
///
/// The defaults refuse nothing that people or this library made: they are the limits of the forms themselves, and bounds on
/// includes. Where the cost is in proportion to the input, memory is the only limit.
struct ParserLimits {
    /// A limit that never ends a read.
    static constexpr unsigned int no_limit = 0xFFFFFFFFu;

    /// How many includes may be open inside each other. Projects use a handful.
    unsigned int include_depth = 200;
    /// How many files one read may include, each counted as often as it is included. Without this limit, thirty small files could take
    /// hours: when each includes the next one twice, the last is read 2^29 times. A million files take some ten seconds.
    unsigned int include_count = 1000000;
    /// The bytes of all files of one read, comments included, and each file counted as often as it is included. The default is four
    /// times the largest document.
    core_uint64 source_size = core_uint64{16} << 30;
    /// The bytes of the text that is parsed, includes spliced in. The default is the largest possible value: lengths have 32 bits.
    core_uint64 expanded_size = CoreString::max_length;
    /// How deep groups may nest in a text or in binary data. The library uses no stack for depth. A host whose own code walks trees
    /// recursively sets what its stack allows.
    unsigned int nesting_depth = no_limit;

    /// A small archive can become a large text, because it stores each distinct word once and names it in as little as one byte each
    /// time. Its text may always have archive_free_size bytes. Beyond that it may be archive_ratio times as large as the archive's
    /// file, and never larger than archive_size. By default there is no ratio, so that every archive that save_archive made is read
    /// back.
    core_uint64 archive_ratio = ~core_uint64{0};
    /// The bytes that the text of an archive may always have. Enough for small documents that mostly repeat one long word.
    core_uint64 archive_free_size = core_uint64{64} << 20;
    /// The most bytes that the text of an archive may have. The default is the largest possible value: lengths have 32 bits.
    core_uint64 archive_size = CoreString::max_length;

    /// How many messages the parse of one text logs. The others are only counted, in one more message:
    /// "ParserGroup.set_text: <n> more messages\n". A host that shows its log may set 1000. An observer gets all of them.
    unsigned int message_count = no_limit;

    /// The limits for documents of strangers. They differ from the defaults in how many files a read may include,
    /// and in how large the text of an archive may become.
    static ParserLimits untrusted() noexcept {
        ParserLimits limits;
        // A shot of many assets includes some thousand files. This many small ones take a second or two.
        limits.include_count = 100000;
        // A scene of many similar objects has a ratio of 3 to 10. At 256 every byte of the file stands for a
        // word of 256 characters, and a megabyte becomes at most a quarter of a gigabyte.
        limits.archive_ratio = 256;
        // A tree takes several times the memory of its text, so the tree of a larger text would not fit into most machines.
        limits.archive_size = core_uint64{2} << 30;
        return limits;
    }
};
