#include "command/command_line.h"
#include "command/table/command_table.h"
#include "output/output.h"
#include "platform/paths.h"
#include "platform/platform.h"
#include "platform/saving_device.h"
#include "platform/unfinished_file.h"
#include "verbs/exit_code.h"

#include <exception>
#include <new>
#include <system_error>

namespace bkdoc {

namespace {

ExitCode run(const CommandLine& line, Streams& streams) {
    if (!line.refusal.empty()) {
        complain(streams, line.refusal);
        return EXIT_UNREADABLE;
    }
    if (!line.arguments) {
        streams.out << line.answer;
        return EXIT_CLEAN;
    }
    const SavingDevice device;
    return line.arguments->verb().run(*line.arguments, streams);
}

// A closed pipe means that the reader has enough. Any other failed write is an error.
ExitCode finish(Streams& streams, ExitCode code) {
    if (!streams.out.close()) {
        const int error = streams.out.get_error();
        if (!is_closed_pipe(error)) {
            complain(streams, "standard output: " + system_reason({error, std::generic_category()}));
        }
        code = EXIT_UNREADABLE;
    }
    return streams.err.close() ? code : EXIT_UNREADABLE;
}

bool is_coloured(std::FILE* stream, std::string_view choice) {
    return choice == "always" || (choice == "auto" && takes_colours(stream));
}

ExitCode run_command(const CommandLine& line) {
    Output out(stdout, is_coloured(stdout, line.color), is_terminal(stdout));
    Output err(stderr, is_coloured(stderr, line.color), is_terminal(stderr));
    Streams streams{out, err};
    ExitCode code = EXIT_UNREADABLE;
    try {
        code = run(line, streams);
    } catch (const std::bad_alloc&) {
        complain(streams, "out of memory");
    } catch (const std::exception& fault) {
        complain(streams, fault.what());
    }
    return finish(streams, code);
}

} // namespace

} // namespace bkdoc

int main(int argc, char** argv) {
    bkdoc::prepare_streams();
    bkdoc::watch_ending_signals();
    return bkdoc::run_command(
        bkdoc::understand(bkdoc::command_line(argc, argv), bkdoc::terminal_width(stdout)));
}
