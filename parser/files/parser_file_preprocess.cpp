#include "parser/files/parser_file_preprocess_impl.h"

#include "core/files/sys_filesystem_impl.h"
#include "core/files/sys_line_ends_impl.h"
#include "core/numbers/core_number_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "core/sys_file.h"
#include "parser/cipher/parser_cipher_impl.h"
#include "parser/text/parser_fault_text_impl.h"

namespace bk {

namespace {

constexpr core_uint64 max_file_size = CoreString::max_length;
constexpr double failed = 0.0;

void report_for_file(const char* before, const CoreString& name, const char* after) {
    report_warning(before, name, after);
}

/// False when a read met an error: half a document must not pass for a whole one.
bool read_whole(SysFile& file, CoreString& text) {
    file.read(text, file.get_size());
    return file.close();
}

} // namespace

Preprocessor::Preprocessor(const CoreVector<CoreString>& search_paths, const CoreString& key,
                           ParserReadObserver* observer, const ParserLimits& limits)
    : search_paths_(search_paths), key_(key), observer_(observer), limits_(limits) {}

double Preprocessor::run(const CoreString& name, Progress progress, CoreString& text) {
    out_ = &text;
    if (!enter(name, progress)) {
        return failed;
    }
    const double version = within_task(
        progress, [&] { return scan(progress); }, 0.7F);
    while (!open_files_.empty()) { // of a reading that failed
        leave();
    }
    return version;
}

/// The files that are still open when an exception ends the reading are left, too; that one is not to be replaced by another.
Preprocessor::~Preprocessor() {
    while (!open_files_.empty()) {
        try {
            leave();
        } catch (...) {
            continue;
        }
    }
}

/// Opens a file, inside those that are open.
bool Preprocessor::enter(const CoreString& name, Progress progress) {
    CoreString path;
    Source source;
    if (!find(name, path) || !may_open(name, path) || !load(name, path, source, progress)) {
        return false;
    }
    OpenFile& file = open_files_.emplace_back(name, path, std::move(source), progress);
    open_paths_.insert(file.path.get_view());
    if (file.source.is_encrypted && open_files_.size() == 1) {
        file.scanner.keep_later_version_lines(); // the entry that writing put there
    }
    if (observer_ != nullptr) {
        observer_->file_entered(file.name, file.path, file.source.text);
        file.is_told = true;
    }
    return true;
}

/// Closes the innermost file; the result is its version.
double Preprocessor::leave() {
    OpenFile& file = open_files_.back();
    if (std::exchange(file.is_told, false)) {
        observer_->file_left();
    }
    const double version = file.version;
    open_paths_.erase(file.path.get_view());
    open_files_.pop_back();
    return version;
}

bool Preprocessor::find(const CoreString& name, CoreString& path) {
    for (const CoreString& folder : search_paths_) {
        CoreString candidate(folder);
        if (!folder.is_empty() && folder.get_view().back() != '/') {
            candidate += '/';
        }
        candidate += name;
        // The shell hands over a pipe as a document; a document that names one as an include could wait for ever.
        if (open_files_.empty() ? is_file(candidate.get_view()) : is_regular_file(candidate.get_view())) {
            path = absolute_path(candidate);
            if (open_files_.empty()) {
                top_path_ = path;
            } else if (!(path == top_path_)) {
                included_paths_.add(path);
            }
            return true;
        }
    }
    report_for_file("File '", name, "' not found.\n");
    report_warning("  Looked for:\n");
    for (unsigned int i = 0; i < search_paths_.get_count(); ++i) {
        report_for_file("    - '", name, "'\n");
    }
    return false;
}

bool Preprocessor::may_open(const CoreString& name, const CoreString& path) {
    if (open_paths_.contains(path.get_view())) {
        report_for_file("File '", name, "' includes itself.\n");
        return false;
    }
    if (open_files_.size() > limits_.include_depth) {
        report_for_file("File '", name, "' is included too deeply.\n");
        return false;
    }
    if (!open_files_.empty() && include_count_++ >= limits_.include_count) {
        report_for_file("File '", name, "' is one include too many.\n");
        return false;
    }
    return true;
}

bool Preprocessor::load(const CoreString& name, const CoreString& path, Source& source, Progress progress) {
    SysFile file;
    if (!file.open(path, SysFile::MODE_READ, SysFile::TYPE_BINARY)) {
        report_for_file("Failed to open file '", name, "'.\n");
        return false;
    }
    const auto size = static_cast<core_uint64>(file.get_size());
    if (size > max_file_size || size > limits_.source_size - source_size_) {
        report_for_file("File '", name, "' is too large.\n");
        return false;
    }
    source_size_ += size;
    if (!read_whole(file, source.text)) {
        report_for_file("Failed to open file '", name, "'.\n");
        return false;
    }
    if (source.text.get_length() > cipher_magic.size()) {
        progress.set_value(0.3F);
        if (source.text.get_view().starts_with(cipher_magic)) {
            return decipher_source(name, source);
        }
    }
    if (platform_translates_text && !read_as_text(name, path, source.text)) {
        return false;
    }
    progress.set_value(0.3F);
    note_storage(false);
    return true;
}

bool Preprocessor::read_as_text(const CoreString& name, const CoreString& path, CoreString& text) {
    SysFile file;
    if (!file.open(path, SysFile::MODE_READ, SysFile::TYPE_TEXT) || !read_whole(file, text)) {
        report_for_file("Failed to open file '", name, "'.\n");
        return false;
    }
    return true;
}

bool Preprocessor::decipher_source(const CoreString& name, Source& source) {
    const std::string_view block = source.text.get_view().substr(cipher_magic.size());
    if (peek_cipher_length(block, key_.get_view()) >= source.text.get_length()) {
        report_for_file("Failed to read binary data from file '", name, "'.\n");
        return false;
    }
    CoreString text;
    if (!decipher(block, key_.get_view(), text)) {
        report_for_file("Incompatible binary data found in file '", name, "'.\n");
        return false;
    }
    source.text = std::move(text);
    source.is_encrypted = true;
    note_storage(true);
    return true;
}

void Preprocessor::note_storage(bool is_encrypted) noexcept {
    if (!has_loaded_) {
        has_loaded_ = true;
        is_encrypted_ = is_encrypted;
    }
}

/// Scans the innermost file that is open until the outermost one has come to its end.
double Preprocessor::scan(Progress progress) {
    progress.set_step_count(open_files_.back().source.text.get_length());
    double version = failed;
    while (!open_files_.empty()) {
        OpenFile& file = open_files_.back();
        const SourcePiece piece = file.scanner.next();
        if (!append_piece(file.name, piece)) {
            return failed;
        }
        switch (piece.then) {
        case SourcePiece::Then::end:
            version = leave();
            if (version == failed) { // an include whose version line says so fails, too
                return failed;
            }
            break;
        case SourcePiece::Then::version:
            file.version = text_to_double(piece.argument).value;
            break;
        case SourcePiece::Then::include:
            if (!include(piece)) {
                return failed;
            }
            break;
        case SourcePiece::Then::open_include:
            report_open_include(piece);
            return failed;
        case SourcePiece::Then::comment:
            break;
        }
    }
    return version;
}

bool Preprocessor::append_piece(const CoreString& name, const SourcePiece& piece) {
    if (observer_ != nullptr && !piece.text.empty()) {
        observer_->piece_copied(piece.offset, static_cast<unsigned int>(piece.text.size()),
                                out_->get_length());
    }
    const core_uint64 size = core_uint64{out_->get_length()} + piece.text.size();
    if (size > limits_.expanded_size || !out_->append(piece.text)) {
        report_for_file("File '", name, "' is too large.\n");
        return false;
    }
    return true;
}

bool Preprocessor::include(const SourcePiece& piece) {
    const CoreString name(piece.argument);
    if (observer_ != nullptr) {
        observer_->include_found(piece.directive_offset, piece.directive_length, name);
    }
    return enter(name, Progress(nullptr));
}

void Preprocessor::report_open_include(const SourcePiece& piece) {
    if (observer_ != nullptr) {
        const auto fault = ParserReadObserver::FAULT_INCLUDE_LEFT_OPEN;
        observer_->directive_fault_found(fault, piece.directive_offset, piece.directive_length,
                                         fault_text(fault, {}));
    }
}

} // namespace bk
