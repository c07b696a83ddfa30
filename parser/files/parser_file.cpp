#include "parser/parser_file.h"

#include "core/files/sys_path_impl.h"
#include "core/reports/app_progress_impl.h"
#include "core/reports/core_guard_impl.h"
#include "core/sys_file.h"
#include "parser/files/parser_file_preprocess_impl.h"
#include "parser/files/parser_log_host_impl.h"
#include "parser/text/parser_text_reader_impl.h"

#include <utility>

ParserFile::ParserFile(ParserGroup& root)
    : root_(&root), serial_version_(default_parser_serial_version), root_owners_(new unsigned int(1)) {}

/// The file owns the group once the file object exists.
ParserFile::ParserFile(std::unique_ptr<ParserGroup> root) : ParserFile(*root) {
    static_cast<void>(root.release());
}

ParserFile::ParserFile(const CoreString& filename) : ParserFile(std::make_unique<ParserGroup>("root")) {
    set_filename(filename);
}

ParserFile::ParserFile(const ParserFile& other)
    : CoreBaseObject(other), filename_(other.filename_), folder_(other.folder_), root_(other.root_),
      search_paths_(other.search_paths_), storage_(other.storage_), serial_version_(other.serial_version_),
      dependencies_(other.dependencies_), root_owners_(other.root_owners_), limits_(other.limits_) {
    ++*root_owners_;
}

ParserFile& ParserFile::operator=(const ParserFile& other) {
    if (this == &other) {
        return *this;
    }
    ParserFile copy(other); // copying may throw, so it comes before any change
    filename_ = std::move(copy.filename_);
    folder_ = std::move(copy.folder_);
    std::swap(root_, copy.root_);
    std::swap(root_owners_, copy.root_owners_);
    search_paths_.swap(copy.search_paths_);
    storage_ = other.storage_;
    serial_version_ = other.serial_version_;
    std::swap(dependencies_, copy.dependencies_);
    limits_ = other.limits_;
    return *this;
}

ParserFile::~ParserFile() {
    release_root();
}

void ParserFile::release_root() noexcept {
    if (--*root_owners_ == 0) {
        delete root_;
        delete root_owners_;
    }
}

void ParserFile::clear() {
    root_->clear();
}

void ParserFile::set_filename(const CoreString& filename) {
    CoreString name(filename);
    folder_ = CoreString(bk::folder_of(name.get_view(), bk::native_path_style));
    filename_ = std::move(name);
}

void ParserFile::set_search_paths(const CoreVector<CoreString>& paths) {
    search_paths_ = paths;
}

void ParserFile::get_text(CoreString& out) const {
    root_->get_text(out, false, true, 1);
}

bool ParserFile::read(const CoreString& filename, const CoreString& key, AppProgressBar* progress) {
    return bk::guarded("ParserFile.read", false, [&] {
        try {
            const bool is_read = read_document(filename, key, progress);
            serial_version_ = is_read ? serial_version_ : CoreVersion();
            return is_read;
        } catch (...) {
            serial_version_ = CoreVersion();
            throw;
        }
    });
}

bool ParserFile::read_document(const CoreString& filename, const CoreString& key, AppProgressBar* progress) {
    const bk::Progress bar(progress);
    bar.set_value(0.0F);
    if (!filename.is_empty()) {
        set_filename(filename);
    }
    CoreString text;
    if (!preprocess(text, key, progress)) {
        return false;
    }
    return bk::within_task(bar, [&] {
        return bk::read_text(*root_, text, serial_version_, bar, observer_, limits_) !=
               bk::TextResult::stopped;
    });
}

bool ParserFile::preprocess(CoreString& text, const CoreString& key, AppProgressBar* progress) {
    CoreVector<CoreString> places(search_paths_);
    places.add(CoreString()); // last, the name as it is
    dependencies_ = CoreSet<CoreString>();
    const bk::Progress bar(progress);
    const auto run = [&] {
        bk::LogHost host(places.get_count(), observer_);
        bk::Preprocessor preprocessor(places, key, host, limits_);
        serial_version_ = preprocessor.run(filename_, bar, text);
        dependencies_ = preprocessor.included_paths();
        if (storage_ == STORAGE_UNKNOWN && preprocessor.has_loaded()) {
            storage_ = preprocessor.is_encrypted() ? STORAGE_ENCRYPTED : STORAGE_PLAIN;
        }
        return serial_version_.is_set();
    };
    return bk::within_task(bar, run, 0.5F);
}
