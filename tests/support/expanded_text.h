#pragma once

#include "parser/parser_read_observer.h"

#include <string>
#include <vector>

/// Joins the text that the parser reads from the pieces of files that an observer was told of.
class ExpandedText : public ParserReadObserver {
public:
    std::string text;

    void file_entered(const CoreString&, const CoreString&, const CoreString& content) override {
        open_files_.push_back(&content);
    }
    void file_left() override { open_files_.pop_back(); }
    void piece_copied(const unsigned int& offset, const unsigned int& length,
                      const unsigned int& expanded) override {
        if (expanded != text.size()) {
            text += "<gap>";
        }
        text += open_files_.back()->get_view().substr(offset, length);
    }

private:
    std::vector<const CoreString*> open_files_;
};
