#pragma once

#include "parser/parser_group.h"
#include "tests/support/recording_log.h"

#include <string>
#include <string_view>
#include <vector>

/// Parses a text into a new group, and keeps the result and the messages.
class ParsedText {
public:
    explicit ParsedText(std::string_view text, double version = 1.2) : group_(CoreString("root")) {
        RecordingLog log;
        result_ = group_.set_text(CoreString(text), CoreVersion(version), nullptr);
        for (const auto& message : log.messages) {
            messages_.push_back(message.text);
        }
    }

    ParserGroup& group() { return group_; }
    bool result() const { return result_; }
    const std::vector<std::string>& messages() const { return messages_; }

    /// The entry at a position.
    ParserEntry& entry(unsigned int position) { return *group_.get_entries()[position]; }
    unsigned int count() const { return group_.get_entries().get_count(); }

    /// The whole tree on one line, each entry after one blank.
    std::string print() const {
        CoreString text;
        group_.get_text(text, false, false, 1);
        return std::string(text.get_view());
    }

private:
    ParserGroup group_;
    bool result_ = false;
    std::vector<std::string> messages_;
};

/// The message for a fault at a place.
inline std::string fault_at(unsigned int line, unsigned int column, std::string_view ending) {
    return "ParserGroup.set_text: (" + std::to_string(line) + ":" + std::to_string(column) + ") " +
           std::string(ending) + "\n";
}
