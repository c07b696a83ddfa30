#include "document/merge.h"
#include "input/files/input.h"
#include "output/display/text_display.h"
#include "output/stored_file.h"
#include "verbs/verbs.h"

#include <array>

namespace bkdoc {

ExitCode run_merge(const Arguments& arguments, Streams& streams) {
    const std::array<Input, 3> inputs = {Input(arguments.operands().at(0)), Input(arguments.operands().at(1)),
                                         Input(arguments.operands().at(2))};
    for (const Input& input : inputs) {
        if (!input.refusal.empty()) {
            complain(streams, input.refusal);
            return EXIT_UNREADABLE;
        }
    }
    const std::string& ours = arguments.operands().at(1);
    const bk_parser::MergeResult result =
        bk_parser::merge_texts(inputs[0].bytes, inputs[1].bytes, inputs[2].bytes);
    if (!result.ok()) {
        complain(streams, "cannot merge into " + shown(ours, file_name_limit) + ": " + result.reason);
        return EXIT_UNREADABLE;
    }
    if (!arguments.has("--write")) {
        streams.out << result.text;
    } else if (const std::string reason = store_file(ours, result.text, streams); !reason.empty()) {
        complain(streams, reason);
        return EXIT_UNREADABLE;
    }
    if (result.conflicts != 0) {
        complain(streams,
                 shown(ours, file_name_limit) + ": " + counted(result.conflicts, "conflict", "conflicts"));
        return EXIT_FAULTS;
    }
    return EXIT_CLEAN;
}

} // namespace bkdoc
