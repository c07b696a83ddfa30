#pragma once

#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "tests/support/bkdoc_run.h"

/// Documents for the command-line tool in each form, made by the library, not by the tool.
inline constexpr std::string_view bkdoc_key = "sesame";

inline const std::vector<std::string>& bkdoc_forms() {
    static const std::vector<std::string> forms = {"text", "binary", "cipher", "archive"};
    return forms;
}

/// Stores a text in a form, as `form`.bkd, and returns the path.
inline std::string write_in_form(const ScratchFolder& folder, const std::string& form,
                                 std::string_view text) {
    const CoreString path = folder.core_path(form + ".bkd");
    ParserFile file(path);
    ParserGroup& root = file.get_root();
    root.set_text(CoreString(text), default_parser_serial_version, nullptr);
    if (form == "archive") {
        ParserArchive archive;
        ParserImpl::archive_group(root, archive, false, nullptr);
        ParserImpl::save_archive(archive, path, nullptr);
    } else {
        file.write(form == "binary" ? ParserFile::MODE_BINARY : ParserFile::MODE_TEXT, "",
                   form == "cipher" ? CoreString(bkdoc_key) : CoreString());
    }
    return folder.path(form + ".bkd");
}

/// Runs the tool with the key.
inline BkdocRun run_with_key(std::vector<std::string> arguments, std::string_view input = {}) {
    arguments.insert(arguments.end(), {"--key", std::string(bkdoc_key)});
    return run_bkdoc(arguments, input);
}

inline bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}
