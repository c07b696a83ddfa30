#include "document/document.h"
#include "document/problems/list/problem_codes_impl.h"
#include "parser/parser_file.h"
#include "tests/support/recording_log.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/told_problems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>

namespace {

const char* const pieces[] = {"a",
                              "bc",
                              "yes",
                              "true",
                              "null",
                              "#k",
                              "<empty>",
                              "1",
                              "2.5",
                              "\"s\"",
                              "\"",
                              "\\",
                              "\\\"",
                              "'",
                              "{",
                              "}",
                              "(",
                              ")",
                              "[2]",
                              "<t>",
                              "=",
                              ",",
                              "%",
                              ";",
                              "/*",
                              "*/",
                              "//",
                              "// c\n",
                              "//\"\n",
                              "\n",
                              "\n",
                              "\n",
                              "\r\n",
                              " ",
                              " ",
                              " ",
                              " ",
                              "\t",
                              "=======",
                              "\n<<<<<<< x\n",
                              "\n>>>>>>> x\n",
                              "#include \"inc.bkd\"",
                              "#include \"open.bkd\"",
                              "#Include \"x\"",
                              "#Include x ",
                              "#Brellwick_Serial_Version 1.2\n",
                              "#Brellwick_Serial_Version 1.0\n",
                              "#brellwick_serial_version 1",
                              "\xFF",
                              "\xEF\xBB\xBF"};

std::string random_text(std::mt19937& random) {
    std::string text;
    for (auto count = 1 + random() % 12; count != 0; --count) {
        text += pieces[random() % std::size(pieces)];
    }
    return text;
}

class document_problems_losses : public testing::Test {
protected:
    document_problems_losses() {
        folder.write("inc.bkd", "c 3");
        folder.write("open.bkd", "d % \"x");
    }

    /// Whether the library logs anything while it reads the text.
    bool logs(const std::string& path) const {
        RecordingLog log;
        ParserFile file(CoreString{});
        file.set_search_paths({CoreString(std::string_view(folder.path()))});
        file.read(CoreString(std::string_view(path)), CoreString(), nullptr);
        return !log.is_empty();
    }

    ScratchFolder folder;
};

TEST_F(document_problems_losses, a_text_is_in_order_when_nothing_is_logged_and_no_code_says_error) {
    std::mt19937 random(17);
    unsigned int failures = 0;
    for (int i = 0; i < 3000 && failures < 10; ++i) {
        const std::string text = random_text(random);
        const std::string path = folder.write("main.bkd", text);
        const bk_parser::LoadResult result = bk_parser::load(path);
        const bool has_error_of_table =
            std::any_of(result.problems.begin(), result.problems.end(), [](const auto& problem) {
                return bk_parser::severity_of(problem.code) == bk_parser::Severity::error;
            });
        if (result.ok() == (logs(path) || has_error_of_table)) {
            ++failures;
            ADD_FAILURE() << "ok() is " << result.ok() << " of " << testing::PrintToString(text) << " with "
                          << testing::PrintToString(told_of(result));
        }
    }
}

} // namespace
