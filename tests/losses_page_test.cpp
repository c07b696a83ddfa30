#include "tests/support/losses.h"
#include "tests/support/page_blocks.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

// docs/formats.md has a table of the losses of a save. Each row has a code and the forms that give it.

using namespace bk_parser;

namespace {

const std::filesystem::path root = BK_PARSER_SOURCE_DIR;

using Words = std::set<std::string>;

std::string form_word(Form form) {
    return form == Form::text      ? "text"
           : form == Form::binary  ? "binary"
           : form == Form::archive ? "archive"
                                   : "encrypted";
}

Words forms_of(std::string cell) {
    if (cell == "all") {
        cell = "text, encrypted, binary, archive";
    }
    Words forms;
    std::istringstream words(cell);
    for (std::string word; std::getline(words >> std::ws, word, ',');) {
        forms.insert(word);
    }
    return forms;
}

/// The forms of each code in the rows of the table.
std::map<std::string, Words> rows_of_page() {
    const std::string page = text_of_file(root / "docs/formats.md");
    const std::string table = page.substr(page.find("\n## Losses of a save\n"));
    const std::regex row("\\| `([a-z-]+)` \\| ([a-z, ]+) \\| [^|]+ \\|\n");
    std::map<std::string, Words> rows;
    for (std::sregex_iterator at(table.begin(), table.end(), row); at != std::sregex_iterator(); ++at) {
        EXPECT_TRUE(rows.emplace((*at)[1].str(), forms_of((*at)[2].str())).second)
            << (*at)[1] << " has two rows";
    }
    return rows;
}

/// The codes of losses in the sources of a save.
Words codes_of_sources() {
    const std::regex given("(?:\\blose\\(|\\bcode = )([^,;]+)[,;]");
    Words codes;
    for (const auto& file : std::filesystem::recursive_directory_iterator(root / "document/save")) {
        const std::string text = file.is_regular_file() ? text_of_file(file.path()) : std::string();
        for (std::sregex_iterator at(text.begin(), text.end(), given); at != std::sregex_iterator(); ++at) {
            const std::string code = (*at)[1].str();
            if (code.size() > 2 && code.front() == '"' && code.back() == '"') {
                codes.insert(code.substr(1, code.size() - 2));
            } else { // only the function that every loss goes through has no literal
                EXPECT_TRUE(code == "std::string_view code" || code == "code") << file.path() << ": " << code;
            }
        }
    }
    return codes;
}

/// The codes of the losses because of which a save in this form refuses the tree.
Words codes_in_form(const Loss& loss, Form form) {
    const ScratchFolder folder;
    Document document;
    loss.make(document.root());
    SaveOptions options;
    options.form = form;
    options.key = "key";
    Words codes;
    for (const Problem& problem : save(document, folder.path("file"), options).losses) {
        codes.insert(problem.code);
    }
    return codes;
}

} // namespace

TEST(losses_page, has_a_row_for_each_code_and_no_other) {
    Words codes;
    for (const auto& [code, forms] : rows_of_page()) {
        codes.insert(code);
    }
    EXPECT_EQ(codes, codes_of_sources());
}

TEST(losses_page, names_the_forms_that_give_each_code) {
    std::map<std::string, Words> given;
    for (const Loss& loss : all_losses()) {
        for (const Form form : {Form::text, Form::enciphered, Form::binary, Form::archive}) {
            for (const std::string& code : codes_in_form(loss, form)) {
                given[code].insert(form_word(form));
            }
        }
    }
    EXPECT_GT(given.size(), 10u);
    std::map<std::string, Words> rows = rows_of_page();
    for (const auto& [code, forms] : given) {
        EXPECT_EQ(rows[code], forms) << code;
    }
}
