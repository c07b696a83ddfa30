#include "core/files/sys_line_ends_impl.h"

namespace bk {

void append_with_cr_lf(std::string& out, std::string_view text) {
    for (std::size_t line_end = text.find('\n'); line_end != std::string_view::npos;
         line_end = text.find('\n')) {
        out.append(text.substr(0, line_end)).append("\r\n");
        text.remove_prefix(line_end + 1);
    }
    out.append(text);
}

void LineEndReader::append(std::string& out, std::string_view piece) {
    for (const char c : piece) {
        if (cr_held_ && c != '\n') {
            out += '\r';
        }
        cr_held_ = c == '\r';
        if (!cr_held_) {
            out += c;
        }
    }
}

void LineEndReader::finish(std::string& out) {
    if (cr_held_) {
        out += '\r';
        cr_held_ = false;
    }
}

} // namespace bk
