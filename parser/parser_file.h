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

/// The version of a file object that has read nothing, and of the texts of archives: 1.2. It does not matter for files: a text
/// without a version line has version 1.0, and `write` writes 1.2.
extern BK_PARSER_API CoreVersion default_parser_serial_version;

/// A document on disk: the tree under its root group, the name of its file, and where its includes are found.
///
/// `write` **loses comments, blank lines and includes**: it prints the document anew. It returns true even when nothing could be
/// stored. `read` **returns true for a text full of errors**, reads any file as text, and does not report a truncated document. To edit
/// files that people wrote, use bk_parser::load and bk_parser::save (document/document.h).
///
/// A text document begins with a line "#Brellwick_Serial_Version 1.2". `#include "name"` is replaced with the text of
/// that file. "//" begins a comment, which ends with its line and takes the line end with it.
class BK_PARSER_API ParserFile : public CoreBaseObject {
public:
    /// How `write` stores a document.
    enum Mode : unsigned int { MODE_TEXT = 0, MODE_BINARY = 1 };

    /// Takes over the group as its root.
    explicit ParserFile(ParserGroup& root);
    /// Stores the name and makes a root group named "root". Does not read the file.
    explicit ParserFile(const CoreString& filename);
    /// **Copies share one root group**, which dies with the last of them.
    ParserFile(const ParserFile& other);
    /// Shares the other's root group. When memory runs out, nothing has changed.
    ParserFile& operator=(const ParserFile& other);
    ~ParserFile() override;

    /// Deletes all entries of the root group.
    void clear();

    /// Stores the name that `read` and `write` use when theirs is empty.
    void set_filename(const CoreString& filename);
    /// The stored name.
    const CoreString& get_filename() const noexcept { return filename_; }
    /// Sets the folders in which `read` looks for files, in this order. After them it tries the name as it is. `write` does not use
    /// them.
    void set_search_paths(const CoreVector<CoreString>& paths);
    /// What set_search_paths was given.
    const CoreVector<CoreString>& get_search_paths() const noexcept { return search_paths_; }
    /// The absolute paths of the files that the last read included.
    const CoreSet<CoreString>& get_dependencies() const noexcept { return dependencies_; }
    /// The version of the text that was read last: 1.0 when it had no version line, 0 after a read that failed.
    const CoreVersion& get_serial_version() const noexcept { return serial_version_; }
    /// Whether the first file that this object ever read was encrypted.
    bool is_encrypted() const noexcept { return storage_ == STORAGE_ENCRYPTED; }
    /// The root group, which the file owns together with its copies.
    ParserGroup& get_root() const noexcept { return *root_; }

    /// Sets an observer for later reads, which the caller keeps alive; null removes it.
    void set_read_observer(ParserReadObserver* observer) noexcept { observer_ = observer; }

    /// Limits the memory and time of later reads.
    void set_limits(const ParserLimits& limits) noexcept { limits_ = limits; }
    /// What set_limits was given; at first the defaults of ParserLimits, which are wide.
    const ParserLimits& get_limits() const noexcept { return limits_; }

    /// Appends the root group's text, without a version line.
    void get_text(CoreString& out) const;

    /// Reads a text or encrypted file with its includes, and appends it to the root group. Does not read MODE_BINARY files; use
    /// set_binary. `key` decrypts encrypted files. A `filename` that is not empty is stored first, whether the read succeeds or not;
    /// an empty one means the stored name.
    ///
    /// **Returns true when the text has errors**: it logs them. Only a ParserReadObserver learns of a truncated document, or of one that
    /// ended early at a "}". Returns false, with the root group as it was,
    /// - when the file or an include cannot be found, opened or decrypted, with a message at level 2;
    /// - when an include directive lacks its closing quote, or a version is not above 0, without a message.
    ///
    /// Also returns false when a limit ends the parse; the root group then has what was read before.
    bool read(const CoreString& filename, const CoreString& key, AppProgressBar* progress);

    /// Writes the document to `filename`, and stores that name; when it is empty, to the stored name. The search paths do not matter.
    /// With a key it writes the encrypted form, whatever the mode, and leaves the version in the tree as the keyword entry
    /// "#Brellwick_Serial_Version".
    ///
    /// **Returns true even when the document could not be stored**: the old file then stays, and only the log says
    /// "ParserFile.write: Can't save project '<filename>'.\n", at level 1. Returns false when the file cannot be opened, and for an
    /// unknown mode with "ParserFile.write: Unknown file mode\n" at level 1.
    bool write(const Mode& mode, const CoreString& filename, const CoreString& key);

    /// The binary form of the whole document (docs/formats.md).
    CoreVector<char> get_binary() const;
    /// Reads a binary document and appends it to the root group. When the data is bad, returns false and logs that at level 2.
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
