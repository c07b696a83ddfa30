#include "document/document.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

// Which JSON is read, and which is refused, with the place of the problem.

using namespace bk_parser;

namespace {

std::string text_of(std::string_view json, const JsonReadOptions& options = {}) {
    const LoadResult result = from_json(json, options);
    EXPECT_TRUE(result.problems.empty()) << json << "\n"
                                         << (result.problems.empty() ? "" : result.problems.front().message);
    CoreString text;
    result.document.root().get_text(text, false, false, 1);
    return plain(text);
}

/// Returns the only problem as "line:column code: message".
std::string problem_of(std::string_view json, const JsonReadOptions& options = {}) {
    const LoadResult result = from_json(json, options);
    if (result.problems.size() != 1) {
        return std::to_string(result.problems.size()) + " problems";
    }
    const Problem& problem = result.problems.front();
    EXPECT_EQ(result.ok(), problem.severity == Severity::warning);
    return std::to_string(problem.line) + ":" + std::to_string(problem.column) + " " + problem.code + ": " +
           problem.message;
}

JsonReadOptions of_shape(JsonShape shape) {
    JsonReadOptions options;
    options.shape = shape;
    return options;
}

} // namespace

TEST(json_read, objects_and_arrays_of_objects_are_groups) {
    EXPECT_EQ(text_of(R"({"a": 1, "g": {"b": [2, "x"]}})"), R"( a 1 g { b 2 "x" })");
    EXPECT_EQ(text_of(R"([{"a": 1, "b": 2}, {}, {"a": 3}])"), " a 1 b 2 a 3");
    EXPECT_EQ(text_of("[]"), "");
    EXPECT_EQ(text_of(R"({"a": [[], {}, [{"b": 1}]]})"), " a { } { } { b 1 }");
}

TEST(json_read, a_key_that_repeats_is_an_entry_that_repeats) {
    EXPECT_EQ(text_of(R"({"a": 1, "a": 2})"), " a 1 a 2");
}

TEST(json_read, numbers_are_ints_or_doubles_by_their_spelling) {
    const LoadResult result = from_json(R"({"a": [1, 1.0, 1e2, -3, 1E2, 2E+3]})");
    const ParserEntry& entry = *result.document.root().get_entry(0u);
    const ParserValue::Type types[] = {ParserValue::TYPE_INT,    ParserValue::TYPE_DOUBLE,
                                       ParserValue::TYPE_DOUBLE, ParserValue::TYPE_INT,
                                       ParserValue::TYPE_DOUBLE, ParserValue::TYPE_DOUBLE};
    ASSERT_EQ(entry.get_value_count(), std::size(types));
    for (unsigned int i = 0; i < std::size(types); ++i) {
        EXPECT_EQ(entry.get_value_type(i), types[i]) << i;
    }
    EXPECT_EQ(plain(entry.get_word(4)), "1e2"); // the text syntax has no other form of exponent
    EXPECT_EQ(entry.get_double(5), 2000.0);
}

TEST(json_read, numbers_that_no_int_or_double_holds_are_warnings) {
    EXPECT_EQ(problem_of(R"({"a": 99999999999})"),
              "1:7 number-out-of-range: '99999999999' is read as "
              "2147483647: an int has 32 bits; write a point to make it a double");
    EXPECT_EQ(problem_of("{\"a\": [1,\n 1e999]}"), "2:2 number-out-of-range: '1e999' is read as 1.797e308, "
                                                   "the largest double: it is out of range for a double");
    EXPECT_EQ(problem_of(R"({"a": 1e-999})"),
              "1:7 number-out-of-range: '1e-999' is read as 0: it is too small for a double");
    JsonReadOptions options;
    options.allow = {"number-out-of-range"};
    EXPECT_EQ(text_of(R"({"a": 99999999999})", options), " a 99999999999");
}

TEST(json_read, heads_and_tags_stand_in_any_order) {
    EXPECT_EQ(text_of(R"({"a": {"$values": [1, 2], "$array": 2, "$kind": "entry"}})"), " a[2] 1 2");
    EXPECT_EQ(text_of(R"({"a": {"$values": 1, "$template": "t"}})"), " a<t> 1");
    EXPECT_EQ(text_of(R"({"a": {"$entries": {"b": 1}, "$group": "g"}})"), " a g { b 1 }");
    EXPECT_EQ(text_of(R"({"a": {"$group": "g", "$entries": [{"b": 1}, {"b": 2}]}})"), " a g { b 1 b 2 }");
    EXPECT_EQ(text_of(R"({"a": {"$entries": {}, "$group": {"$string": "\\x67"}}})"), " a g { }");
    EXPECT_EQ(text_of(R"({"a": {"$values": {"$values": {}}}})").empty(), false);
}

