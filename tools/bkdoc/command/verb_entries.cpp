#include "command/verb_entries.h"

#include "input/key_source.h"
#include "verbs/verbs.h"

#include <limits>

namespace bkdoc {

namespace {

/// Fills in how documents are opened. False, with the reason told, when the key cannot be had.
bool take_opening(const Arguments& arguments, OpenOptions& open, Streams& streams) {
    open.search_paths = arguments.values("-I");
    open.trusted = arguments.has("--trusted");
    const KeySource source{arguments.value("--key"), arguments.value("--key-file")};
    const auto reason = find_key(source, open.key);
    if (reason) {
        complain(streams, *reason);
    }
    return !reason;
}

/// Runs a verb of one file whose options have no more to say.
template <class Options>
ExitCode run_on_file(ExitCode (*run)(const Options&, Streams&, StreamDevice&), Options& options,
                     const Arguments& arguments, Streams& streams, StreamDevice& device) {
    options.file = arguments.operands().front();
    return take_opening(arguments, options.open, streams) ? run(options, streams, device) : EXIT_UNREADABLE;
}

DocumentForm form_named(std::string_view name) {
    return name == "binary"    ? DocumentForm::binary
           : name == "cipher"  ? DocumentForm::enciphered
           : name == "archive" ? DocumentForm::archive
                               : DocumentForm::text;
}

} // namespace

ExitCode check_entry(const Arguments& arguments, Streams& streams, StreamDevice& device) {
    CheckOptions options;
    options.files = arguments.operands();
    return take_opening(arguments, options.open, streams) ? run_check(options, streams, device)
                                                          : EXIT_UNREADABLE;
}

ExitCode cat_entry(const Arguments& arguments, Streams& streams, StreamDevice& device) {
    CatOptions options;
    options.compact = arguments.has("--compact");
    return run_on_file(run_cat, options, arguments, streams, device);
}

ExitCode tree_entry(const Arguments& arguments, Streams& streams, StreamDevice& device) {
    TreeOptions options;
    options.depth = arguments.number_or("--depth", std::numeric_limits<std::size_t>::max());
    return run_on_file(run_tree, options, arguments, streams, device);
}

ExitCode info_entry(const Arguments& arguments, Streams& streams, StreamDevice& device) {
    InfoOptions options;
    return run_on_file(run_info, options, arguments, streams, device);
}

ExitCode same_entry(const Arguments& arguments, Streams& streams, StreamDevice& device) {
    SameOptions options;
    options.first = arguments.operands().at(0);
    options.second = arguments.operands().at(1);
    options.content = arguments.has("--content");
    return take_opening(arguments, options.open, streams) ? run_same(options, streams, device)
                                                          : EXIT_UNREADABLE;
}

ExitCode convert_entry(const Arguments& arguments, Streams& streams, StreamDevice& device) {
    const auto form = arguments.value("--to");
    if (!form) {
        complain(streams, "convert needs --to with a form: text, binary, cipher, archive");
        return EXIT_UNREADABLE;
    }
    ConvertOptions options;
    options.target = arguments.operands().at(1);
    options.form = form_named(*form);
    options.lossy = arguments.has("--lossy");
    return run_on_file(run_convert, options, arguments, streams, device);
}

ExitCode dump_entry(const Arguments& arguments, Streams& streams, StreamDevice& device) {
    DumpOptions options;
    return run_on_file(run_dump, options, arguments, streams, device);
}

} // namespace bkdoc
