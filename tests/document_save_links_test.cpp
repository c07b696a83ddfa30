#include "document/document.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

// A save treats a file that has several names through symbolic links as one file.

using namespace bk_parser;

namespace {

class DocumentSaveLinks : public testing::Test {
protected:
    void SetUp() override {
        folder_.write("parts/common", "x 1\n");
        if (!link("common", "parts/link")) {
            GTEST_SKIP() << "no symbolic links here";
        }
        folder_.write("document", "a {\n#include \"parts/common\"\n}\nb {\n#include \"parts/link\"\n}\n");
    }
    bool link(const char* to, const char* name) const {
        std::error_code failure;
        std::filesystem::create_symlink(to, folder_.path(name), failure);
        return !failure;
    }
    void expect_refused_or_alike(const char* reason) {
        LoadResult loaded = load(folder_.path("document"));
        ASSERT_TRUE(loaded.ok());
        ASSERT_TRUE(set(loaded.document.root(), "a/x", 5));
        const SaveResult refused = save(loaded.document);
        EXPECT_NE(refused.reason.find(reason), std::string::npos) << refused.reason;
        EXPECT_EQ(folder_.read("parts/common"), "x 1\n");
        ASSERT_TRUE(set(loaded.document.root(), "b/x", 5));
        const SaveResult result = save(loaded.document);
        ASSERT_TRUE(result.ok()) << result.reason;
        EXPECT_EQ(result.written.size(), 1u);
        EXPECT_EQ(folder_.read("parts/common"), "x 5\n");
        const LoadResult again = load(folder_.path("document"));
        EXPECT_EQ(content_difference(loaded.document.root(), again.document.root()), "");
    }

    const ScratchFolder folder_;
};

using document_save_links = DocumentSaveLinks;

} // namespace

TEST_F(document_save_links, an_include_under_two_names_changes_when_both_places_ask_for_the_same) {
    expect_refused_or_alike("is included more than once");
}

TEST_F(document_save_links, an_include_through_a_linked_folder_is_the_same_file) {
    ASSERT_TRUE(link("parts", "other"));
    folder_.write("document", "a {\n#include \"parts/common\"\n}\nb {\n#include \"other/common\"\n}\n");
    expect_refused_or_alike("is included more than once");
}

TEST_F(document_save_links, an_include_is_not_replaced_by_the_document_under_any_name) {
    folder_.write("document", "a {\n#include \"parts/common\"\n}\n");
    for (const bool keeps : {true, false}) {
        for (const char* const name : {"parts/common", "parts/link"}) {
            LoadResult loaded = load(folder_.path("document"));
            SaveOptions options;
            options.keep_layout = keeps;
            const SaveResult result = save(loaded.document, folder_.path(name), options);
            EXPECT_NE(result.reason.find("is included by the document"), std::string::npos) << result.reason;
            EXPECT_EQ(folder_.read("parts/common"), "x 1\n");
        }
    }
}

TEST_F(document_save_links, a_link_to_the_document_is_the_document) {
    ASSERT_TRUE(link("document", "name"));
    folder_.write("document", "a {\n#include \"parts/common\"\n}\n");
    LoadResult loaded = load(folder_.path("document"));
    ASSERT_TRUE(set(loaded.document.root(), "a/x", 5));
    const SaveResult result = save(loaded.document, folder_.path("name"));
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder_.read("parts/common"), "x 5\n");
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.path("name")));
}

namespace {

class DocumentSaveHardLinks : public testing::Test {
protected:
    void SetUp() override {
        folder_.write("common", "x 1 // c\n");
        std::error_code failure;
        std::filesystem::create_hard_link(folder_.path("common"), folder_.path("other"), failure);
        if (failure || std::filesystem::hard_link_count(folder_.path("common"), failure) != 2) {
            GTEST_SKIP() << "no hard links here, or none that the standard library counts";
        }
    }

    const ScratchFolder folder_;
};

using document_save_hard_links = DocumentSaveHardLinks;

} // namespace

TEST_F(document_save_hard_links, an_include_under_two_hard_links_is_one_file) {
    folder_.write("document", "a {\n#include \"common\"\n}\nb {\n#include \"other\"\n}\n");
    LoadResult loaded = load(folder_.path("document"));
    ASSERT_TRUE(set(loaded.document.root(), "a/x", 5));
    ASSERT_TRUE(set(loaded.document.root(), "b/x", 6));
    const SaveResult refused = save(loaded.document);
    EXPECT_NE(refused.reason.find("is included more than once"), std::string::npos) << refused.reason;
    EXPECT_EQ(folder_.read("common"), "x 1 // c\n");
    ASSERT_TRUE(set(loaded.document.root(), "b/x", 5));
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(result.written.size(), 2u) << "each name";
    EXPECT_EQ(folder_.read("common"), "x 5 // c\n");
    EXPECT_EQ(folder_.read("other"), "x 5 // c\n");
}

TEST_F(document_save_hard_links, an_include_is_not_replaced_by_the_document_under_another_name) {
    folder_.write("document", "a {\n#include \"common\"\n}\n");
    LoadResult loaded = load(folder_.path("document"));
    const SaveResult result = save(loaded.document, folder_.path("other"));
    EXPECT_NE(result.reason.find("is included by the document"), std::string::npos) << result.reason;
}
