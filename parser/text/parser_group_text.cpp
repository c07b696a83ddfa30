#include "core/reports/core_guard_impl.h"
#include "parser/parser_group.h"
#include "parser/text/parser_grammar_impl.h"
#include "parser/text/parser_text_reader_impl.h"
#include "parser/text/parser_tree_sink_impl.h"

namespace bk {

namespace {

TextResult parse(ParserGroup& group, const CoreString& text, const CoreVersion& version, Progress progress,
                 ParserReadObserver* observer, const ParserLimits& limits) {
    TreeSink sink(group, has_escapes(version), observer, limits, text.get_length());
    Grammar<TreeSink> grammar(text.get_view(), sink);
    if (progress) {
        grammar.watch_outermost();
    }
    const bool is_clean = grammar.run([progress](const WordStream& words, bool is_outermost) {
        if (progress && is_outermost) {
            progress.set_value(words.fraction());
        }
    });
    sink.finish();
    return sink.is_stopped() ? TextResult::stopped : is_clean ? TextResult::clean : TextResult::faulty;
}

} // namespace

TextResult read_text(ParserGroup& group, const CoreString& text, const CoreVersion& version,
                     Progress progress, ParserReadObserver* observer, const ParserLimits& limits) {
    return guarded("ParserGroup.set_text", TextResult::stopped,
                   [&] { return parse(group, text, version, progress, observer, limits); });
}

} // namespace bk

bool ParserGroup::set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress) {
    return set_text(text, version, progress, nullptr);
}

bool ParserGroup::set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress,
                           ParserReadObserver* observer) {
    return set_text(text, version, progress, observer, ParserLimits());
}

bool ParserGroup::set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress,
                           ParserReadObserver* observer, const ParserLimits& limits) {
    return bk::read_text(*this, text, version, bk::Progress(progress), observer, limits) ==
           bk::TextResult::clean;
}
