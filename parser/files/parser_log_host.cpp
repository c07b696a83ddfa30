#include "parser/files/parser_log_host_impl.h"

#include "core/files/sys_line_ends_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "core/sys_file.h"
#include "parser/text/parser_fault_text_impl.h"

namespace bk {

namespace {

/// Returns false when a read failed, so that half a document does not pass for a whole one.
bool read_whole(SysFile& file, CoreString& text) {
    file.read(text, file.get_size());
    return file.close();
}

} // namespace

SourceRead LogHost::read(const CoreString& path, core_uint64 most, CoreString& bytes) {
    SysFile file;
    if (!file.open(path, SysFile::MODE_READ, SysFile::TYPE_BINARY)) {
        return SourceRead::unreadable;
    }
    if (static_cast<core_uint64>(file.get_size()) > most) {
        return SourceRead::too_large;
    }
    return read_whole(file, bytes) ? SourceRead::done : SourceRead::unreadable;
}

bool LogHost::read_as_text(const CoreString& path, CoreString& text) {
    if (!platform_translates_text) {
        return true;
    }
    SysFile file;
    return file.open(path, SysFile::MODE_READ, SysFile::TYPE_TEXT) && read_whole(file, text);
}

void LogHost::failed(const SourceFailure& failure) {
    const CoreString& name = failure.name;
    switch (failure.fault) {
    case SourceFault::not_found:
        report_not_found(name);
        break;
    case SourceFault::includes_itself:
        report_warning("File '", name, "' includes itself.\n");
        break;
    case SourceFault::included_too_deeply:
        report_warning("File '", name, "' is included too deeply.\n");
        break;
    case SourceFault::too_many_includes:
        report_warning("File '", name, "' is one include too many.\n");
        break;
    case SourceFault::file_too_large:
    case SourceFault::text_too_large:
        report_warning("File '", name, "' is too large.\n");
        break;
    case SourceFault::unreadable:
        report_warning("Failed to open file '", name, "'.\n");
        break;
    case SourceFault::enciphered_length:
        report_warning("Failed to read binary data from file '", name, "'.\n");
        break;
    case SourceFault::enciphered_block:
        report_warning("Incompatible binary data found in file '", name, "'.\n");
        break;
    case SourceFault::no_version:
        break;
    case SourceFault::include_left_open:
        report_open_include(failure.piece);
        break;
    }
}

void LogHost::report_not_found(const CoreString& name) const {
    report_warning("File '", name, "' not found.\n");
    report_warning("  Looked for:\n");
    for (unsigned int i = 0; i < search_path_count_; ++i) {
        report_warning("    - '", name, "'\n");
    }
}

void LogHost::report_open_include(const SourcePiece& piece) {
    if (observer_ != nullptr) {
        const auto fault = ParserReadObserver::FAULT_INCLUDE_LEFT_OPEN;
        observer_->directive_fault_found(fault, piece.directive_offset, piece.directive_length,
                                         fault_text(fault, {}));
    }
}

void LogHost::include_found(const SourcePiece& piece) {
    if (observer_ != nullptr) {
        observer_->include_found(piece.directive_offset, piece.directive_length, CoreString(piece.argument));
    }
}

void LogHost::version_found(const SourcePiece&, double) {}

void LogHost::entered(const SourceEntered& file) {
    if (observer_ != nullptr) {
        observer_->file_entered(file.name, file.path, file.text);
    }
}

void LogHost::left(CoreString&&) {
    if (observer_ != nullptr) {
        observer_->file_left();
    }
}

void LogHost::copied(const SourcePiece& piece, unsigned int expanded) {
    if (observer_ != nullptr) {
        observer_->piece_copied(piece.offset, static_cast<unsigned int>(piece.text.size()), expanded);
    }
}

} // namespace bk
