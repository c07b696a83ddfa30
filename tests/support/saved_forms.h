#pragma once

#include "core/sys_file.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "tests/support/plain_text.h"

#include <ostream>
#include <string>
#include <vector>

/// The forms in which a document is saved, for tests that are the same for each form.
struct SavedForm {
    const char* name;
    /// Stores a tree. Returns false when the file could not be opened. Only the log says when not everything was stored.
    bool (*save)(ParserFile& file, const CoreString& path);
    /// Reads into an empty group. Returns whether the library reports success.
    bool (*load)(ParserGroup& root, const CoreString& path);
};

inline const std::vector<SavedForm>& saved_forms() {
    static const auto load_text = [](ParserGroup& root, const CoreString& path, const char* key) {
        ParserFile file{CoreString()};
        const bool is_read = file.read(path, key, nullptr);
        file.get_root().remove_entry("#Brellwick_Serial_Version");
        root.set(file.get_root());
        return is_read;
    };
    static const std::vector<SavedForm> forms = {
        {"text",
         [](ParserFile& file, const CoreString& path) { return file.write(ParserFile::MODE_TEXT, path, ""); },
         [](ParserGroup& root, const CoreString& path) { return load_text(root, path, ""); }},
        {"enciphered",
         [](ParserFile& file, const CoreString& path) {
             return file.write(ParserFile::MODE_TEXT, path, "key");
         },
         [](ParserGroup& root, const CoreString& path) { return load_text(root, path, "key"); }},
        {"binary",
         [](ParserFile& file, const CoreString& path) {
             return file.write(ParserFile::MODE_BINARY, path, "");
         },
         [](ParserGroup& root, const CoreString& path) {
             SysFile bytes;
             if (!bytes.open(path, SysFile::MODE_READ, SysFile::TYPE_BINARY)) {
                 return false;
             }
             CoreVector<char> data;
             const core_int64 size = bytes.get_size();
             const core_int64 got =
                 size == 0 ? 0 : bytes.read(data.extend(static_cast<unsigned int>(size)), 1, size);
             ParserFile file{CoreString()};
             const bool is_read = bytes.close() && got == size && file.set_binary(data);
             root.set(file.get_root());
             return is_read;
         }},
        {"archive",
         [](ParserFile& file, const CoreString& path) {
             ParserArchive archive;
             ParserImpl::archive_group(file.get_root(), archive, false, nullptr);
             return ParserImpl::save_archive(archive, path, nullptr).is_empty();
         },
         [](ParserGroup& root, const CoreString& path) {
             ParserArchive archive;
             return ParserImpl::load_archive(archive, path, nullptr).is_empty() &&
                    ParserImpl::group_set_archive(root, archive, nullptr, ParserLimits());
         }},
    };
    return forms;
}

inline void PrintTo(const SavedForm& form, std::ostream* out) {
    *out << form.name;
}

/// The tree on one line.
inline std::string printed(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}
