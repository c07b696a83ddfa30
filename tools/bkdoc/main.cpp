#include "exit_code.h"
#include "key_source.h"
#include "output.h"
#include "platform.h"
#include "stream_device.h"
#include "unfinished_file.h"
#include "verbs.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstring>
#include <exception>
#include <functional>
#include <map>
#include <new>
#include <sstream>

namespace bkdoc {

namespace {

constexpr const char* version_line = "bkdoc " BKDOC_VERSION;
constexpr const char* version_help = "Show the version, and end.";
constexpr const char* exit_text =
    "Exit code: 0 clean, 1 the document has faults, 2 it could not be read or written.";

constexpr const char* convert_text =
    "The form of IN shows in its first bytes. Includes are spliced in. No form keeps comments and the "
    "layout\n"
    "of a text. What is made is read back and compared before OUT is replaced, in one step; OUT may be IN "
    "when\n"
    "IN has no faults. The binary form keeps names and values only, without kinds, templates and array "
    "counts;\n"
    "a text tells numbers apart by their spelling alone.\n"
    "Exit code: 0 converted, 1 converted, but IN has faults (what is good of it is in OUT) or --lossy lost\n"
    "something, 2 not converted: OUT is as it was.";

using Action = std::function<ExitCode(Streams&, StreamDevice&)>;

/// The command line: each verb is described once, with the action that it stands for.
class CommandLine {
public:
    CommandLine() {
        app_.set_version_flag("--version", version_line, version_help);
        app_.get_formatter()->label("SUBCOMMAND", "VERB");
        app_.get_formatter()->label("Positionals", "Arguments");
        app_.get_formatter()->label("REQUIRED", "");
        app_.set_help_flag("-h,--help", "Show what can be done, and end.");
        app_.allow_windows_style_options(false);
        app_.require_subcommand(1);
        app_.footer(exit_text);
        add_check();
        add_cat();
        add_tree();
        add_info();
        add_same();
        add_convert();
        add_dump();
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
    /// A verb whose options are filled in by the command line and then handed to `run`.
    template <class Options>
    CLI::App& add_verb(const char* name, const char* description,
                       ExitCode (*run)(const Options&, Streams&, StreamDevice&), Options& options) {
        CLI::App& verb = *app_.add_subcommand(name, description)->group("Verbs");
        verb.callback([this, run, &options] {
            action_ = [this, run, &options](Streams& streams, StreamDevice& device) {
                if (const auto reason = find_key(key_source_, options.open.key)) {
                    complain(streams, *reason);
                    return EXIT_UNREADABLE;
                }
                return run(options, streams, device);
            };
        });
        verb.set_version_flag("--version", version_line, version_help);
        add_key(verb);
        verb.footer(exit_text);
        return verb;
    }

    void add_key(CLI::App& verb) {
        verb.add_option_function<std::string>(
                "--key", [this](const std::string& text) { key_source_.key = text; },
                "Key of enciphered documents. Other users of the machine can see it;\n"
                "a file, or the environment variable BKDOC_KEY, keeps it from them.")
            ->type_name("KEY");
        verb.add_option_function<std::string>(
                "--key-file", [this](const std::string& path) { key_source_.file = path; },
                "The first line of this file is the key; here - is a name as any other.")
            ->type_name("FILE");
    }

    static void add_folders(CLI::App& verb, OpenOptions& open) {
        verb.add_option("-I", open.search_paths,
                        "Look for included files in this folder; may be given again.")
            ->allow_extra_args(false)
            ->type_name("DIR");
        verb.add_flag("--trusted", open.trusted,
                      "Read the document however much includes or an archive make of it.");
    }

    template <class Target>
    static void add_document(CLI::App& verb, const char* name, Target& target) {
        verb.add_option(name, target, "Document; - is standard input.")->required()->type_name("");
    }

    void add_check() {
        CLI::App& verb =
            add_verb("check", "Report the faults of documents, with the place of each.", run_check, check_);
        add_folders(verb, check_.open);
        add_document(verb, "FILE", check_.files);
    }

    void add_cat() {
        CLI::App& verb =
            add_verb("cat", "Write a document as the library writes it, includes spliced in.", run_cat, cat_);
        add_folders(verb, cat_.open);
        add_document(verb, "FILE", cat_.file);
        verb.add_flag("--compact", cat_.compact, "All entries on one line.");
    }

    void add_tree() {
        CLI::App& verb =
            add_verb("tree", "Draw the groups, entries and values of a document.", run_tree, tree_);
        add_folders(verb, tree_.open);
        add_document(verb, "FILE", tree_.file);
        verb.add_option("--depth", tree_.depth, "Draw only so many levels.")->type_name("N");
    }

    void add_info() {
        CLI::App& verb =
            add_verb("info", "Say what a document is made of and which files it needs.", run_info, info_);
        add_folders(verb, info_.open);
        add_document(verb, "FILE", info_.file);
    }

    void add_same() {
        CLI::App& verb = add_verb("same", "Say whether two documents hold the same tree.", run_same, same_);
        add_folders(verb, same_.open);
        add_document(verb, "A", same_.first);
        add_document(verb, "B", same_.second);
        verb.add_flag("--content", same_.content,
                      "Only names and values count, a number whatever its type: what every form keeps.");
        verb.footer("Exit code: 0 the same, 1 different, 2 one could not be read.");
    }

    static DocumentForm form_named(const std::string& name) {
        static const std::map<std::string, DocumentForm> forms = {{"text", DocumentForm::text},
                                                                  {"binary", DocumentForm::binary},
                                                                  {"cipher", DocumentForm::enciphered},
                                                                  {"archive", DocumentForm::archive}};
        const auto found = forms.find(name);
        if (found == forms.end()) {
            throw CLI::ValidationError("--to", "the form is one of text, binary, cipher and archive");
        }
        return found->second;
    }

    void add_convert() {
        CLI::App& verb = add_verb("convert", "Store a document in another form.", run_convert, convert_);
        add_folders(verb, convert_.open);
        add_document(verb, "IN", convert_.file);
        verb.add_option("OUT", convert_.target, "File to write; - is standard output.")
            ->required()
            ->type_name("");
        verb.add_option_function<std::string>(
                "--to", [this](const std::string& name) { convert_.form = form_named(name); },
                "Form to store it in: text, binary, cipher or archive.")
            ->required()
            ->type_name("FORM");
        verb.add_flag("--lossy", convert_.lossy, "Convert even what reads back with other names or values.");
        verb.footer(convert_text);
    }

    void add_dump() {
        CLI::App& verb =
            add_verb("dump", "Explain the bytes of a binary, enciphered or archive file.", run_dump, dump_);
        add_document(verb, "FILE", dump_.file);
        verb.footer("Exit code: 0 every byte is explained, 1 one is not, 2 the file could not be read.");
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
        std::string reason = why(stop);
        std::replace(reason.begin(), reason.end(), '\n', ' ');
        complain(streams, reason);
        return EXIT_UNREADABLE;
    }

    // A word without a place may be a key behind a misspelt option: of such words only the names of long options are
    // shown.
    std::string why(const CLI::ParseError& stop) const {
        if (dynamic_cast<const CLI::ExtrasError*>(&stop) == nullptr) {
            return stop.what();
        }
        bool has_option = false;
        for (const std::string& word : app_.remaining(true)) {
            if (word.starts_with("--")) {
                return "unknown option " + word.substr(0, word.find('=')) + "; --help lists them";
            }
            has_option = has_option || word.starts_with("-");
        }
        if (has_option) {
            return "an option that the verb does not know; --help lists them";
        }
        return "more words than the verb takes; --help lists what it does";
    }

    CLI::App app_{"Look at bk documents: check them, print them, compare and convert them.", "bkdoc"};
    Action action_;
    CheckOptions check_;
    CatOptions cat_;
    TreeOptions tree_;
    InfoOptions info_;
    SameOptions same_;
    ConvertOptions convert_;
    DumpOptions dump_;
    KeySource key_source_;
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
    bkdoc::watch_ending_signals();
    bkdoc::Output out(stdout, bkdoc::takes_colours(stdout), bkdoc::is_terminal(stdout));
    bkdoc::Output err(stderr, bkdoc::takes_colours(stderr), bkdoc::is_terminal(stderr));
    bkdoc::Streams streams{out, err};
    bkdoc::ExitCode code = bkdoc::EXIT_UNREADABLE;
    try {
        code = bkdoc::run(bkdoc::command_line(argc, argv), streams);
    } catch (const std::bad_alloc&) {
        bkdoc::complain(streams, "out of memory");
    } catch (const std::exception& fault) {
        bkdoc::complain(streams, fault.what());
    }
    return bkdoc::finish(streams, code);
}
