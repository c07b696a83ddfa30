#include "bench/phases.h"

#include "core/core_version.h"
#include "parser/parser_group.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <vector>

namespace bench {

namespace {

using Document = std::unique_ptr<ParserGroup>;

template <class Step>
double seconds_of(Step step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

Document new_document() {
    return std::make_unique<ParserGroup>("root");
}

void parse_into(ParserGroup& root, const CoreString& text) {
    root.set_text(text, CoreVersion(1.2), nullptr);
}

Document parsed(const CoreString& text) {
    Document document = new_document();
    parse_into(*document, text);
    return document;
}

double read_value(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_BOOL:
        return entry.get_bool(i) ? 1.0 : 0.0;
    case ParserValue::TYPE_INT:
        return entry.get_int(i);
    case ParserValue::TYPE_DOUBLE:
        return entry.get_double(i);
    case ParserValue::TYPE_STRING:
        return entry.get_string(i).get_length();
    default:
        return 0.0;
    }
}

/// Reads every value in its own type.
double walk(const ParserGroup& root) {
    double sum = 0.0;
    std::vector<const ParserGroup*> to_visit = {&root};
    while (!to_visit.empty()) {
        const ParserGroup& group = *to_visit.back();
        to_visit.pop_back();
        for (const ParserEntry* entry : group.get_entries()) {
            if (entry->is_group()) {
                to_visit.push_back(entry->get_group(0));
                continue;
            }
            for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                sum += read_value(*entry, i);
            }
        }
    }
    return sum;
}

double time_parse(const CoreString& text) {
    const Document document = new_document();
    return seconds_of([&] { parse_into(*document, text); });
}

double time_first_walk(const CoreString& text) {
    const Document document = parsed(text);
    return seconds_of([&] { benchmark::DoNotOptimize(walk(*document)); });
}

double time_second_walk(const CoreString& text) {
    const Document document = parsed(text);
    benchmark::DoNotOptimize(walk(*document));
    return seconds_of([&] { benchmark::DoNotOptimize(walk(*document)); });
}

double time_print(const CoreString& text) {
    const Document document = parsed(text);
    CoreString out;
    return seconds_of([&] { document->get_text(out, false, true, 1); });
}

double time_destroy(const CoreString& text) {
    Document document = parsed(text);
    return seconds_of([&] { document.reset(); });
}

} // namespace

const Phase phases[5] = {{"parse", time_parse},
                         {"walk_first", time_first_walk},
                         {"walk_again", time_second_walk},
                         {"print", time_print},
                         {"destroy", time_destroy}};

} // namespace bench
