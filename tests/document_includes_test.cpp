#include "document/document.h"
#include "tests/support/loaded_document.h"
#include "tests/support/stored_forms.h"

#include <gtest/gtest.h>

using bk_parser::load;
using bk_parser::LoadOptions;
using bk_parser::LoadResult;
using bk_parser::Problem;

namespace {

class DocumentIncludes : public testing::Test {
protected:
    LoadResult load_text(std::string_view text, const LoadOptions& options = {}) const {
        return load(folder_.write("shots/main.bkd", text), options);
    }
    /// The problems, without the path of the scratch folder.
    Lines told_here(const LoadResult& result) const {
        Lines lines = told(result);
        for (std::string& line : lines) {
            for (std::size_t at = line.find(here_); at != std::string::npos; at = line.find(here_)) {
                line.erase(at, here_.size());
            }
        }
        return lines;
    }
    LoadOptions searching(std::string_view name) const {
        LoadOptions options;
        options.search = {folder_.path(name)};
        return options;
    }

    const ScratchFolder folder_;
    const std::string here_ = folder_.path() + "/";
};

using document_includes = DocumentIncludes;

} // namespace

TEST_F(document_includes, are_searched_for_beside_the_including_file_first) {
    folder_.write("shots/part.bkd", "a 1 #include \"sub/deep.bkd\"");
    folder_.write("shots/sub/deep.bkd", "b 2 #include \"deeper.bkd\"");
    folder_.write("shots/sub/deeper.bkd", "c 3");
    folder_.write("library/part.bkd", "a 2");
    const LoadResult result = load_text("#include \"part.bkd\"\n", searching("library"));
    EXPECT_EQ(told(result), Lines{});
    EXPECT_EQ(tree_of(result), " a 1 b 2 c 3");
}

TEST_F(document_includes, are_searched_for_in_the_folders_alone_when_so_asked) {
    folder_.write("shots/part.bkd", "a 1");
    folder_.write("library/part.bkd", "a 2");
    LoadOptions options = searching("library");
    options.beside = false;
    EXPECT_EQ(tree_of(load_text("#include \"part.bkd\"\n", options)), " a 2");
}

TEST_F(document_includes, of_a_text_in_memory_are_searched_for_in_the_folders_alone) {
    folder_.write("library/part.bkd", "a 2");
    EXPECT_EQ(tree_of(bk_parser::parse("#include \"part.bkd\"\n", searching("library"))), " a 2");
    const std::string absolute = folder_.path("library/part.bkd");
    EXPECT_EQ(told(bk_parser::parse("#include \"" + absolute + "\"\n")).size(), 1u);
}

TEST_F(document_includes, become_dependencies_in_their_order) {
    folder_.write("shots/z.bkd", "a 1");
    folder_.write("shots/b.bkd", "b 1 #include \"z.bkd\"");
    const LoadResult result = load_text("#include \"z.bkd\"\n#include \"b.bkd\"\n#include \"z.bkd\"\n");
    using Paths = std::vector<std::filesystem::path>;
    EXPECT_EQ(result.document.dependencies(),
              (Paths{folder_.full_path("shots/z.bkd"), folder_.full_path("shots/b.bkd")}));
}

TEST_F(document_includes, that_are_missing_are_told_with_every_path_that_was_tried) {
    const LoadResult result = load_text("a 1\n  #include \"materials.bkd\"\nb 2\n", searching("library"));
    EXPECT_EQ(
        told_here(result),
        Lines{"main.bkd:2:3: error: 'materials.bkd' not found; tried shots/materials.bkd, "
              "library/materials.bkd, materials.bkd; a search folder adds a place [include-not-found]"});
    const Problem& problem = result.problems.at(0);
    EXPECT_EQ(problem.offset, 6u);
    EXPECT_EQ(problem.length, std::string_view("#include \"materials.bkd\"").size());
    EXPECT_EQ(problem.source_line, "  #include \"materials.bkd\"");
    EXPECT_EQ(tree_of(result), " a 1 b 2");
    EXPECT_FALSE(result.ok());
}

