#include "core/sys_file.h"
#include "document/merge.h"
#include "input/files/input.h"
#include "output/display/text_display.h"
#include "verbs/verbs.h"

#include <array>

namespace bkdoc {

namespace {

bool store(const std::string& path, const std::string& text) {
    SysFile file;
    const auto size = static_cast<core_int64>(text.size());
    if (!file.open(CoreString(std::string_view(path)), SysFile::MODE_WRITE, SysFile::TYPE_BINARY)) {
        return false;
    }
    const bool is_taken = file.write(text.data(), size) == size;
    return file.close() && is_taken;
}

} // namespace

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
    } else if (!store(ours, result.text)) {
        complain(streams, shown(ours, file_name_limit) + ": cannot be stored");
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
