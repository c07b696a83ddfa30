#include "document/problem_codes.h"

#include "document/problems/list/problem_codes_impl.h"

namespace bk_parser {

std::vector<std::string_view> problem_codes_in_order() {
    std::vector<std::string_view> codes;
    for (const ProblemCode& row : problem_codes) {
        codes.push_back(row.code);
    }
    return codes;
}

} // namespace bk_parser