TEST(json_read, tags_give_values_of_each_type) {
    JsonReadOptions any_word;
    any_word.allow = {"json-word"};
    EXPECT_EQ(
        text_of(R"({"a": [{"$int": "0x1F"}, {"$double": "1."}, {"$char": 65}, {"$bool": "Yes"}]})", any_word),
        " a 0x1F 1. 65 Yes");
    EXPECT_EQ(text_of(R"({"a": [{"$word": "w"}, {"$string": "\\x41\\\\"}, {"$binary": "AQID"}]})", any_word),
              R"( a w "A\\" 0x01020306000000)");
    EXPECT_EQ(text_of(R"({"a": {"$int": 5}})"), " a 5");
}

TEST(json_read, lines_are_told_by_what_stands_behind_the_first_object) {
    EXPECT_EQ(text_of("{\"a\": 1}\n{\"a\": 2}\n"), " a 1 a 2");
    EXPECT_EQ(text_of("\n{\"a\": 1}\r\n\n  {\"a\": 2}"), " a 1 a 2");
    EXPECT_EQ(text_of("", of_shape(JsonShape::lines)), "");
    EXPECT_EQ(text_of("\n \n", of_shape(JsonShape::lines)), "");
    EXPECT_EQ(problem_of("{\"a\": 1} {\"a\": 2}"),
              "1:10 json-syntax: there is more after the end of the value");
    EXPECT_EQ(problem_of("{\"a\": 1}\n{\"a\": 2}\n", of_shape(JsonShape::lossless)),
              "2:1 json-syntax: there is more after the end of the value");
    EXPECT_EQ(problem_of("{\"a\":\n1}\n", of_shape(JsonShape::lines)),
              "2:1 json-syntax: the line ends inside its value: each value must be on one line");
    EXPECT_EQ(problem_of("{\"a\"\n:1}\n", of_shape(JsonShape::lines)),
              "2:1 json-syntax: the line ends inside its value: each value must be on one line");
    EXPECT_EQ(problem_of("[{\"a\": 1}]\n", of_shape(JsonShape::lines)),
              "1:1 json-shape: each line has to be an object with an entry");
    EXPECT_EQ(problem_of("{}\n[]\n"), "2:1 json-shape: each line has to be an object with an entry");
}

TEST(json_read, the_document_holds_what_stands_before_a_fault) {
    const LoadResult result = from_json("{\"a\": 1, \"g\": {\"b\": [2, 3, nul");
    ASSERT_EQ(result.problems.size(), 1u);
    CoreString text;
    result.document.root().get_text(text, false, false, 1);
    EXPECT_EQ(plain(text), " a 1 g { b 2 3 }");
    EXPECT_FALSE(result.ok());
}

TEST(json_read, a_document_that_was_not_read_whole_is_saved_by_force_alone) {
    LoadResult result = from_json("{\"a\": 1, ");
    const SavePreview preview = preview_save(result.document, "out.bkd");
    EXPECT_NE(preview.reason, "");
    ASSERT_EQ(preview.losses.size(), 1u);
    EXPECT_EQ(preview.losses[0].code, "not-read-whole");
}

TEST(json_read, places_count_characters_and_lines_from_one) {
    const LoadResult result = from_json("{\n  \"caf\xC3\xA9\": nope\n}");
    ASSERT_EQ(result.problems.size(), 1u);
    const Problem& problem = result.problems[0];
    EXPECT_EQ(problem.line, 2u);
    EXPECT_EQ(problem.column, 11u);
    EXPECT_EQ(problem.offset, 13u);
    EXPECT_EQ(problem.length, 4u);
    EXPECT_EQ(problem.source_line, "  \"caf\xC3\xA9\": nope");
    EXPECT_EQ(problem.source_line_offset, 2u);
}

