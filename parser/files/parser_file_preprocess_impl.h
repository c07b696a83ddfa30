#pragma once

#include "core/core_containers.h"
#include "core/core_string.h"
#include "core/reports/app_progress_impl.h"
#include "parser/files/parser_source_scanner_impl.h"
#include "parser/parser_limits.h"
#include "parser/parser_read_observer.h"

#include <deque>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace bk {

/// Turns a file into the text that is parsed: finds it along the search paths, deciphers it, splices in its
/// includes, drops comments and takes the version out of its version line.
class Preprocessor {
public:
    /// `search_paths`, `key` and `limits` outlive the preprocessor. `observer` may be null.
    Preprocessor(const CoreVector<CoreString>& search_paths, const CoreString& key,
                 ParserReadObserver* observer, const ParserLimits& limits);
    ~Preprocessor();
    Preprocessor(const Preprocessor&) = delete;
    Preprocessor& operator=(const Preprocessor&) = delete;

    /// Appends the text of the file and what it includes to `text`. The result is the serial version, 1.0 when the
    /// file states none, and 0.0 when it, or an include, cannot be had; why is logged at level 2.
    double run(const CoreString& name, Progress progress, CoreString& text);

    /// The absolute paths of the files that were included, failures included.
    const CoreSet<CoreString>& included_paths() const noexcept { return included_paths_; }
    bool has_loaded() const noexcept { return has_loaded_; }
    /// Whether the first file loaded was an enciphered one.
    bool is_encrypted() const noexcept { return is_encrypted_; }

private:
    /// A file while it is read.
    struct Source {
        CoreString text;
        bool is_encrypted = false;
    };
    /// A file that is being scanned, or waits for the end of one that it includes.
    struct OpenFile {
        OpenFile(const CoreString& file_name, const CoreString& file_path, Source&& file_source,
                 Progress progress)
            : name(file_name), path(file_path), source(std::move(file_source)),
              scanner(source.text.get_view(), progress) {}

        CoreString name;
        CoreString path;
        Source source;
        SourceScanner scanner;
        double version = 1.0;
        bool is_told = false; // the observer knows that it was entered
    };

    bool enter(const CoreString& name, Progress progress);
    double leave();
    bool find(const CoreString& name, CoreString& path);
    bool may_open(const CoreString& name, const CoreString& path);
    bool load(const CoreString& name, const CoreString& path, Source& source, Progress progress);
    static bool read_as_text(const CoreString& name, const CoreString& path, CoreString& text);
    bool decipher_source(const CoreString& name, Source& source);
    void note_storage(bool is_encrypted) noexcept;
    double scan(Progress progress);
    bool append_piece(const CoreString& name, const SourcePiece& piece);
    bool include(const SourcePiece& piece);
    void report_open_include(const SourcePiece& piece);

    const CoreVector<CoreString>& search_paths_;
    const CoreString& key_;
    ParserReadObserver* observer_;
    const ParserLimits& limits_;
    CoreString* out_ = nullptr;
    CoreString top_path_;
    CoreSet<CoreString> included_paths_;
    std::deque<OpenFile> open_files_; // each included by the one before; they stay where they are
    std::unordered_set<std::string_view> open_paths_;
    unsigned int include_count_ = 0;
    core_uint64 source_size_ = 0; // of all files loaded
    bool has_loaded_ = false;
    bool is_encrypted_ = false;
};

} // namespace bk
