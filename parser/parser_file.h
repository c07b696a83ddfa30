#pragma once

#include "core/app_progress_bar.h"
#include "core/core_base_object.h"
#include "core/core_containers.h"
#include "core/core_export.h"
#include "core/core_string.h"
#include "core/core_version.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"
#include "parser/parser_read_observer.h"

#include <memory>

class SysFile;

/// The version of a file object that has read nothing, and of the texts of archives: 1.2. A text without a version line is
/// of version 1.0, and what is written of 1.2, whatever this says.
extern BK_PARSER_API CoreVersion default_parser_serial_version;

/// A document on disk: the tree under its root group, the name of its file, and where its includes are found.
///
/// `write` loses comments, blank lines and includes: it prints the document anew. It is true even when nothing could be stored.
/// `read` is true for a text that is full of faults, takes any file for a text, and does not tell that a document was cut off.
/// To edit files that people wrote, use bk_parser::load and bk_parser::save (document/document.h) instead.
///
/// A text document begins with a line "#Brellwick_Serial_Version 1.2". Where it says #include "name", the file of
/// that name is spliced in; "//" begins a comment that ends with its line, and takes the line's end with it.
class BK_PARSER_API ParserFile : public CoreBaseObject {
public:
    /// How `write` stores a document.
    enum Mode : unsigned int { MODE_TEXT = 0, MODE_BINARY = 1 };

    /// Owns the group from now on.
    explicit ParserFile(ParserGroup& root);
    /// A new root group named "root". The file is not read.
    explicit ParserFile(const CoreString& filename);
    /// Copies share one root group, which dies with the last of them.
    ParserFile(const ParserFile& other);
    /// When memory ends, nothing has changed.
    ParserFile& operator=(const ParserFile& other);
    ~ParserFile() override;

    /// Deletes what the root group holds.
    void clear();

    /// Stores the name that `read` and `write` take when they are given none.
    void set_filename(const CoreString& filename);
    /// The stored name.
    const CoreString& get_filename() const noexcept { return filename_; }
    /// The folders in which reading looks for files, in this order, before the name is tried as it stands. Writing does not
    /// look there.
    void set_search_paths(const CoreVector<CoreString>& paths);
    /// What set_search_paths was given.
    const CoreVector<CoreString>& get_search_paths() const noexcept { return search_paths_; }
    /// The absolute paths of the files that the last read included.
    const CoreSet<CoreString>& get_dependencies() const noexcept { return dependencies_; }
    /// 1.0 when the text read had no version line; 0 after a read that failed.
    const CoreVersion& get_serial_version() const noexcept { return serial_version_; }
    /// Whether the first file ever read was an enciphered one.
    bool is_encrypted() const noexcept { return storage_ == STORAGE_ENCRYPTED; }
    /// The root group, which the file owns together with its copies.
    ParserGroup& get_root() const noexcept { return *root_; }

    /// Tells an observer, which the caller keeps alive, how later reads go; null ends that.
    void set_read_observer(ParserReadObserver* observer) noexcept { observer_ = observer; }

    /// What later reads may cost.
    void set_limits(const ParserLimits& limits) noexcept { limits_ = limits; }
    /// What set_limits was given; wide limits at first.
    const ParserLimits& get_limits() const noexcept { return limits_; }

    /// Appends the root group's text, without a version line.
    void get_text(CoreString& out) const;

    /// Reads a file (the stored one when `filename` is empty; else `filename` is stored, whatever comes of it), with its
    /// includes, and appends it to the root group. `key` deciphers what is stored enciphered. False when the file or an
    /// include cannot be found, opened or deciphered, with level-2 messages, and without one for an include directive
    /// that lacks its closing quote and for a version that is not above 0; then the root group is as it was. False also
    /// when a limit ends the parsing: then it has what was read before. Faults of the syntax are logged, and are no failure.
    /// To detect a truncated document, or one that ended early at a "}", install a ParserReadObserver: nothing else tells. Does
    /// not read MODE_BINARY files; use set_binary.
    bool read(const CoreString& filename, const CoreString& key, AppProgressBar* progress);

    /// Writes to the stored filename as it stands, after storing `filename` when it is not empty. A key that is not empty
    /// writes the enciphered form, whatever the mode, and leaves the version in the tree, as the keyword entry
    /// "#Brellwick_Serial_Version". False when the file cannot be opened, and for an unknown mode with
    /// "ParserFile.write: Unknown file mode\n" at level 1. What cannot be stored whole is logged at level 1 as
    /// "ParserFile.write: Can't save project '<filename>'.\n"; the result is true all the same, and the old file stays.
    bool write(const Mode& mode, const CoreString& filename, const CoreString& key);

    /// The binary form of the whole document (docs/formats.md).
    CoreVector<char> get_binary() const;
    /// Appends what the binary form holds to the root group. False, with level-2 messages, when it is bad.
    bool set_binary(const CoreVector<char>& data);

private:
    enum Storage : unsigned char { STORAGE_UNKNOWN = 0, STORAGE_PLAIN = 1, STORAGE_ENCRYPTED = 2 };

    explicit ParserFile(std::unique_ptr<ParserGroup> root);
    bool read_document(const CoreString& filename, const CoreString& key, AppProgressBar* progress);
    bool write_document(const Mode& mode, const CoreString& filename, const CoreString& key);
    bool preprocess(CoreString& text, const CoreString& key, AppProgressBar* progress);
    bool write_encrypted(SysFile& file, const CoreString& key);
    bool write_text(SysFile& file);
    bool write_binary(SysFile& file) const;
    void release_root() noexcept;

    CoreString filename_;
    CoreString folder_;
    ParserGroup* root_;
    CoreVector<CoreString> search_paths_;
    Storage storage_ = STORAGE_UNKNOWN;
    CoreVersion serial_version_;
    CoreSet<CoreString> dependencies_;
    unsigned int* root_owners_; // shared by all copies
    ParserReadObserver* observer_ = nullptr;
    ParserLimits limits_;
};
