#include "document/problems/values/parse_checked_impl.h"

#include "document/problems/faults/fault_story_impl.h"
#include "document/problems/faults/unread_words_impl.h"
#include "document/problems/files/joins_impl.h"
#include "document/problems/files/source_checks_impl.h"
#include "document/problems/values/checked_sink_impl.h"
#include "parser/text/parser_grammar_impl.h"

namespace bk_parser {

std::vector<std::string> parse_checked(ParserGroup& root, std::string_view expanded, bool has_escapes,
                                       const SourceMap& sources, const ParserLimits& limits,
                                       ProblemList& problems, const CheckProgress& progress) {
    Meter& meter = progress.meter;
    const Joins joins(expanded, sources);
    CheckedSink sink(root, expanded, has_escapes, limits, sources, joins, problems);
    bk::Grammar<CheckedSink> grammar(expanded, sink);
    grammar.run([&meter](const bk::WordStream& words, bool) { meter.reach(words.consumed()); });
    sink.finish();
    Losses losses(sources);
    FaultStory story(sink.get_faults(), sources, joins, limits, losses, problems);
    const std::size_t fault_count = sink.get_faults().get_records().size();
    meter.start(progress.of_faults, fault_count);
    story.explain(meter);
    meter.stop(fault_count);
    joins.tell(expanded, losses, problems);
    check_sources(sources, has_escapes, losses, problems);
    story.tell();
    return unread_words(sink.get_faults(), sources);
}

} // namespace bk_parser