TEST(json_read, problems_have_the_name_that_the_text_was_given) {
    JsonReadOptions options;
    options.file = "scene.json";
    EXPECT_EQ(from_json("[1]", options).problems[0].file, "scene.json");
    options.limits.source_size = 2;
    EXPECT_EQ(problem_of("[  ]", options),
              "0:0 too-large: scene.json is too large: 4 bytes, ParserLimits::source_size leaves 2");
}

TEST(json_read, other_shapes_of_json_are_refused_with_their_place) {
    const std::pair<const char*, const char*> rows[] = {
        {"1", "1:1 json-shape: a document is an object, or an array of objects"},
        {"\"a\"", "1:1 json-shape: a document is an object, or an array of objects"},
        {"[1]", "1:2 json-shape: an array that is a group may hold only objects"},
        {"[[]]", "1:2 json-shape: an array that is a group may hold only objects"},
        {R"({"a": null})", "1:7 json-shape: null is not a value: an entry without values has an empty array"},
        {R"({"a": [null]})",
         "1:8 json-shape: null is not a value: an entry without values has an empty array"},
        {R"({"a": [[1]]})", "1:9 json-shape: an array that is a group may hold only objects"},
        {R"({"$a": 1})", "1:2 json-shape: '$a' is among names: a name that begins with $ is spelled '$:$a'"},
        {R"({"a": {"b": 1, "$int": 2}})",
         "1:16 json-shape: '$int' is among names: a name that begins with $ is spelled '$:$int'"},
        {R"({"$:\\q": 1})",
         "1:2 json-shape: a name after $: has \\\\ for a backslash and \\x with two digits for a byte"},
        {R"({"a": {"$foo": 1}})", "1:8 json-shape: '$foo' is not a tag of a value"},
        {R"({"a": {"$int": true}})", "1:16 json-shape: a string is missing"},
        {R"({"a": {"$int": {"$int": 1}}})", "1:17 json-shape: a string is missing"},
        {R"({"a": {"$int": 1, "b": 2}})", "1:19 json-shape: the object may hold only one value"},
        {R"({"a": {"$binary": "AQI"}})",
         "1:19 json-shape: binary data must be a string in base64, with padding"},
        {R"({"a": {"$binary": 1}})", "1:19 json-shape: binary data must be a string in base64, with padding"},
        {R"({"a": {"$string": "\\xG0"}})", "1:19 json-shape: '$string' is a string with \\\\ for a backslash "
                                           "and \\x with two digits for a byte"},
        {R"({"a": {"$type": 7}})", "1:17 json-shape: a type without a name is a number from 8 to 16777215"},
        {R"({"a": {"$kind": "call"}})",
         "1:23 json-shape: '$values' is missing: an entry without values has an empty array"},
        {R"({"a": {"$kind": "cal", "$values": []}})",
         "1:17 json-shape: a kind is \"entry\", \"keyword\", \"call\" or \"raw\""},
        {R"({"a": {"$array": -1, "$values": []}})",
         "1:18 json-shape: '-1' is not a whole number up to 4294967294"},
        {R"({"a": {"$array": 4294967295, "$values": []}})",
         "1:18 json-shape: '4294967295' is not a whole number up to 4294967294"},
        {R"({"a": {"$array": "1", "$values": []}})", "1:18 json-shape: an array count is a whole number"},
        {R"({"a": {"$array": 1, "$array": 1}})", "1:21 json-shape: '$array' is there twice"},
        {R"({"a": {"$array": 1, "b": 1}})", "1:21 json-shape: 'b' is not a member of an entry"},
        {R"({"a": [{"$array": 1, "$values": 1}]})",
         "1:9 json-shape: '$array' belongs to an entry, not to a value"},
        {R"({"a": {"$group": "g"}})", "1:21 json-shape: a group with a name has '$group' and '$entries'"},
        {R"({"a": {"$entries": {}}})", "1:22 json-shape: a group with a name has '$group' and '$entries'"},
        {R"({"a": {"$entries": 1}})", "1:20 json-shape: '$entries' is an object, or an array of objects"},
        {R"({"a": {"$group": "g", "b": 1}})", "1:23 json-shape: 'b' is not a member of a group"},
    };
    for (const auto& [json, problem] : rows) {
        EXPECT_EQ(problem_of(json), problem) << json;
    }
}

