#pragma once

#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "tests/support/scratch_folder.h"

#include <string>
#include <string_view>

/// Stores the tree of a text in each form with ParserFile and ParserImpl.
class StoredForms {
public:
    explicit StoredForms(std::string_view text) : file_(CoreString()) {
        file_.get_root().set_text(CoreString(text), default_parser_serial_version, nullptr);
    }

    std::string text() { return write(ParserFile::MODE_TEXT, ""); }
    std::string binary() { return write(ParserFile::MODE_BINARY, ""); }
    std::string enciphered(const char* key) { return write(ParserFile::MODE_TEXT, key); }
    std::string archive() {
        ParserArchive archive;
        ParserImpl::archive_group(file_.get_root(), archive, false, nullptr);
        ParserImpl::save_archive(archive, folder_.core_path("out"), nullptr);
        return folder_.read("out");
    }

private:
    std::string write(ParserFile::Mode mode, const char* key) {
        file_.write(mode, folder_.core_path("out"), CoreString(key));
        return folder_.read("out");
    }

    ScratchFolder folder_;
    ParserFile file_;
};
