#include "core/app_progress_impl.h"
#include "parser/parser_grammar_impl.h"
#include "parser/parser_group.h"
#include "parser/parser_tree_sink_impl.h"

bool ParserGroup::set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress) {
    return set_text(text, version, progress, nullptr);
}

bool ParserGroup::set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress,
                           ParserReadObserver* observer) {
    const bk::Progress bar(progress);
    bk::TreeSink sink(*this, bk::has_escapes(version), observer);
    bk::Grammar<bk::TreeSink> grammar(text.get_view(), sink);
    return grammar.run([&bar](const bk::WordStream& words) {
        if (bar) {
            bar.set_value(words.fraction());
        }
    });
}
