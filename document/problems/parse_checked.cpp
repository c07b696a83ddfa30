#include "document/problems/parse_checked_impl.h"

#include "parser/text/parser_grammar_impl.h"
#include "parser/text/parser_tree_sink_impl.h"

#include <string>

namespace bk_parser {

namespace {

std::string_view code_of(ParserReadObserver::Fault fault) noexcept {
    switch (fault) {
    case ParserReadObserver::FAULT_TEXT_AFTER_END:
        return "text-after-end";
    case ParserReadObserver::FAULT_GROUP_LEFT_OPEN:
        return "group-left-open";
    case ParserReadObserver::FAULT_NESTED_TOO_DEEPLY:
        return "nested-too-deeply";
    default:
        return "syntax";
    }
}

class FaultCollector final : public ParserReadObserver {
public:
    FaultCollector(const SourceMap& sources, ProblemList& problems) noexcept
        : sources_(sources), problems_(problems) {}

    void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                     const CoreString& message) override {
        const bool is_limit = fault == FAULT_NESTED_TOO_DEEPLY;
        problems_.add(Severity::error, code_of(fault),
                      std::string(message.get_view()) + (is_limit ? ": ParserLimits::nesting_depth" : ""),
                      sources_.find(expanded, length));
    }

private:
    const SourceMap& sources_;
    ProblemList& problems_;
};

} // namespace

void parse_checked(ParserGroup& root, std::string_view expanded, bool has_escapes, const SourceMap& sources,
                   const ParserLimits& limits, ProblemList& problems, Meter& meter) {
    FaultCollector faults(sources, problems);
    bk::TreeSink sink(root, has_escapes, &faults, limits);
    sink.leave_log_out();
    bk::Grammar<bk::TreeSink> grammar(expanded, sink);
    grammar.run([&meter](const bk::WordStream& words, bool) { meter.reach(words.consumed()); });
    sink.finish();
}

} // namespace bk_parser