TEST_F(document_includes, that_are_not_to_come_from_the_working_folder_are_found_by_an_absolute_path_alone) {
    const std::string part = folder_.write("part.bkd", "b 2\n");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    LoadOptions options;
    const LoadResult anywhere = load_text("a 1\n#include \"part.bkd\"\n");
    options.working_folder = false;
    LoadResult here = load_text("a 1\n#include \"part.bkd\"\n", options);
    LoadResult absolute = load_text("a 1\n#include \"" + part + "\"\n", options);
    const LoadResult relative = load("shots/main.bkd", options);
    absolute.document.root().get_entries()[0]->set_int(3, 0);
    const bk_parser::SaveResult saved = save(absolute.document);
    std::filesystem::current_path(before);
    EXPECT_EQ(tree_of(anywhere), " a 1 b 2");
    EXPECT_EQ(told_here(here),
              Lines{"main.bkd:2:1: error: 'part.bkd' not found; tried shots/part.bkd; a search folder adds a "
                    "place [include-not-found]"});
    EXPECT_EQ(tree_of(relative), " a 1 b 2");
    EXPECT_EQ(tree_of(absolute), " a 3 b 2");
    EXPECT_EQ(saved.reason, "");
}

TEST_F(document_includes, that_are_missing_do_not_hide_the_faults_behind_them) {
    folder_.write("shots/part.bkd", "#include \"two.bkd\"\n) c 3\n");
    const LoadResult result =
        load_text("#include \"one.bkd\"\n#include \"part.bkd\"\nd 4 }\n#include \"three.bkd\"\n");
    Lines codes;
    for (const Problem& problem : result.problems) {
        codes.push_back(problem.file.filename().string() + ":" + std::to_string(problem.line) + " " +
                        problem.code);
    }
    ASSERT_EQ(codes.size(), 5u) << testing::PrintToString(told(result));
    EXPECT_EQ(codes[0], "main.bkd:1 include-not-found");
    EXPECT_EQ(codes[1], "part.bkd:1 include-not-found");
    EXPECT_TRUE(codes[2].starts_with("part.bkd:2 ")) << codes[2];
    EXPECT_TRUE(codes[3].starts_with("main.bkd:3 ")) << codes[3];
    EXPECT_EQ(codes[4], "main.bkd:4 include-not-found");
    EXPECT_EQ(result.problems[1].included_from.size(), 1u);
    EXPECT_EQ(tree_of(result), " c 3 d 4");
}

TEST_F(document_includes, that_make_a_circle_are_told_at_the_directive_that_closes_it) {
    folder_.write("shots/a.bkd", "a 1\n#include \"b.bkd\"\n");
    folder_.write("shots/b.bkd", "b 2\n#include \"a.bkd\"\nc 3\n");
    const LoadResult result = load_text("#include \"a.bkd\"\n#include \"main.bkd\"\n");
    EXPECT_EQ(told_here(result),
              (Lines{"b.bkd:2:1: error: 'a.bkd' includes itself: a.bkd includes b.bkd, which includes "
                     "a.bkd [include-circle]",
                     "main.bkd:2:1: error: 'main.bkd' includes itself [include-circle]"}));
    EXPECT_EQ(
        result.problems[0].included_from,
        (std::vector<std::filesystem::path>{folder_.path("shots/a.bkd"), folder_.path("shots/main.bkd")}));
    EXPECT_EQ(tree_of(result), " a 1 b 2 c 3");
}

TEST_F(document_includes, that_make_a_long_circle_are_told_with_the_files_between) {
    for (int i = 0; i < 20; ++i) {
        folder_.write("shots/" + std::to_string(i),
                      "#include \"" + (i == 19 ? std::string("main.bkd") : std::to_string(i + 1)) + "\"\n");
    }
    EXPECT_EQ(
        told_here(load_text("#include \"0\"\n")),
        Lines{"19:1:1: error: 'main.bkd' includes itself: main.bkd includes 0, which includes 1, which "
              "includes 2, which includes 3, which includes 4, which includes 5, which includes 13 more "
              "files, then 19, which includes main.bkd [include-circle]"});
}

TEST_F(document_includes, without_a_closing_quote_are_told) {
    const LoadResult result = load_text("a 1\n#include \"part.bkd\nb 2\n");
    EXPECT_EQ(told_here(result),
              Lines{"main.bkd:2:1: error: no closing quote after #include; the rest of the "
                    "file is not read [include-left-open]"});
    EXPECT_EQ(tree_of(result), " a 1");
}

