#include "exit_code.h"
#include "output.h"
#include "platform.h"
#include "stream_device.h"
#include "verbs.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstring>
#include <exception>
#include <functional>
#include <sstream>

namespace bkdoc {

namespace {

constexpr const char* version_text = "bkdoc " BKDOC_VERSION;
constexpr const char* exit_text = "Exit code: 0 clean, 1 the document has faults, 2 it could not be read.";

using Action = std::function<ExitCode(Streams&, StreamDevice&)>;

/// The command line: each verb is described once, with the action that it stands for.
class CommandLine {
public:
    CommandLine() {
        app_.set_version_flag("--version", version_text);
        app_.set_help_flag("-h,--help", "Show what can be done, and end.");
        app_.require_subcommand(1);
        app_.footer(std::string("A FILE of - is standard input.\n") + exit_text);
        add_check();
        add_cat();
        add_tree();
        add_info();
        add_same();
    }

    /// What to do; nothing when the command line was answered or refused already, with `code` set.
    Action parse(std::vector<std::string> words, Streams& streams, ExitCode& code) {
        if (!knows_verb(words, streams)) {
            code = EXIT_UNREADABLE;
            return {};
        }
        try {
            std::reverse(words.begin(), words.end()); // the parser takes them from the back
            app_.parse(words);
        } catch (const CLI::ParseError& stop) {
            code = answer(stop, streams);
            return {};
        }
        return action_;
    }

private:
    CLI::App& add_verb(const char* name, const char* description, Action action, OpenOptions& open) {
        CLI::App& verb = *app_.add_subcommand(name, description);
        verb.callback([this, action] { action_ = action; });
        verb.set_version_flag("--version", version_text);
        verb.add_option("-I", open.search_paths,
                        "Look for included files in this folder; may be given again.")
            ->allow_extra_args(false)
            ->type_name("DIR");
        verb.allow_windows_style_options(false);
        return verb;
    }

    void add_check() {
        auto run = [this](Streams& streams, StreamDevice& device) {
            return run_check(check_, streams, device);
        };
        CLI::App& verb =
            add_verb("check", "Report the faults of documents, with the place of each.", run, check_.open);
        verb.add_option("FILE", check_.files, "Documents")->required()->type_name("");
        verb.footer(exit_text);
    }

    void add_cat() {
        auto run = [this](Streams& streams, StreamDevice& device) { return run_cat(cat_, streams, device); };
        CLI::App& verb = add_verb("cat", "Write a document as the library writes it, includes spliced in.",
                                  run, cat_.open);
        verb.add_option("FILE", cat_.file, "Document")->required()->type_name("");
        verb.add_flag("--compact", cat_.compact, "All entries on one line.");
        verb.footer(exit_text);
    }

    void add_tree() {
        auto run = [this](Streams& streams, StreamDevice& device) {
            return run_tree(tree_, streams, device);
        };
        CLI::App& verb =
            add_verb("tree", "Draw the groups, entries and values of a document.", run, tree_.open);
        verb.add_option("FILE", tree_.file, "Document")->required()->type_name("");
        verb.add_option("--depth", tree_.depth, "Draw only so many levels.")->type_name("N");
        verb.footer(exit_text);
    }

    void add_info() {
        auto run = [this](Streams& streams, StreamDevice& device) {
            return run_info(info_, streams, device);
        };
        CLI::App& verb =
            add_verb("info", "Say what a document is made of and which files it needs.", run, info_.open);
        verb.add_option("FILE", info_.file, "Document")->required()->type_name("");
        verb.footer(exit_text);
    }

    void add_same() {
        auto run = [this](Streams& streams, StreamDevice& device) {
            return run_same(same_, streams, device);
        };
        CLI::App& verb = add_verb("same", "Say whether two documents hold the same tree.", run, same_.open);
        verb.add_option("A", same_.first, "Document")->required()->type_name("");
        verb.add_option("B", same_.second, "Document")->required()->type_name("");
        verb.footer("Exit code: 0 the same, 1 different, 2 one could not be read.");
    }

    bool is_verb(const std::string& word) const {
        const auto verbs =
            app_.get_subcommands([&word](const CLI::App* verb) { return verb->get_name() == word; });
        return !verbs.empty();
    }

    bool knows_verb(const std::vector<std::string>& words, Streams& streams) const {
        if (words.empty()) {
            complain(streams, "no verb is given; bkdoc --help lists them");
            return false;
        }
        const std::string& verb = words.front();
        if (verb.starts_with("-") || is_verb(verb)) {
            return true;
        }
        complain(streams, "unknown verb '" + verb + "'; bkdoc --help lists them");
        return false;
    }

    ExitCode answer(const CLI::ParseError& stop, Streams& streams) const {
        if (stop.get_exit_code() == 0) {
            std::ostringstream text;
            app_.exit(stop, text, text);
            streams.out << text.str();
            return EXIT_CLEAN;
        }
        std::string reason = stop.what();
        std::replace(reason.begin(), reason.end(), '\n', ' ');
        complain(streams, reason);
        return EXIT_UNREADABLE;
    }

    CLI::App app_{"Look at bk documents: check them, print them, compare them.", "bkdoc"};
    Action action_;
    CheckOptions check_;
    CatOptions cat_;
    TreeOptions tree_;
    InfoOptions info_;
    SameOptions same_;
};

ExitCode run(const std::vector<std::string>& words, Streams& streams) {
    CommandLine line;
    ExitCode code = EXIT_CLEAN;
    const Action action = line.parse(words, streams, code);
    if (!action) {
        return code;
    }
    StreamDevice device(streams.out);
    return action(streams, device);
}

// A reader that went away wants no more; anything else that stops the output has to be told.
ExitCode finish(Streams& streams, ExitCode code) {
    if (!streams.out.close()) {
        const int error = streams.out.get_error();
        if (!is_closed_pipe(error)) {
            complain(streams, std::string("standard output: ") + std::strerror(error));
        }
        code = EXIT_UNREADABLE;
    }
    return streams.err.close() ? code : EXIT_UNREADABLE;
}

} // namespace

} // namespace bkdoc

int main(int argc, char** argv) {
    bkdoc::prepare_streams();
    bkdoc::Output out(stdout, bkdoc::takes_colours(stdout), bkdoc::is_terminal(stdout));
    bkdoc::Output err(stderr, bkdoc::takes_colours(stderr), bkdoc::is_terminal(stderr));
    bkdoc::Streams streams{out, err};
    bkdoc::ExitCode code = bkdoc::EXIT_UNREADABLE;
    try {
        code = bkdoc::run(bkdoc::command_line(argc, argv), streams);
    } catch (const std::exception& fault) {
        bkdoc::complain(streams, fault.what());
    }
    return bkdoc::finish(streams, code);
}
