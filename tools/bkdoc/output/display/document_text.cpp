#include "output/display/document_text.h"

#include "input/log_keeper.h"
#include "parser/parser_file.h"

#include <new>

namespace bkdoc {

namespace {

std::string text_behind_version(const ParserGroup& root, bool pretty) {
    const LogKeeper log;
    CoreString text;
    root.get_text(text, false, pretty, 1);
    if (!log.first().empty()) {
        throw std::bad_alloc(); // the only way to fail
    }
    return version_line() + "\n" + std::string(text.get_view());
}

} // namespace

std::string version_line() {
    CoreString line("#Brellwick_Serial_Version ");
    line += default_parser_serial_version.get_value();
    return std::string(line.get_view());
}

std::string document_text(const ParserGroup& root) {
    return text_behind_version(root, true);
}

std::string compact_document_text(const ParserGroup& root) {
    return text_behind_version(root, false) + "\n";
}

} // namespace bkdoc
