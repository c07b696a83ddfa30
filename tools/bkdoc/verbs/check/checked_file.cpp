#include "verbs/check/checked_file.h"

#include "input/options/config.h"

#include <limits>
#include <utility>

namespace bkdoc {

namespace {

std::size_t most_problems(const CheckRules& rules, const Config& config) {
    const std::size_t most = rules.max_problems    ? *rules.max_problems
                             : config.max_problems ? *config.max_problems
                                                   : usual_most_problems;
    return most == 0 ? std::numeric_limits<std::size_t>::max() : most;
}

void take_sources(const bk_parser::Document& document, CheckedFile& checked) {
    for (const bk_parser::DocumentFile& file : document.files()) {
        if (!file.path.empty()) {
            checked.sources.push_back(file.path);
        }
    }
    for (const bk_parser::Include& include : document.includes()) {
        checked.sources.insert(checked.sources.end(), include.tried.begin(), include.tried.end());
    }
}

void take_problems(const OpenedDocument& document, bool strict, CheckedFile& checked) {
    for (const bk_parser::Problem& problem : document.problems()) {
        if (&problem == document.refusal()) {
            continue;
        }
        ToldProblem& told = checked.problems.emplace_back();
        told.chain = chain_of(problem, document.document().includes());
        told.problem = problem;
        if (problem.file.empty()) {
            told.problem.file = document.name();
        }
        if (strict) {
            told.problem.severity = bk_parser::Severity::error;
        }
    }
}

} // namespace

CheckedFile check_file(const std::string& operand, const CheckRules& rules,
                       std::function<void(double)> tell) {
    CheckedFile checked;
    checked.name = shown_operand(operand);
    OpenOptions open = rules.open;
    const Config none;
    const Config& config = open.use_config ? config_for(folder_of_operand(operand)) : none;
    if (open.use_config) {
        checked.sources.push_back(folder_of_operand(operand) / config_name); // may be created while watching
        if (!config.file.empty()) {
            checked.sources.push_back(config.file);
        }
    }
    checked.most_problems = most_problems(rules, config);
    if (!config.fault.empty()) {
        checked.refusal = config.fault;
        checked.code = EXIT_UNREADABLE;
        return checked;
    }
    open.allow.insert(open.allow.end(), config.allow.begin(), config.allow.end());
    const OpenedDocument document = open_quietly(operand, open, std::move(tell));
    if (document.is_cancelled()) {
        checked.code = EXIT_INTERRUPTED;
        return checked;
    }
    if (const bk_parser::Problem* const refusal = document.refusal()) {
        checked.refusal = tool_message(*refusal, {});
        checked.code = EXIT_UNREADABLE;
    }
    if (operand != "-") {
        checked.sources.push_back(document.document().path());
    }
    take_sources(document.document(), checked);
    take_problems(document, rules.strict || config.strict, checked);
    return checked;
}

} // namespace bkdoc
