#include "tests/support/loaded_document.h"

#include <gtest/gtest.h>

#include <algorithm>

// The problems of a whole document: which, how many, in which order and on how many lines.

using bk_parser::load;
using bk_parser::LoadOptions;
using bk_parser::LoadResult;
using bk_parser::parse;
using bk_parser::Problem;
using bk_parser::Severity;

namespace {

constexpr std::size_t most_told = 10000;

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

std::vector<std::size_t> offsets_of(std::string_view text) {
    std::vector<std::size_t> offsets;
    for (const Problem& problem : parse(text).problems) {
        offsets.push_back(problem.offset);
    }
    return offsets;
}

bool is_one_line(std::string_view message) {
    return std::all_of(message.begin(), message.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= 0x20 && byte < 0x7F;
    });
}

} // namespace

TEST(document_problem_list, allow_leaves_out_warnings_alone) {
    LoadOptions options;
    options.allow = {"unreadable", "include-not-found", "no-value", "text-after-number", "more-problems"};
    const LoadResult missing = load("/nowhere/x.bkd", options);
    EXPECT_EQ(missing.problems.size(), 1u);
    EXPECT_FALSE(missing.ok());
    const LoadResult result = parse("a 1;\n#include \"x\"\nb", options);
    ASSERT_EQ(result.problems.size(), 2u);
    EXPECT_EQ(result.problems[0].code, "include-not-found");
    EXPECT_EQ(result.problems[1].code, "no-value");
    EXPECT_FALSE(result.ok());
}

TEST(document_problem_list, messages_stand_on_one_line) {
#if defined(_WIN32)
    GTEST_SKIP() << "no path on Windows has such bytes";
#endif
    LoadOptions options;
    options.search = {"fold\ner\xFF"};
    const LoadResult result = parse("#include \"no\n\x1b[31m\xE9.bkd\"\n", options);
    ASSERT_EQ(result.problems.size(), 2u) << "the name is no UTF-8, too";
    EXPECT_EQ(result.problems[0].message,
              "'no\\x0A\\x1B[31m\\xE9.bkd' not found; tried fold\\x0Aer\\xFF/no\\x0A\\x1B[31m\\xE9.bkd; a "
              "search folder adds a place");
    const LoadResult missing = load("no\nwhere\x7F.bkd");
    ASSERT_EQ(missing.problems.size(), 1u);
    EXPECT_TRUE(is_one_line(missing.problems[0].message)) << missing.problems[0].message;
    EXPECT_EQ(missing.problems[0].file, std::filesystem::path("no\nwhere\x7F.bkd")) << "the path as it is";
    const LoadResult version = parse("#Brellwick_Serial_Version \x1b\xE9\na 1");
    ASSERT_FALSE(version.problems.empty());
    EXPECT_TRUE(is_one_line(version.problems[0].message)) << version.problems[0].message;
}

TEST(document_problem_list, ends_with_the_number_of_those_that_are_too_many) {
    const LoadResult result = parse(repeated("] ", most_told + 2345));
    ASSERT_EQ(result.problems.size(), most_told + 1);
    const Problem& last = result.problems.back();
    EXPECT_EQ(last.code, "more-problems");
    EXPECT_EQ(last.severity, Severity::error);
    EXPECT_EQ(last.message, "2,345 more problems are not shown");
    EXPECT_EQ(last.line, 0u);
    EXPECT_EQ(result.problems[most_told - 1].offset, 2 * (most_told - 1));
    EXPECT_EQ(parse(repeated("] ", most_told)).problems.size(), most_told);
}

TEST(document_problem_list, of_too_many_warnings_ends_with_a_warning) {
    const LoadResult result = parse("a " + repeated("1; ", most_told + 1));
    ASSERT_EQ(result.problems.size(), most_told + 1);
    EXPECT_EQ(result.problems.back().code, "more-problems");
    EXPECT_EQ(result.problems.back().message, "1 more problem is not shown");
    EXPECT_EQ(result.problems.back().severity, Severity::warning);
    EXPECT_TRUE(result.ok());
    LoadOptions options;
    options.allow = {"text-after-number"};
    EXPECT_TRUE(parse("a " + repeated("1; ", most_told + 1), options).problems.empty());
}

TEST(document_problem_list, of_too_many_warnings_is_not_ok_when_an_error_is_left_out) {
    const LoadResult result = parse("a " + repeated("1; ", most_told) + "]");
    ASSERT_EQ(result.problems.size(), most_told + 1);
    EXPECT_EQ(result.problems.back().severity, Severity::error);
    EXPECT_FALSE(result.ok());
}

