#include "tests/support/loaded_document.h"

#include <gtest/gtest.h>

// Loading a file that is not a document gives one problem and an empty tree. A file that looks a little like
// a document is loaded.

using bk_parser::LoadResult;
using namespace std::string_literals;

namespace {

/// The kind of file that the problem names. Empty if the file is not refused.
std::string kind_of(const std::string& bytes) {
    const LoadResult result = bk_parser::parse(bytes);
    if (result.problems.size() != 1 || result.problems[0].code != "not-a-document") {
        return "";
    }
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(result.document.root().get_entries().get_count(), 0u);
    const std::string& message = result.problems[0].message;
    const std::string before = "the document is ";
    const std::string after = ", not a document";
    EXPECT_TRUE(message.starts_with(before) && message.ends_with(after)) << message;
    return message.substr(before.size(), message.size() - before.size() - after.size());
}

std::string wide(const std::string& text, std::size_t before, std::size_t behind) {
    std::string out;
    for (const char c : text) {
        out += std::string(before, '\0') + c + std::string(behind, '\0');
    }
    return out;
}

} // namespace

TEST(document_refusal, json_is_one_problem) {
    EXPECT_EQ(kind_of("{\"a\": 1}"), "JSON");
    EXPECT_EQ(kind_of(" \n{\n  \"scene\" : { \"light\": [1, 2] }\n}\n"), "JSON");
    EXPECT_EQ(kind_of("\xEF\xBB\xBF{\"a\": 1}"), "JSON");
    EXPECT_EQ(kind_of("{}"), "JSON");
    EXPECT_EQ(kind_of("[1, 2, 3]"), "JSON");
    EXPECT_EQ(kind_of("[\n  {\"a\": 1}\n]"), "JSON");
    EXPECT_EQ(kind_of("[]"), "JSON");
    EXPECT_EQ(kind_of("{ // a comment\n  \"a\": 1\n}"), "JSON");
    EXPECT_EQ(kind_of("{\n/* a\n comment */ \"a\": 1}"), "JSON");
    EXPECT_EQ(kind_of("{ // nothing\n}"), "JSON");
    EXPECT_EQ(kind_of("null"), "JSON");
    EXPECT_EQ(kind_of(" true\n"), "JSON");
    EXPECT_EQ(kind_of("// a comment\n{\"a\": 1}"), "JSON");
}

TEST(document_refusal, a_string_or_number_alone_is_json_where_the_file_is_called_so) {
    const ScratchFolder folder;
    const auto code_of = [&folder](std::string_view name, std::string_view text) {
        const bk_parser::LoadResult result = bk_parser::load(folder.write(name, text));
        return result.problems.empty() ? std::string() : result.problems[0].code;
    };
    for (const std::string_view text : {"\"abc\"", " \"a \\\" b\" \n", "42", "-1.5E+3\n", "0"}) {
        EXPECT_EQ(code_of("value.json", text), "not-a-document") << text;
        EXPECT_EQ(code_of("value.JSON", text), "not-a-document") << text;
        EXPECT_EQ(code_of("value.bkd", text), "value-without-entry")
            << text << ": a value that a document includes";
    }
    EXPECT_EQ(code_of("value.json", "[1,2]"), "not-a-document");
    EXPECT_EQ(code_of("document.json", "a 42"), "");
    EXPECT_EQ(code_of("values.json", "42 43"), "value-without-entry");
    EXPECT_EQ(code_of("main.bkd", "a #include \"value.json\"\n"), "not-a-document") << "[1,2] is no value";
    folder.write("value.json", "42");
    EXPECT_EQ(code_of("main.bkd", "a #include \"value.json\"\n"), "")
        << "the include is a value of the document";
}

TEST(document_refusal, a_document_that_begins_with_a_brace_by_mistake_is_read) {
    EXPECT_EQ(kind_of("{ a 1 }"), "");
    EXPECT_EQ(kind_of("{ \"a\" 1 }"), "");
    EXPECT_EQ(tree_of(bk_parser::parse("{ a 1 b 2")), " a 1 b 2");
}

