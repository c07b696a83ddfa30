#include "parser/parser_file_preprocess_impl.h"

#include "core/core_diagnostic_impl.h"
#include "core/sys_file.h"
#include "core/sys_line_ends_impl.h"
#include "parser/parser_cipher_impl.h"
#include "parser/parser_fault_text_impl.h"

#include <algorithm>

namespace bk {

namespace {

/// How deep includes may nest: enough for any project, and little enough for the stack.
constexpr std::size_t max_include_depth = 200;
constexpr core_int64 max_file_size = CoreString::max_length;
constexpr double failed = 0.0;

void report_for_file(const char* before, const CoreString& name, const char* after) {
    report_warning(before, name, after);
}

} // namespace

Preprocessor::Preprocessor(const CoreVector<CoreString>& search_paths, const CoreString& key,
                           ParserReadObserver* observer)
    : search_paths_(search_paths), key_(key), observer_(observer) {}

double Preprocessor::run(const CoreString& name, Progress progress, CoreString& text) {
    out_ = &text;
    return preprocess(name, progress);
}

double Preprocessor::preprocess(const CoreString& name, Progress progress) {
    CoreString path;
    Source source;
    if (!find(name, path) || !may_open(name, path) || !load(name, path, source, progress)) {
        return failed;
    }
    open_paths_.push_back(path);
    if (observer_ != nullptr) {
        observer_->file_entered(name, path, source.text);
    }
    const double version = scan(name, source, progress);
    if (observer_ != nullptr) {
        observer_->file_left();
    }
    open_paths_.pop_back();
    return version;
}

bool Preprocessor::find(const CoreString& name, CoreString& path) {
    for (const CoreString& folder : search_paths_) {
        CoreString candidate(folder);
        if (!folder.is_empty() && folder.get_view().back() != '/') {
            candidate += '/';
        }
        candidate += name;
        if (SysFilesystem::file_exists(candidate)) {
            path = SysFilesystem::get_full_file_path(candidate);
            if (open_paths_.empty()) {
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

bool Preprocessor::may_open(const CoreString& name, const CoreString& path) const {
    if (std::find(open_paths_.begin(), open_paths_.end(), path) != open_paths_.end()) {
        report_for_file("File '", name, "' includes itself.\n");
        return false;
    }
    if (open_paths_.size() > max_include_depth) {
        report_for_file("File '", name, "' is included too deeply.\n");
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
    if (file.get_size() > max_file_size) {
        report_for_file("File '", name, "' is too large.\n");
        return false;
    }
    file.read(source.text, file.get_size());
    file.close();
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
    if (!file.open(path, SysFile::MODE_READ, SysFile::TYPE_TEXT)) {
        report_for_file("Failed to open file '", name, "'.\n");
        return false;
    }
    file.read(text, file.get_size());
    file.close();
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

double Preprocessor::scan(const CoreString& name, const Source& source, Progress progress) {
    const ProgressTask task(progress, 0.7F);
    progress.set_step_count(source.text.get_length());

    SourceScanner scanner(source.text.get_view(), progress);
    if (source.is_encrypted && open_paths_.size() == 1) {
        scanner.keep_later_version_lines(); // the entry that writing put there
    }
    double version = 1.0;
    for (;;) {
        const SourcePiece piece = scanner.next();
        if (!append_piece(name, piece)) {
            return failed;
        }
        switch (piece.then) {
        case SourcePiece::Then::end:
            return version;
        case SourcePiece::Then::version:
            version = static_cast<double>(CoreString(piece.argument));
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
}

bool Preprocessor::append_piece(const CoreString& name, const SourcePiece& piece) {
    if (observer_ != nullptr && !piece.text.empty()) {
        observer_->piece_copied(piece.offset, static_cast<unsigned int>(piece.text.size()),
                                out_->get_length());
    }
    if (!out_->append(piece.text)) {
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
    return preprocess(name, Progress(nullptr)) != failed;
}

void Preprocessor::report_open_include(const SourcePiece& piece) {
    if (observer_ != nullptr) {
        const auto fault = ParserReadObserver::FAULT_INCLUDE_LEFT_OPEN;
        observer_->directive_fault_found(fault, piece.directive_offset, piece.directive_length,
                                         fault_text(fault, {}));
    }
}

} // namespace bk
