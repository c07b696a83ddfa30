#pragma once

#include "core/app_progress_bar.h"
#include "core/core_containers.h"
#include "core/core_export.h"
#include "core/core_string.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"

/// A group's text as a sequence of words. Each distinct word is stored once.
struct BK_PARSER_API ParserArchive {
    ParserArchive();
    /// Copies the words.
    ParserArchive(const ParserArchive& other);
    /// The source is left empty.
    ParserArchive(ParserArchive&& other) noexcept;
    /// Becomes a copy of the words.
    ParserArchive& operator=(const ParserArchive& other);
    /// Takes the words; the source is left empty.
    ParserArchive& operator=(ParserArchive&& other) noexcept;
    ~ParserArchive();

    /// Appends a word to the sequence. Hashes the word; amortised constant time otherwise.
    void operator+=(const CoreString& word);

private:
    /// Finds words by their hash; empty until there is one.
    CoreVector<unsigned int> lookup_;
    unsigned int known_words_ = 0; // how many of `strings` the lookup finds

public:
    /// Each distinct word once, in order of first appearance.
    CoreVector<CoreString> strings;
    /// The words of the document, as positions in `strings`.
    CoreVector<unsigned int> indices;
};

/// Packing groups into archives, and archives into files (docs/formats.md).
class BK_PARSER_API ParserImpl {
public:
    /// Appends the words of a group; `with_braces` adds its name and the braces. `progress` may be null.
    static void archive_group(ParserGroup& group, ParserArchive& archive, const bool& with_braces,
                              AppProgressBar* progress);
    /// Appends the words of an entry, its name first. `progress` may be null.
    static void archive_entry(ParserEntry& entry, ParserArchive& archive, AppProgressBar* progress);
    /// Appends the words of a value: one word, or those of its group. `progress` may be null.
    static void archive_value(ParserValue& value, ParserArchive& archive, AppProgressBar* progress);
    /// Parses the archive's words into the group. Skips indices that name no string. Refuses an archive whose text would be larger than
    /// the limits, and logs "ParserImpl.group_set_archive: text too large\n" at level 2.
    static void group_set_archive(ParserGroup& group, const ParserArchive& archive, AppProgressBar* progress);
    /// Parses the archive's words within these limits. Returns false when one of them ends the parse. Logs syntax errors, which do not make it false.
    static bool group_set_archive(ParserGroup& group, const ParserArchive& archive, AppProgressBar* progress,
                                  const ParserLimits& limits);
    /// Replaces `text` with the words, each with a blank after it. When that would be larger than the limits, returns false and leaves
    /// `text` as it was.
    static bool get_archive_text(const ParserArchive& archive, CoreString& text, const ParserLimits& limits);

    /// Saves an archive to a file. Returns an empty text, or "empty filename" or "cannot open file".
    ///
    /// **An empty text does not mean that the archive was stored**, only that the file could be opened. When not everything could be
    /// stored, the old file stays, and only the log says "ParserImpl.save_archive: Can't save archive '<filename>'.\n", at level 1.
    static CoreString save_archive(const ParserArchive& archive, const CoreString& filename,
                                   AppProgressBar* progress);
    /// Appends an archive file to `archive`, which should be empty. Returns an empty text on success, otherwise "empty filename",
    /// "cannot open file", "invalid file size" or "unknown file format". Do not add words to a loaded archive. Makes no progress calls.
    static CoreString load_archive(ParserArchive& archive, const CoreString& filename,
                                   AppProgressBar* progress);
};
