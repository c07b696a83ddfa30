#include "document/access.h"
#include "parser/parser_group.h"
#include "verbs/edit/edit_run.h"
#include "verbs/edit/entry_name.h"
#include "verbs/edit/literals.h"
#include "verbs/find/find_run.h"
#include "verbs/verbs.h"

#include <memory>

namespace bkdoc {

namespace {

using Values = std::vector<std::unique_ptr<Literals>>;

void append(ParserEntry& entry, const Literals& literals) {
    for (unsigned int i = 0; i < literals.count(); ++i) {
        if (literals.is_group(i)) {
            auto group = std::make_unique<ParserGroup>(literals.group(i));
            entry.add_group(group.get());
            static_cast<void>(group.release()); // the entry owns it now
            continue;
        }
        const bk_parser::GivenValue given = literals.given(i);
        bk_parser::access::set_values(entry, entry.get_value_count(), {&given, 1},
                                      bk_parser::access::ListEnd::keep);
    }
}

EditOutcome add_entry(OpenedDocument& document, const bk_parser::Path& path, const Values& values) {
    EditOutcome outcome;
    ParserEntry* const entry = bk_parser::add(document.root(), path);
    if (entry == nullptr) {
        outcome.refusal = document.name() + ": " + std::string(path.text()) +
                          " cannot be created; missing steps must be names, as in light<spot>[\"key\"]/power";
        return outcome;
    }
    for (const auto& literals : values) {
        append(*entry, *literals);
    }
    outcome.is_found = true;
    outcome.anywhere = 1;
    return outcome;
}

} // namespace

ExitCode run_add(const Arguments& arguments, Streams& streams) {
    const auto& operands = arguments.operands();
    const bk_parser::Path path(operands[0]);
    if (!accept_path(path, "PATH", streams)) {
        return EXIT_UNREADABLE;
    }
    Values values;
    for (std::size_t i = 1; i + 1 < operands.size(); ++i) {
        values.push_back(
            std::make_unique<Literals>(operands[i], wanted_type(arguments.value_or("--type", "")), true));
        if (!values.back()->refusal().empty()) {
            complain(streams, values.back()->refusal());
            return EXIT_UNREADABLE;
        }
    }
    warn_of_name(last_name(operands[0]), streams);
    const EditRequest request{
        {operands.back()}, operands[0],
        "entry",           "entries",
        "added",           [&](OpenedDocument& document) { return add_entry(document, path, values); }};
    return run_edit(arguments, streams, request);
}

} // namespace bkdoc
