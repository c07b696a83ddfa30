#pragma once

#include "parser/parser_file.h"
#include "tests/support/expanded_text.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/scratch_folder.h"

#include <string>
#include <string_view>
#include <vector>

/// The result of reading a file.
struct Reading {
    bool result = false;
    double version = 0.0;
    std::string expanded;              ///< the text that the parser read
    std::string tree;                  ///< the root group in one line
    std::vector<std::string> messages; ///< in order
    std::vector<std::string> dependencies;
};

/// A temporary folder with documents. Includes are found in the folder itself unless other folders are given.
class DocumentFolder : public ScratchFolder {
public:
    /// Reads the file of that name. The search folders are relative to this folder.
    Reading read_document(std::string_view name, const std::vector<std::string>& folders = {""}) const {
        ParserFile file(core(path(name)));
        CoreVector<CoreString> paths;
        for (const std::string& folder : folders) {
            paths.add(core(path(folder)));
        }
        file.set_search_paths(paths);
        return read_into(file, "");
    }

    static Reading read_into(ParserFile& file, std::string_view name, AppProgressBar* progress = nullptr) {
        RecordingLog log;
        ExpandedText expanded;
        Reading reading;
        file.set_read_observer(&expanded);
        reading.result = file.read(core(name), "", progress);
        file.set_read_observer(nullptr);
        reading.version = file.get_serial_version().get_value();
        reading.expanded = expanded.text;
        CoreString text;
        file.get_root().get_text(text, false, false, 1);
        reading.tree = plain(text);
        for (const LoggedMessage& message : log.messages) {
            EXPECT_EQ(message.level, 2) << message.text;
            reading.messages.push_back(message.text);
        }
        for (const CoreString& dependency : file.get_dependencies()) {
            reading.dependencies.push_back(plain(dependency));
        }
        return reading;
    }

    /// Stores a text as main.bkd and reads it.
    Reading read_text(std::string_view text) const {
        write("main.bkd", text);
        return read_document("main.bkd");
    }
};

/// The bytes of a text file to which this text was written on this platform.
inline std::string on_disk(std::string text) {
#if defined(_WIN32)
    for (std::size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 2)) {
        text.replace(i, 1, "\r\n");
    }
#endif
    return text;
}

/// The messages for a name that was searched for in `places` places and not found.
inline std::vector<std::string> not_found(const std::string& name, unsigned int places) {
    std::vector<std::string> messages = {"File '" + name + "' not found.\n", "  Looked for:\n"};
    for (unsigned int i = 0; i < places; ++i) {
        messages.push_back("    - '" + name + "'\n");
    }
    return messages;
}