TEST(document_problem_list, is_as_long_as_the_limits_say) {
    LoadOptions options;
    options.limits.message_count = 2;
    const LoadResult result = parse("] ] ] ] {", options);
    ASSERT_EQ(result.problems.size(), 3u);
    EXPECT_EQ(result.problems[1].offset, 2u);
    EXPECT_EQ(result.problems[2].message, "2 more problems are not shown");
    options.limits.message_count = 0;
    const LoadResult none = parse("]", options);
    ASSERT_EQ(none.problems.size(), 1u);
    EXPECT_EQ(none.problems[0].code, "more-problems");
    EXPECT_FALSE(none.ok());
    EXPECT_TRUE(parse("a 1", options).problems.empty());
}

TEST(document_problem_list, tells_what_a_repeated_include_repeats_once_and_counts_it_once) {
    const ScratchFolder folder;
    folder.write("part.bkd", repeated("x 1;\n", 11));
    const std::string path = folder.write("main.bkd", repeated("#include \"part.bkd\"\n", 1000));
    EXPECT_EQ(load(path).problems.size(), 11u);
}

TEST(document_problem_list, is_in_the_order_of_the_text) {
    EXPECT_EQ(offsets_of("x//\n#include \"\"1"), (std::vector<std::size_t>{1, 4}));
    EXPECT_EQ(offsets_of("a 1 #include \"x\" ] b 1; #include \"y\""),
              (std::vector<std::size_t>{4, 17, 22, 24}));
    const std::vector<std::string> pieces = {"a ",
                                             "1",
                                             "1; ",
                                             "//\n",
                                             "#include \"q\"",
                                             "\"",
                                             "\"s\" ",
                                             "{ ",
                                             "} ",
                                             "] ",
                                             "b",
                                             "\n",
                                             "\xFF",
                                             "#Brellwick_Serial_Version 1.3\n"};
    unsigned int state = 1;
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (int i = 0; i < 8; ++i) {
            state = state * 1664525u + 1013904223u;
            text += pieces[(state >> 16) % pieces.size()];
        }
        const std::vector<std::size_t> offsets = offsets_of(text);
        EXPECT_TRUE(std::is_sorted(offsets.begin(), offsets.end())) << text;
    }
}

TEST(document_problem_list, has_an_include_before_what_is_in_it_and_that_before_what_follows) {
    const ScratchFolder folder;
    folder.write("part.bkd", "1 b 2;");
    const LoadResult result = load(folder.write("main.bkd", "a 1; x#include \"part.bkd\"3;\n"));
    Lines places;
    for (const Problem& problem : result.problems) {
        places.push_back(problem.file.filename().string() + ":" + std::to_string(problem.offset));
    }
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end(), [](const std::string& a, const std::string& b) {
        const auto rank = [](const std::string& place) {
            const std::string offset = place.substr(place.find(':') + 1);
            return place.starts_with("part") ? 6.5 + std::stod(offset) / 100 : std::stod(offset);
        };
        return rank(a) < rank(b);
    })) << testing::PrintToString(places);
    EXPECT_GE(places.size(), 3u);
}

TEST(document_problem_list, cuts_a_long_line_between_characters) {
    const LoadResult result = parse("a \"" + repeated("\xC3\xA9", 3000) + "\" ]");
    ASSERT_EQ(result.problems.size(), 1u);
    // The part of the line around the place. Two more bytes would begin in the middle of a character.
    EXPECT_EQ(result.problems[0].source_line, repeated("\xC3\xA9", 1023) + "\" ]");
    EXPECT_EQ(result.problems[0].source_line_offset, result.problems[0].offset - 2048);
    EXPECT_EQ(result.problems[0].column, 3006u);
}

TEST(document_problem_list, is_found_before_the_load_is_said_to_be_done) {
    const std::string text = repeated("] x 1;\n", 300000);
    std::size_t behind_parsing = 0;
    std::vector<double> values;
    LoadOptions options;
    options.progress = [&](double value) {
        values.push_back(value);
        behind_parsing += value > 0.9 && value < 1 ? 1 : 0;
        return true;
    };
    EXPECT_FALSE(parse(text, options).ok());
    EXPECT_EQ(values.back(), 1.0);
    EXPECT_EQ(std::count(values.begin(), values.end(), 1.0), 1);
    EXPECT_GE(behind_parsing, 2u);
    options.progress = [](double value) { return value <= 0.9; };
    EXPECT_TRUE(parse(text, options).cancelled);
}