TEST_F(document_includes, that_are_no_texts_are_told) {
    StoredForms forms("a 1");
    folder_.write("shots/x.json", "{\"a\": 1}");
    folder_.write("shots/x.udfs", forms.binary());
    folder_.write("shots/x.kwaf", forms.archive());
    const LoadResult result =
        load_text("#include \"x.json\"\n#include \"x.udfs\"\n#include \"x.kwaf\"\nb 2\n");
    EXPECT_EQ(told_here(result),
              (Lines{"main.bkd:1:1: error: shots/x.json: is JSON, not a document [not-a-document]",
                     "main.bkd:2:1: error: shots/x.udfs: is a binary document; only texts can be included "
                     "[not-a-document]",
                     "main.bkd:3:1: error: shots/x.kwaf: is an archive; only texts can be included "
                     "[not-a-document]"}));
    EXPECT_EQ(tree_of(result), " b 2");
}

TEST_F(document_includes, that_are_encrypted_need_the_key) {
    StoredForms forms("a 1");
    const std::string bytes = forms.enciphered("lantern");
    folder_.write("shots/secret.bkd", bytes);
    folder_.write("shots/cut.bkd", bytes.substr(0, bytes.size() - 4));
    LoadOptions options;
    EXPECT_EQ(told_here(load_text("#include \"secret.bkd\"\n")),
              Lines{"main.bkd:1:1: error: shots/secret.bkd is encrypted, and no key is given [no-key]"});
    options.key = "other";
    EXPECT_EQ(told_here(load_text("#include \"secret.bkd\"\n", options)),
              Lines{"main.bkd:1:1: error: shots/secret.bkd: wrong key, or a damaged file [wrong-key]"});
    options.key = "lantern";
    EXPECT_EQ(told_here(load_text("#include \"cut.bkd\"\n", options)),
              Lines{"main.bkd:1:1: error: shots/cut.bkd is cut off: " + std::to_string(bytes.size()) +
                    " bytes announced, " + std::to_string(bytes.size() - 4) + " present [cut-off]"});
    EXPECT_EQ(told_here(load_text("#include \"secret.bkd\"\n", options)), Lines{});
}

TEST_F(document_includes, past_a_limit_end_the_load_and_name_it) {
    folder_.write("shots/part.bkd", "p 1 ");
    LoadOptions options;
    options.limits.include_count = 2;
    const LoadResult many =
        load_text("g {\n#include \"part.bkd\"\n#include \"part.bkd\"\n#include \"part.bkd\"\n}", options);
    EXPECT_EQ(
        told_here(many),
        Lines{"main.bkd:4:1: error: too many includes: ParserLimits::include_count [too-many-includes]"});
    EXPECT_EQ(tree_of(many), " g { p 1 p 1 }");

    options = {};
    options.limits.expanded_size = 10;
    EXPECT_EQ(told_here(load_text("a 1\n#include \"part.bkd\"\nb 2 c 3\n", options)).size(), 1u);
    EXPECT_EQ(load_text("a 1\n#include \"part.bkd\"\nb 2 c 3\n", options).problems[0].code, "too-large");

    options = {};
    options.limits.source_size = 30;
    const LoadResult large = load_text("a 1\n#include \"part.bkd\"\nb 2", options);
    EXPECT_EQ(told_here(large), Lines{"main.bkd:2:1: error: 'part.bkd' is too large: 4 bytes, "
                                      "ParserLimits::source_size leaves 3 [too-large]"});

    options.limits.source_size = 3;
    EXPECT_EQ(told_here(load_text("a 1 b 2", options)),
              Lines{"main.bkd: error: shots/main.bkd is too large: 7 bytes, ParserLimits::source_size leaves "
                    "3 [too-large]"});
    EXPECT_EQ(bk_parser::parse("a 1 b 2", options).problems.at(0).code, "too-large");
}

TEST_F(document_includes, nested_too_deeply_are_left_out) {
    folder_.write("shots/1.bkd", "#include \"2.bkd\"\na 1\n");
    folder_.write("shots/2.bkd", "b 2\n#include \"3.bkd\"\nc 3\n");
    folder_.write("shots/3.bkd", "d 4\n");
    LoadOptions options;
    options.limits.include_depth = 2;
    const LoadResult result = load_text("#include \"1.bkd\"\n", options);
    EXPECT_EQ(told_here(result), Lines{"2.bkd:2:1: error: '3.bkd' is included too deeply: "
                                       "ParserLimits::include_depth [included-too-deeply]"});
    EXPECT_EQ(tree_of(result), " b 2 c 3 a 1");
}