TEST(json_read, nesting_is_bounded_by_the_limits) {
    JsonReadOptions options;
    options.limits.nesting_depth = 2;
    EXPECT_EQ(text_of(R"({"a": {"b": {"c": 1}}})", options), " a { b { c 1 } }");
    EXPECT_EQ(problem_of(R"({"a": {"b": {"c": {"d": 1}}}})", options),
              "1:20 nested-too-deeply: groups are nested too deeply: ParserLimits::nesting_depth");
}

TEST(json_read, hostile_nesting_ends_with_a_problem) {
    for (const char* const piece :
         {"[", "{\"a\":", "[{\"a\":", "{\"a\":[", "{\"a\":{\"$values\":", "{\"a\":[["}) {
        std::string json;
        for (int i = 0; i < 200000; ++i) {
            json += piece;
        }
        const LoadResult result = from_json(json);
        EXPECT_EQ(result.problems.size(), 1u) << piece;
    }
}

TEST(json_read, numbers_out_of_range_are_told_up_to_the_limit) {
    std::string json = "{\"a\": [1";
    for (int i = 0; i < 20; ++i) {
        json += ", 99999999999";
    }
    JsonReadOptions options;
    options.limits.message_count = 5;
    const LoadResult result = from_json(json + "]}", options);
    ASSERT_EQ(result.problems.size(), 6u);
    EXPECT_EQ(result.problems.back().message, "15 more problems are not shown");
    EXPECT_TRUE(result.ok());
}

TEST(json_read, progress_is_told_and_may_cancel) {
    std::string json;
    for (int i = 0; i < 300000; ++i) {
        json += "{\"a\": 1234567}\n";
    }
    JsonReadOptions options;
    std::vector<double> told;
    options.progress = [&told](double done) {
        told.push_back(done);
        return true;
    };
    EXPECT_TRUE(from_json(json, options).ok());
    ASSERT_GT(told.size(), 3u);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.back(), 1.0);
    options.progress = [](double done) { return done < 0.5; };
    const LoadResult result = from_json(json, options);
    EXPECT_TRUE(result.cancelled);
    EXPECT_FALSE(result.ok());
}

TEST(json_read, the_document_is_a_text_without_a_path) {
    const LoadResult result = from_json("{}");
    EXPECT_EQ(result.document.form(), Form::text);
    EXPECT_TRUE(result.document.path().empty());
}

TEST(json_read, a_text_without_a_value_is_an_empty_document_of_lines) {
    for (const char* const text : {"", "\n", " \r\n\t"}) {
        const LoadResult result = from_json(text);
        EXPECT_TRUE(result.problems.empty());
        EXPECT_EQ(result.document.root().get_entry_count(), 0u);
    }
    JsonReadOptions one;
    one.shape = JsonShape::lossless;
    EXPECT_FALSE(from_json("", one).ok());
}

TEST(json_read, a_spelling_that_is_no_value_of_a_text_is_told) {
    const std::string no_value = "is not a value of that kind in a text, which cannot hold it";
    EXPECT_EQ(problem_of(R"({"a": {"$int": "1 b 2"}})"), "1:16 json-word: '1 b 2' " + no_value);
    EXPECT_EQ(problem_of(R"({"a": {"$word": "} c 3"}})"), "1:17 json-word: '} c 3' " + no_value);
    EXPECT_EQ(problem_of(R"({"a": {"$double": "nan"}})"), "1:19 json-word: 'nan' " + no_value);
    LoadResult loaded = from_json(R"({"a": {"$double": "nan"}})");
    const SaveResult refused = save(loaded.document, "never_written");
    ASSERT_EQ(refused.losses.size(), 1u) << refused.reason;
    EXPECT_EQ(refused.losses[0].code, "value-changes");
    EXPECT_EQ(problem_of(R"({"a": {"$int": "1//"}})"), "1:16 json-word: '1//' " + no_value);
    EXPECT_EQ(problem_of(R"({"a": {"$bool": ""}})"), "1:17 json-word: '' " + no_value);
    for (const char* const good : {R"({"a": {"$int": "007"}})", R"({"a": {"$double": "+inf"}})",
                                   R"({"a": {"$bool": "yes"}})", R"({"a": {"$char": "65"}})"}) {
        EXPECT_TRUE(from_json(good).problems.empty()) << good;
    }
}
