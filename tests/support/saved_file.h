#pragma once

#include "document/document.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

#include <string>

/// A document in the file "file", for tests that change and save it.
class SavedFile : public testing::Test {
protected:
    bk_parser::LoadResult load_text(const std::string& text) {
        return bk_parser::load(folder_.write("file", text));
    }
    void expect_refused(bk_parser::Document& document, const std::string& reason) {
        const std::string before = folder_.read("file");
        const bk_parser::SaveResult result = bk_parser::save(document);
        EXPECT_NE(result.reason.find(reason), std::string::npos) << result.reason;
        EXPECT_EQ(folder_.read("file"), before);
    }
    void expect_saved(bk_parser::Document& document, const std::string& text) {
        const bk_parser::SaveResult result = bk_parser::save(document);
        ASSERT_TRUE(result.ok()) << result.reason;
        EXPECT_EQ(folder_.read("file"), text);
        const bk_parser::LoadResult again = bk_parser::load(folder_.path("file"));
        EXPECT_EQ(content_difference(document.root(), again.document.root()), "");
    }

    const ScratchFolder folder_;
};
