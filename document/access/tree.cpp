#include "document/access.h"

#include "document/paths/tree_cursor_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/text/parser_text_writer_impl.h"

#include <new>

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
    return std::string(text.get_view());
}

} // namespace bk_parser
