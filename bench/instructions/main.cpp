// Runs each step in the life of a document under callgrind, which writes one file for each step. The script `run` beside this file reads
// these files. The counts are the same in every run, however busy the machine is.

#include "bench/curves.h"
#include "bench/scene.h"
#include "bench/scene_text.h"
#include "bench/walk.h"
#include "core/core_version.h"
#include "parser/parser_group.h"

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

using Document = std::unique_ptr<ParserGroup>;

constexpr unsigned int value_count = 20000;

/// Gets the results, so that the compiler cannot leave out the work.
volatile double kept_sum = 0.0;

/// Results are stored here, so that the compiler cannot remove a step whose result is not used.
template <class Step>
void counted(const char* name, Step step) {
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    step();
    CALLGRIND_DUMP_STATS_AT(name);
    CALLGRIND_STOP_INSTRUMENTATION;
}

bool live(const CoreString& text) {
    Document document = std::make_unique<ParserGroup>("root");
    bool is_read = false;
    counted("parse", [&] { is_read = document->set_text(text, CoreVersion(1.2), nullptr); });
    CoreString pretty;
    CoreString compact;
    counted("print_pretty", [&] { document->get_text(pretty, false, true, 1); });
    counted("print_compact", [&] { document->get_text(compact, false, false, 1); });
    counted("walk_first", [&] { kept_sum = bench::walk(*document); });
    counted("walk_again", [&] { kept_sum = bench::walk(*document); });
    CoreVector<char> bytes;
    counted("encode", [&] { bytes = document->get_binary(false); });
    counted("destroy", [&] { document.reset(); });

    Document decoded = std::make_unique<ParserGroup>("root");
    core_uint64 position = 0;
    bool is_decoded = false;
    counted("decode", [&] { is_decoded = decoded->set_binary(bytes, position); });
    CoreString printed;
    counted("print_numbers", [&] { decoded->get_text(printed, false, true, 1); });
    return is_read && is_decoded && !pretty.is_empty() && !compact.is_empty() && !printed.is_empty();
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view input = argc > 1 ? argv[1] : "";
    if (input != "scene" && input != "curves") {
        std::fputs("usage: bk_parser_instructions scene|curves\n", stderr);
        return 2;
    }
    bench::SceneText sink;
    (input == "scene" ? bench::make_scene : bench::make_curves)(sink, value_count, 1);
    std::printf("%u values\n", value_count);
    return live(CoreString(sink.get_text())) ? 0 : 1;
}
