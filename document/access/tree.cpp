#include "document/access.h"

#include "document/paths/tree_cursor_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/text/parser_text_writer_impl.h"

#include <new>
#include <string>
#include <string_view>

namespace bk_parser {

void freeze(const ParserGroup& root) {
    TreeCursor cursor(root);
    while (cursor.next()) {
        const ParserEntry& entry = *cursor.entry();
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            bk::EntryAccess::value(entry, i).make_value();
        }
    }
}

std::string to_text(const ParserGroup& group) {
    CoreString text;
    if (!bk::print_group(text, group, false, true, 1)) {
        throw std::bad_alloc();
    }
    std::string_view lines = text.get_view();
    lines.remove_prefix(lines.starts_with('\n') ? 1 : 0);
    std::string out(lines);
    if (!out.empty() && !out.ends_with('\n')) {
        out += '\n';
    }
    return out;
}

} // namespace bk_parser
