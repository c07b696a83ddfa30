#include "values/text.h"

#include "tree/tree.h"

#include "parser/files/parser_document_impl.h"
#include "parser/text/parser_text_writer_impl.h"

#include <cstdint>
#include <new>

namespace bk_python {

std::string indented_text(const ParserGroup& group) {
    constexpr std::uint64_t most = 0xFFFFFFFF;
    std::uint64_t blanks = 0;
    for (const bk_parser::Visit& visit : bk_parser::walk(group)) {
        // The closing brace of a group is on a line of its own.
        const std::uint64_t lines = first_group(visit.entry()) == nullptr ? 1 : 2;
        blanks += lines * 4 * visit.depth();
    }
    if (blanks > most) {
        fail(PyExc_OverflowError, "indented, the text is more than 4 GiB; ask for compact=True");
    }
    return bk_parser::to_text(group);
}

std::string compact_text(const ParserGroup& group) {
    CoreString text;
    if (!bk::print_group(text, group, false, false, 1)) {
        throw std::bad_alloc();
    }
    const std::string_view words = text.get_view();
    return std::string(words.substr(words.starts_with(' ') ? 1 : 0));
}

std::string version_line() {
    CoreString line;
    line.append(bk::version_directive);
    line += bk::written_version;
    return std::string(line.get_view()) + "\n";
}

} // namespace bk_python
