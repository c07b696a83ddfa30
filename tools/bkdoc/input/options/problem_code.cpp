#include "input/options/problem_code.h"

#include "command/suggestion.h"
#include "document/problem_codes.h"

#include <algorithm>
#include <vector>

namespace bkdoc {

std::string unknown_code(std::string_view word) {
    const std::vector<std::string_view> codes = bk_parser::problem_codes_in_order();
    if (std::find(codes.begin(), codes.end(), word) != codes.end()) {
        return {};
    }
    const std::string meant = did_you_mean(word, codes);
    return "unknown code '" + std::string(word) + "'" +
           (meant.empty() ? "; each problem shows its code in brackets after the message" : meant);
}

} // namespace bkdoc
