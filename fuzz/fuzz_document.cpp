#include "document/document.h"
#include "fuzz/input.h"
#include "tests/support/counting_log.h"
#include "tests/support/plain_text.h"

#include <string>

// Loads any bytes as a document in any form. The load keeps what it could read and logs nothing. Watching its
// progress does not change the result.

namespace {

std::string print(const bk_parser::Document& document) {
    CoreString text;
    document.root().get_text(text, false, false, 1);
    return plain(text);
}

void look_at_problems(const bk_parser::LoadResult& result, std::size_t size) {
    for (const bk_parser::Problem& problem : result.problems) {
        require(!problem.code.empty() && !problem.message.empty(), "a problem says what it is");
        require((problem.line == 0) == (problem.column == 0), "a place has a line and a column");
        if (result.document.form() == bk_parser::Form::text) {
            require(problem.offset + problem.length <= size, "a problem is inside the text");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const CountingLog log;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    bk_parser::LoadOptions options;
    options.key = "k";
    const bk_parser::LoadResult result = bk_parser::parse(bytes, options);
    look_at_problems(result, size);
    double last = -1;
    options.progress = [&last](double value) {
        require(value >= last && value <= 1, "progress rises to one");
        last = value;
        return true;
    };
    const bk_parser::LoadResult watched = bk_parser::parse(bytes, options);
    require(last == 1, "progress ends at one");
    require(print(watched.document) == print(result.document), "watching changes nothing");
    require(watched.problems.size() == result.problems.size(), "watching changes no problem");
    require(log.count == 0, "nothing is logged");
    return 0;
}
