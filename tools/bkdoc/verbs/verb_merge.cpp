#include "document/merge.h"
#include "input/files/input.h"
#include "output/display/text_display.h"
#include "output/problems/report.h"
#include "output/stored_file.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <array>
#include <vector>

namespace bkdoc {

namespace {

/// One of the three texts.
struct Side {
    Input input;
    std::string name;      // in messages
    std::string_view file; // in the problems of a merge
};

/// The names in messages. git gives a merge driver temporary files, so --name names the file that they stand for.
std::array<Side, 3> sides_of(const Arguments& arguments) {
    const auto& operands = arguments.operands();
    std::array<Side, 3> sides = {Side{Input(operands.at(0)), shown_operand(operands.at(0)), "base"},
                                 Side{Input(operands.at(1)), shown_operand(operands.at(1)), "ours"},
                                 Side{Input(operands.at(2)), shown_operand(operands.at(2)), "theirs"}};
    if (const auto name = arguments.value("--name")) {
        sides[0].name = *name + " (base)";
        sides[1].name = *name;
        sides[2].name = *name + " (theirs)";
    }
    return sides;
}

/// The errors because of which the texts are not merged.
void write_errors(const std::array<Side, 3>& sides, std::vector<bk_parser::Problem> problems, Output& err) {
    for (bk_parser::Problem& problem : problems) {
        const auto side = std::find_if(sides.begin(), sides.end(),
                                       [&](const Side& one) { return problem.file == one.file; });
        problem.file.clear();
        ProblemWriter(err, side == sides.end() ? "merged" : side->name).write(problem, {});
    }
}

} // namespace

ExitCode run_merge(const Arguments& arguments, Streams& streams) {
    const std::array<Side, 3> sides = sides_of(arguments);
    for (const Side& side : sides) {
        if (!side.input.refusal.empty()) {
            complain(streams, side.input.refusal);
            return EXIT_UNREADABLE;
        }
    }
    const std::string name = shown(sides[1].name, file_name_limit);
    const bk_parser::MergeResult result =
        bk_parser::merge_texts(sides[0].input.bytes, sides[1].input.bytes, sides[2].input.bytes);
    if (!result.ok()) {
        write_errors(sides, result.problems, streams.err);
        complain(streams, "cannot merge into " + name + ": " + result.reason);
        return EXIT_UNREADABLE;
    }
    if (!arguments.has("--write")) {
        streams.out << result.text;
    } else if (const std::string reason = store_file(arguments.operands().at(1), result.text, streams);
               !reason.empty()) {
        complain(streams, reason);
        return EXIT_UNREADABLE;
    }
    if (result.conflicts != 0) {
        complain(streams, name + ": " + counted(result.conflicts, "conflict", "conflicts"));
        return EXIT_FAULTS;
    }
    return EXIT_CLEAN;
}

} // namespace bkdoc