TEST_F(document_includes, that_fail_without_end_come_to_an_end) {
    std::string text;
    for (int i = 0; i < 50; ++i) {
        text += "#include \"missing.bkd\"\n";
    }
    LoadOptions options;
    options.limits.include_count = 10;
    EXPECT_EQ(load_text(text, options).problems.size(), 11u);
}

TEST_F(document_includes, a_version_line_that_gives_no_version_is_told) {
    folder_.write("shots/part.bkd", "#Brellwick_Serial_Version 0\np 1\n");
    const LoadResult result = load_text("#Brellwick_Serial_Version x\na \"\\n\"\n#include \"part.bkd\"\n");
    EXPECT_EQ(told_here(result),
              (Lines{"main.bkd:1:1: error: 'x' is no version; the latest is 1.2 [no-version]",
                     "part.bkd:1:1: error: '0' is no version; the latest is 1.2 [no-version]"}));
    EXPECT_EQ(tree_of(result), " a \"\\n\" p 1");
}

TEST_F(document_includes, a_version_below_0_in_an_included_file_loses_nothing) {
    folder_.write("shots/part.bkd", "#Brellwick_Serial_Version -1\np 1\n");
    const LoadResult result = load_text("a 1\n#include \"part.bkd\"\n");
    EXPECT_EQ(told_here(result),
              (Lines{"part.bkd:1:1: warning: '-1' is no version; the latest is 1.2 [no-version]"}));
    EXPECT_TRUE(result.ok());
    EXPECT_EQ(tree_of(result), " a 1 p 1");
    const LoadResult own = load_text("#Brellwick_Serial_Version -1\na 1\n");
    EXPECT_EQ(told_here(own),
              (Lines{"main.bkd:1:1: error: '-1' is no version; the latest is 1.2 [no-version]"}));
}

#if !defined(_WIN32) // Windows resolves ".." before links

TEST_F(document_includes, behind_a_linked_folder_are_the_file_that_the_system_finds) {
    folder_.write("shots/part.bkd", "a 1");     // where the text of the path leads
    folder_.write("elsewhere/part.bkd", "a 2"); // what the system finds
    folder_.make_folder("elsewhere/far");
    folder_.make_folder("shots");
    std::filesystem::create_directory_symlink(folder_.path("elsewhere/far"), folder_.path("shots/far"));
    LoadResult result = load_text("#include \"far/../part.bkd\"\n");
    EXPECT_EQ(told(result), Lines{});
    EXPECT_EQ(tree_of(result), " a 2");
    ASSERT_EQ(result.document.includes().size(), 1u);
    EXPECT_EQ(result.document.includes()[0].found,
              std::filesystem::path(folder_.path("shots/far/../part.bkd")))
        << "it is called as it was found";
    EXPECT_EQ(result.document.dependencies()[0], std::filesystem::path(folder_.path("elsewhere/part.bkd")));

    ASSERT_TRUE(bk_parser::set(result.document.root(), "a", 3));
    EXPECT_EQ(bk_parser::save(result.document).reason, "");
    EXPECT_EQ(folder_.read("elsewhere/part.bkd"), "a 3");
    EXPECT_EQ(folder_.read("shots/part.bkd"), "a 1");

    std::filesystem::remove(folder_.path("shots/part.bkd"));
    EXPECT_EQ(tree_of(load_text("#include \"far/../part.bkd\"\n")), " a 3")
        << "and the other one is not needed";
}

TEST_F(document_includes, a_document_behind_a_linked_folder_is_saved_where_it_was_loaded) {
    folder_.write("s.bkd", "a 1");
    folder_.write("elsewhere/s.bkd", "a 2");
    folder_.make_folder("elsewhere/far");
    std::filesystem::create_directory_symlink("elsewhere/far", folder_.path("far"));
    LoadResult result = load(folder_.path("far/../s.bkd"));
    EXPECT_EQ(tree_of(result), " a 2");
    ASSERT_TRUE(bk_parser::set(result.document.root(), "a", 3));
    EXPECT_EQ(bk_parser::save(result.document).reason, "");
    EXPECT_EQ(folder_.read("elsewhere/s.bkd"), "a 3");
    EXPECT_EQ(folder_.read("s.bkd"), "a 1");
}

#endif
