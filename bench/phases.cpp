#include "bench/phases.h"

#include "bench/thread_time.h"
#include "bench/walk.h"
#include "core/core_version.h"
#include "parser/parser_group.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace bench {

namespace {

using Document = std::unique_ptr<ParserGroup>;
using Documents = std::vector<Document>;

template <class Step>
double seconds_of(Step step) {
    const double start = thread_seconds();
    step();
    return thread_seconds() - start;
}

Documents empty_documents(unsigned int count) {
    Documents documents;
    for (unsigned int i = 0; i < count; ++i) {
        documents.push_back(std::make_unique<ParserGroup>("root"));
    }
    return documents;
}

void parse_into(const Documents& documents, const CoreString& text) {
    for (const Document& document : documents) {
        document->set_text(text, CoreVersion(1.2), nullptr);
    }
}

Documents parsed(const CoreString& text, unsigned int copies) {
    Documents documents = empty_documents(copies);
    parse_into(documents, text);
    return documents;
}

void walk_all(const Documents& documents) {
    for (const Document& document : documents) {
        benchmark::DoNotOptimize(walk(*document));
    }
}

double time_parse(const CoreString& text, unsigned int copies) {
    const Documents documents = empty_documents(copies);
    return seconds_of([&] { parse_into(documents, text); });
}

double time_first_walk(const CoreString& text, unsigned int copies) {
    const Documents documents = parsed(text, copies);
    return seconds_of([&] { walk_all(documents); });
}

double time_second_walk(const CoreString& text, unsigned int copies) {
    const Documents documents = parsed(text, copies);
    walk_all(documents);
    return seconds_of([&] { walk_all(documents); });
}

double time_print(const CoreString& text, unsigned int copies) {
    const Documents documents = parsed(text, copies);
    std::vector<CoreString> printed(copies);
    return seconds_of([&] {
        for (unsigned int i = 0; i < copies; ++i) {
            documents[i]->get_text(printed[i], false, true, 1);
        }
    });
}

/// Of a tree whose numbers have been read: converting them is the walk's.
double time_encode(const CoreString& text, unsigned int copies) {
    const Documents documents = parsed(text, copies);
    walk_all(documents);
    std::vector<CoreVector<char>> encoded(copies);
    return seconds_of([&] {
        for (unsigned int i = 0; i < copies; ++i) {
            encoded[i] = documents[i]->get_binary(false);
        }
    });
}

double time_decode(const CoreString& text, unsigned int copies) {
    const CoreVector<char> encoded = parsed(text, 1).front()->get_binary(false);
    const Documents documents = empty_documents(copies);
    return seconds_of([&] {
        for (const Document& document : documents) {
            core_uint64 position = 0;
            document->set_binary(encoded, position);
        }
    });
}

double time_destroy(const CoreString& text, unsigned int copies) {
    Documents documents = parsed(text, copies);
    return seconds_of([&] { documents.clear(); });
}

} // namespace

const Phase phases[7] = {
    {"parse", time_parse},    {"walk_first", time_first_walk}, {"walk_again", time_second_walk},
    {"print", time_print},    {"encode", time_encode},         {"decode", time_decode},
    {"destroy", time_destroy}};

} // namespace bench
