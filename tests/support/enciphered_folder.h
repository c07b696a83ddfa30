#pragma once

#include "tests/support/cipher_reference.h"
#include "tests/support/document_folder.h"

#include <string>
#include <string_view>

/// A temporary folder with plain and enciphered documents. Includes are found in the folder itself.
class EncipheredFolder : public DocumentFolder {
public:
    /// Stores a text that is enciphered by the description of the form, not by the library.
    std::string write_enciphered(std::string_view name, std::string_view text, std::string_view key) const {
        return write(name, cipher_reference::enciphered_file(text, key));
    }

    Reading read_with_key(std::string_view name, std::string_view key) const {
        ParserFile file(core(path(name)));
        return read_into(file, "", key);
    }

    /// Reads a document with a file object whose search path is the folder.
    Reading read_into(ParserFile& file, std::string_view name, std::string_view key,
                      AppProgressBar* progress = nullptr) const {
        RecordingLog log;
        ExpandedText expanded;
        Reading reading;
        file.set_search_paths({core(path())});
        file.set_read_observer(&expanded);
        reading.result = file.read(core(name), core(key), progress);
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
};

/// The messages of a file that cannot be deciphered.
inline std::string unreadable(const std::string& name) {
    return "Failed to read binary data from file '" + name + "'.\n";
}
inline std::string incompatible(const std::string& name) {
    return "Incompatible binary data found in file '" + name + "'.\n";
}
