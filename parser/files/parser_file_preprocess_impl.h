#pragma once

#include "core/core_containers.h"
#include "core/core_string.h"
#include "core/reports/app_progress_impl.h"
#include "parser/files/parser_source_host_impl.h"
#include "parser/files/parser_source_scanner_impl.h"
#include "parser/parser_limits.h"

#include <deque>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace bk {

/// How a preprocessor treats includes. The defaults are those of ParserFile.
struct IncludeRules {
    /// An included file is searched for in the folder of the file that includes it, before the search paths.
    bool searches_beside = false;
    /// An empty search path stands for the working folder, where an included file is searched for, too. Otherwise only
    /// an absolute path is found by it.
    bool searches_working_folder = true;
    /// Leaves out an include that cannot be read, and continues after it. A limit on the whole document still ends the read.
    bool goes_on = false;
    /// The most bytes of a piece. The text is copied in pieces, and the host is told of each.
    std::size_t longest_piece = std::string_view::npos;
    /// When false, tells the host of include directives and leaves them out.
    bool follows_includes = true;
    /// When the whole text is the rest of the first file, borrows that file's text, which the host keeps, instead of copying it.
    bool shows_source = false;
};

/// Turns a file into the text that is parsed: finds it along the search paths, deciphers it, splices in its
/// includes, drops comments and takes the version out of its version line.
class Preprocessor {
public:
    /// The caller keeps the arguments alive as long as the preprocessor.
    Preprocessor(const CoreVector<CoreString>& search_paths, const CoreString& key, SourceHost& host,
                 const ParserLimits& limits, IncludeRules rules = {});
    ~Preprocessor();
    Preprocessor(const Preprocessor&) = delete;
    Preprocessor& operator=(const Preprocessor&) = delete;

    /// Appends the text of the file and of what it includes to `text`. Returns the serial version: 1.0 when the file states none, and
    /// 0.0 when the file or an include cannot be read. Then it tells the host why.
    double run(const CoreString& name, Progress progress, CoreString& text);
    /// Preprocesses a text in memory. `path` is the absolute path of its file, or empty when it has none.
    double run(const CoreString& name, const CoreString& path, CoreString&& bytes, CoreString& text);

    /// The absolute paths of the files that were included, failures included.
    const CoreSet<CoreString>& included_paths() const noexcept { return included_paths_; }
    bool has_loaded() const noexcept { return has_loaded_; }
    /// Whether the first file loaded was an enciphered one.
    bool is_encrypted() const noexcept { return is_encrypted_; }
    /// Whether a limit on the whole document ended the read.
    bool is_ended() const noexcept { return is_ended_; }

private:
    /// A file while it is read.
    struct Source {
        CoreString text;
        bool is_encrypted = false;
        core_uint64 rest = 0; // bytes after the enciphered text
    };
    /// The names of a file: as it was asked for, where it was found, and its absolute path.
    struct Place {
        CoreString name;
        CoreString found;
        CoreString path;
    };
    /// A file that is being scanned, or waits for the end of one that it includes.
    struct OpenFile {
        OpenFile(Place&& file_place, Source&& file_source, Progress progress)
            : place(std::move(file_place)), source(std::move(file_source)),
              scanner(source.text.get_view(), progress) {}

        Place place;
        Source source;
        SourceScanner scanner;
        double version = 1.0;
        bool is_told = false; // the host knows that it was entered
    };

    bool enter(const CoreString& name, Progress progress);
    void open(Place&& place, Source&& source, Progress progress);
    double leave();
    double finish(Progress progress);
    bool find(Place& place);
    bool find_at(const CoreString& folder, Place& place);
    bool may_open(const Place& place);
    bool may_include(const Place& place);
    bool load(const Place& place, Source& source, Progress progress);
    bool is_too_large(const Place& place, core_uint64 size);
    bool decipher_source(const Place& place, Source& source);
    void note_storage(bool is_encrypted) noexcept;
    double scan(Progress progress);
    bool append_piece(const OpenFile& file, const SourcePiece& piece);
    bool show_piece(const SourcePiece& piece) noexcept;
    bool copy_shown();
    void finish_shown();
    bool append(std::string_view text);
    bool include(const SourcePiece& piece);
    bool end_file(double& version);
    bool fail(SourceFault fault, const Place& place, const SourcePiece& piece = {}, core_uint64 announced = 0,
              core_uint64 present = 0);

    const CoreVector<CoreString>& search_paths_;
    const CoreString& key_;
    SourceHost& host_;
    const ParserLimits& limits_;
    IncludeRules rules_;
    CoreString* out_ = nullptr;
    std::string_view shown_; // a part of the first file's text that is not in `out_` yet
    CoreString top_path_;
    CoreSet<CoreString> included_paths_;
    std::deque<OpenFile> open_files_; // each is included by the one before it; a deque keeps their addresses
    std::unordered_set<std::string_view> open_paths_;
    std::vector<CoreString> tried_; // the places where the current file was searched for
    unsigned int include_count_ = 0;
    core_uint64 source_size_ = 0; // of all files loaded
    bool has_loaded_ = false;
    bool is_encrypted_ = false;
    bool is_ended_ = false;
    bool has_room_ = false; // room for the first file was reserved in `out_`
};

} // namespace bk