TEST(document_refusal, markup_is_one_problem) {
    EXPECT_EQ(kind_of("<?xml version=\"1.0\"?>\n<scene/>"), "XML or HTML");
    EXPECT_EQ(kind_of("<!DOCTYPE html><html></html>"), "XML or HTML");
    EXPECT_EQ(kind_of("<scene><light power=\"1\"/></scene>"), "XML or HTML");
    EXPECT_EQ(kind_of("<empty> a 1"), "");
    EXPECT_EQ(kind_of("<<<<<<< HEAD\na 1\n=======\na 2\n>>>>>>> b\n"), "");
}

TEST(document_refusal, programs_images_and_archives_are_one_problem) {
    EXPECT_EQ(kind_of("\x7F"
                      "ELF\2\1\1\0\0\0"s),
              "an ELF program");
    EXPECT_EQ(kind_of("MZ\x90\0\3\0\0\0"s), "a Windows program");
    EXPECT_EQ(kind_of("\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s), "a PNG image");
    EXPECT_EQ(kind_of("\xFF\xD8\xFF\xE0\0\x10JFIF"s), "a JPEG image");
    EXPECT_EQ(kind_of("GIF89a\1\0\1\0"s), "a GIF image");
    EXPECT_EQ(kind_of("PK\3\4\x14\0"s), "a ZIP archive");
    EXPECT_EQ(kind_of("\x1F\x8B\x08\0"s), "gzip data");
    EXPECT_EQ(kind_of("%PDF-1.7\n%\xE2\xE3\xCF\xD3\n"), "a PDF document");
    EXPECT_EQ(kind_of("[section]\nkey=value\n"), "an INI file");
}

TEST(document_refusal, names_that_look_like_a_mark_are_names) {
    EXPECT_EQ(kind_of("MZ 1\n"), "");
    EXPECT_EQ(kind_of("GIF89a \"x.gif\"\n"), "");
    EXPECT_EQ(kind_of("BM 1\n"), "");
    EXPECT_EQ(kind_of("RIFF 1\n"), "");
    EXPECT_EQ(kind_of("BZh 1\n"), "");
}

TEST(document_refusal, wide_text_is_one_problem) {
    const std::string text = "light { power 60.0 }\n";
    EXPECT_EQ(kind_of("\xFF\xFE" + wide(text, 0, 1)), "UTF-16 text");
    EXPECT_EQ(kind_of("\xFE\xFF" + wide(text, 1, 0)), "UTF-16 text");
    EXPECT_EQ(kind_of(wide(text, 0, 1)), "UTF-16 text");
    EXPECT_EQ(kind_of(wide(text, 1, 0)), "UTF-16 text");
    EXPECT_EQ(kind_of("\xFF\xFE\0\0"s + wide(text, 0, 3)), "UTF-32 text");
    EXPECT_EQ(kind_of("\0\0\xFE\xFF"s + wide(text, 3, 0)), "UTF-32 text");
    EXPECT_EQ(kind_of(wide(text, 0, 3)), "UTF-32 text");
    EXPECT_EQ(kind_of(wide(text, 3, 0)), "UTF-32 text");
}

TEST(document_refusal, bytes_of_no_known_kind_are_one_problem) {
    std::string bytes;
    unsigned int state = 1;
    for (int i = 0; i < 3000; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes += static_cast<char>(state >> 24);
    }
    EXPECT_EQ(kind_of(bytes), "binary data of another kind");
    EXPECT_EQ(kind_of(std::string(5000, '\0')), "binary data of another kind");
}

TEST(document_refusal, a_text_with_a_few_control_characters_is_read) {
    EXPECT_EQ(kind_of("a \0 1 b 2"s), "");
    EXPECT_EQ(kind_of("a 1\n\fb 2\n\x1A"), "");
    EXPECT_EQ(kind_of("a 1\n" + std::string(4000, '\0')), "") << "the end that a crash leaves";
    EXPECT_EQ(kind_of("name \"Gr\xFC\xDF"
                      "e\" // latin one\n"),
              "");
}

TEST(document_refusal, a_refused_file_is_named) {
    const ScratchFolder folder;
    const std::string path = folder.write("x.json", "{\"a\": 1}");
    const LoadResult result = bk_parser::load(path);
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].message, path + " is JSON, not a document");
    EXPECT_EQ(result.problems[0].file, std::filesystem::path(path));
    EXPECT_EQ(result.problems[0].line, 0u);
}
