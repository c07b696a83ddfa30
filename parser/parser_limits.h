#pragma once

#include "core/core_string.h"

/// What a reading may cost. Every reader has these defaults, and takes others where a host gives them:
/// ParserFile::set_limits, and the operations of ParserGroup and ParserImpl that have a ParserLimits among their arguments.
/// A reading that would pass a limit says so in the log, stops there, and fails.
///
/// The defaults never refuse what people or this library made: they are the limits of the forms themselves, and bounds on
/// includes. Where the cost is in proportion to the input, memory is the bound, and the default is no limit.
///
/// A host that opens documents of strangers (downloads, attachments, uploads to a server) takes `ParserLimits::untrusted()`
/// instead, which also bounds how much text a small archive may stand for.
struct ParserLimits {
    /// The value of a limit that never ends a read.
    static constexpr unsigned int no_limit = 0xFFFFFFFFu;

    /// How many includes may be open inside each other. Projects use a handful.
    unsigned int include_depth = 200;
    /// How many files one reading may include, each counted as often as it is named. Without it thirty small files
    /// of which each names the next one twice would take for ever. This many take some ten seconds.
    unsigned int include_count = 1000000;
    /// The bytes of all files of one reading, those in comments too, and each file's as often as it is included. It is
    /// the largest document four times.
    core_uint64 source_size = core_uint64{16} << 30;
    /// The bytes of the text that is parsed, includes spliced in. It cannot be more: lengths have 32 bits.
    core_uint64 expanded_size = CoreString::max_length;
    /// How deep groups may nest in a text or in binary data. No operation of the library spends the stack on depth;
    /// a host whose own code walks trees recursively sets what its stack bears.
    unsigned int nesting_depth = no_limit;

    /// An archive stores each distinct word once and may name it as often as it likes, in one byte a time. Its text may
    /// always be as large as archive_free_size; beyond that it may be archive_ratio times as large as the archive
    /// would be in a file; and never larger than archive_size. By default no ratio is too large: an archive that
    /// save_archive has made is read back.
    core_uint64 archive_ratio = ~core_uint64{0};
    /// The documents of a few kilobytes of which most is one long word, repeated, stay below this.
    core_uint64 archive_free_size = core_uint64{64} << 20;
    /// It cannot be more: lengths have 32 bits.
    core_uint64 archive_size = CoreString::max_length;

    /// How many messages the parsing of one text logs. The others are counted, and one line says how many they were:
    /// "ParserGroup.set_text: <n> more messages\n". A host that shows its log may set 1000. Observers are told all.
    unsigned int message_count = no_limit;

    /// The limits for a document whose maker is not known. They differ from the defaults in how many files a reading may include,
    /// and in what an archive may become.
    static ParserLimits untrusted() noexcept {
        ParserLimits limits;
        // A shot of many assets includes some thousand files. This many small ones take a second or two.
        limits.include_count = 100000;
        // A scene of many like objects comes to a ratio of 3 to 10. This is where every byte of the file stands for a
        // word of 256 characters: a megabyte cannot become more than a quarter of a gigabyte.
        limits.archive_ratio = 256;
        // A tree takes several times the memory of its text, so that more than this is beyond most machines.
        limits.archive_size = core_uint64{2} << 30;
        return limits;
    }
};
