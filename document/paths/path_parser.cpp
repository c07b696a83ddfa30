#include "document/paths/path_scanner_impl.h"
#include "document/paths/path_steps_impl.h"

#include "core/numbers/core_number_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

using Operator = PathSelector::Operator;

/// Bounded, because the search of an entry takes time in proportion to them.
constexpr std::size_t most_selectors = 64;

/// One function for each rule of the grammar in docs/paths.md. Each returns false after an error.
class PathParser {
public:
    explicit PathParser(std::string_view text) : scanner_(text) {}

    bool parse(std::vector<PathStep>& steps) {
        if (scanner_.is_at_end()) {
            return scanner_.fail("the path is empty; write a name, as in light");
        }
        for (;;) {
            PathStep step;
            if (!take_step(step)) {
                return false;
            }
            add_step(steps, std::move(step));
            if (scanner_.is_at_end()) {
                end_any_depth(steps);
                return true;
            }
            if (!scanner_.take('/')) {
                return scanner_.fail_at_character("write '/' between two steps");
            }
        }
    }
    PathError take_error() { return scanner_.take_error(); }

private:
    static void add_step(std::vector<PathStep>& steps, PathStep step) {
        if (step.is_any_depth && !steps.empty() && steps.back().is_any_depth) {
            return;
        }
        steps.push_back(std::move(step));
    }

    /// A closing "**" finds every entry at any depth.
    static void end_any_depth(std::vector<PathStep>& steps) {
        if (steps.back().is_any_depth) {
            PathStep any;
            any.is_any_name = true;
            steps.push_back(std::move(any));
        }
    }

    bool take_step(PathStep& step) {
        if (scanner_.take("**")) {
            step.is_any_depth = true;
            return scanner_.is_at_end() || scanner_.peek() == '/' ||
                   scanner_.fail_at_character("nothing but '/' follows '**'");
        }
        step.is_any_name = scanner_.take('*');
        if (!step.is_any_name && !take_name(step.name)) {
            return false;
        }
        if (scanner_.take('<') && !take_template(step)) {
            return false;
        }
        while (scanner_.peek() == '[') {
            if (step.selectors.size() == most_selectors) {
                return scanner_.fail("too many brackets; a step has at most 64");
            }
            scanner_.take('[');
            PathSelector selector;
            if (!take_selector(selector)) {
                return false;
            }
            step.index_count += selector.kind == PathSelector::Kind::index ? 1 : 0;
            step.selectors.push_back(std::move(selector));
        }
        return !scanner_.take('@') || scanner_.take_number(step.value, "the number of a value, from 0");
    }

    bool take_name(std::string& name) {
        if (scanner_.peek() == '"') {
            return scanner_.take_string(name);
        }
        return scanner_.take_bare_name(name) ||
               scanner_.fail_at_character("a step is a name; other texts than names stand in quotes");
    }

    bool take_template(PathStep& step) {
        step.template_name.emplace();
        if (scanner_.take('>')) {
            return true;
        }
        return take_name(*step.template_name) &&
               (scanner_.take('>') || scanner_.fail_at_character("write '>' after the template"));
    }

    bool take_selector(PathSelector& selector) {
        scanner_.skip_blanks();
        if (scanner_.is_at_digit()) {
            if (!scanner_.take_number(selector.index, "the number of an entry, from 0")) {
                return false;
            }
        } else if (!take_key_or_condition(selector)) {
            return false;
        }
        scanner_.skip_blanks();
        return scanner_.take(']') || scanner_.fail_at_character("write ']' to end the brackets");
    }

    /// A string is a key, unless what follows makes it the name that a condition begins with.
    bool take_key_or_condition(PathSelector& selector) {
        selector.kind = PathSelector::Kind::condition;
        if (scanner_.peek() != '"') {
            return take_condition(selector);
        }
        std::string text;
        if (!scanner_.take_string(text)) {
            return false;
        }
        scanner_.skip_blanks();
        if (scanner_.peek() == ']' || scanner_.is_at_end()) {
            selector.kind = PathSelector::Kind::key;
            selector.key = std::move(text);
            return true;
        }
        selector.fields.push_back(std::move(text));
        return take_rest_of_operand(selector) && take_comparison(selector);
    }

    bool take_condition(PathSelector& selector) {
        if (scanner_.peek() == '@') {
            return take_rest_of_operand(selector) && take_comparison(selector);
        }
        std::string name;
        if (!scanner_.take_bare_name(name)) {
            return scanner_.fail_at_character(
                "brackets hold a number, a string in quotes, or a condition such as power>50");
        }
        selector.fields.push_back(std::move(name));
        return take_rest_of_operand(selector) && take_comparison(selector);
    }

    bool take_rest_of_operand(PathSelector& selector) {
        while (scanner_.take('/')) {
            selector.fields.emplace_back();
            if (!take_name(selector.fields.back())) {
                return false;
            }
        }
        return !scanner_.take('@') || scanner_.take_number(selector.value, "the number of a value, from 0");
    }

    bool take_comparison(PathSelector& selector) {
        scanner_.skip_blanks();
        const std::size_t place = scanner_.get_position();
        selector.comparison = take_operator();
        if (selector.comparison == Operator::exists) {
            return true;
        }
        scanner_.skip_blanks();
        if (!take_literal(selector.literal)) {
            return false;
        }
        const bool is_ordered =
            selector.comparison != Operator::equal && selector.comparison != Operator::not_equal;
        if (is_ordered && selector.literal.kind == PathLiteral::Kind::boolean) {
            return scanner_.fail("yes and no have no order; compare them with = or !=", place);
        }
        return true;
    }

    Operator take_operator() {
        if (scanner_.take("!=")) {
            return Operator::not_equal;
        }
        if (scanner_.take("<=")) {
            return Operator::at_most;
        }
        if (scanner_.take(">=")) {
            return Operator::at_least;
        }
        return scanner_.take('=')   ? Operator::equal
               : scanner_.take('<') ? Operator::less
               : scanner_.take('>') ? Operator::greater
                                    : Operator::exists;
    }

    bool take_literal(PathLiteral& literal) {
        if (scanner_.peek() == '"') {
            literal.kind = PathLiteral::Kind::string;
            return scanner_.take_string(literal.string);
        }
        std::string word;
        const std::size_t place = scanner_.get_position();
        if (scanner_.take_bare_name(word)) {
            literal.kind = PathLiteral::Kind::boolean;
            literal.boolean = word == "yes";
            return literal.boolean || word == "no" ||
                   scanner_.fail("compare with a number, a string in quotes, yes or no", place);
        }
        const std::string_view digits = scanner_.take_decimal();
        literal.number = bk::text_to_double(digits).value;
        return !digits.empty() ||
               scanner_.fail_at_character("compare with a number, a string in quotes, yes or no");
    }

    PathScanner scanner_;
};

} // namespace

ParsedPath parse_path(std::string_view text) {
    ParsedPath parsed;
    parsed.steps.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '/')) + 2);
    PathParser parser(text);
    if (!parser.parse(parsed.steps)) {
        parsed.steps.clear();
        parsed.error = parser.take_error();
    }
    return parsed;
}

} // namespace bk_parser
