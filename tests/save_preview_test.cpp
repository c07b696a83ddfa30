#include "document/document.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace bk_parser;

TEST(save_preview, tells_the_new_bytes_and_writes_nothing) {
    const ScratchFolder folder;
    const std::string top = folder.write("top.bkd", "a  1 // one\n#include \"part.bkd\"\n");
    const std::string part = folder.write("part.bkd", "b 2\n");
    LoadResult loaded = load(top);
    ASSERT_TRUE(set(loaded.document.root(), "a", 10) && set(loaded.document.root(), "b", 20));
    const SavePreview preview = preview_save(loaded.document);
    ASSERT_TRUE(preview.ok()) << preview.reason;
    ASSERT_EQ(preview.changes.size(), 2U);
    EXPECT_EQ(preview.changes[0].path.generic_string(), part);
    EXPECT_EQ(preview.changes[0].before, "b 2\n");
    EXPECT_EQ(preview.changes[0].after, "b 20\n");
    EXPECT_EQ(preview.changes[1].after, "a  10 // one\n#include \"part.bkd\"\n");
    EXPECT_EQ(folder.read("top.bkd"), "a  1 // one\n#include \"part.bkd\"\n");
    EXPECT_EQ(replace_files(preview.changes), "");
    EXPECT_EQ(folder.read("top.bkd"), "a  10 // one\n#include \"part.bkd\"\n");
    EXPECT_EQ(folder.read("part.bkd"), "b 20\n");
}

TEST(save_preview, of_an_unchanged_document_is_empty) {
    const ScratchFolder folder;
    LoadResult loaded = load(folder.write("top.bkd", "a 1\n"));
    const SavePreview preview = preview_save(loaded.document);
    EXPECT_TRUE(preview.ok());
    EXPECT_TRUE(preview.changes.empty());
}

TEST(save_preview, a_text_in_memory_keeps_its_layout_when_its_sources_are_kept) {
    LoadOptions options;
    options.keep_sources = true;
    LoadResult loaded = parse("a  1 // one\n\n\nb   2\n", options);
    ASSERT_TRUE(set(loaded.document.root(), "b", 20));
    const SavePreview preview = preview_save(loaded.document);
    ASSERT_TRUE(preview.ok()) << preview.reason;
    ASSERT_EQ(preview.changes.size(), 1U);
    EXPECT_TRUE(preview.changes[0].path.empty());
    EXPECT_EQ(preview.changes[0].before, "a  1 // one\n\n\nb   2\n");
    EXPECT_EQ(preview.changes[0].after, "a  1 // one\n\n\nb   20\n");
}

TEST(save_preview, a_text_in_memory_is_saved_to_a_file_with_its_layout) {
    const ScratchFolder folder;
    LoadOptions options;
    options.keep_sources = true;
    LoadResult loaded = parse("a  1 // one\n\nb   2\n", options);
    ASSERT_TRUE(set(loaded.document.root(), "b", 20));
    const SaveResult saved = save(loaded.document, folder.path("new.bkd"));
    ASSERT_TRUE(saved.ok()) << saved.reason;
    EXPECT_EQ(folder.read("new.bkd"), "a  1 // one\n\nb   20\n");
    ASSERT_TRUE(set(loaded.document.root(), "b", 30));
    const SaveResult again = save(loaded.document);
    ASSERT_TRUE(again.ok()) << again.reason;
    EXPECT_EQ(folder.read("new.bkd"), "a  1 // one\n\nb   30\n");
}

TEST(save_preview, of_the_binary_form_has_its_bytes) {
    const ScratchFolder folder;
    LoadResult text = parse("a 1\n");
    SaveOptions binary;
    binary.form = Form::binary;
    ASSERT_TRUE(save(text.document, folder.path("a.bin"), binary).ok());
    LoadResult loaded = load(folder.path("a.bin"));
    ASSERT_TRUE(set(loaded.document.root(), "a", 2));
    const SavePreview preview = preview_save(loaded.document);
    ASSERT_TRUE(preview.ok()) << preview.reason;
    ASSERT_EQ(preview.changes.size(), 1U);
    EXPECT_EQ(preview.changes[0].before, folder.read("a.bin"));
    EXPECT_EQ(replace_files(preview.changes), "");
    const auto saved = load(folder.path("a.bin"));
    EXPECT_EQ(get<int>(saved.document.root(), "a"), 2);
}

TEST(save_preview, files_that_changed_since_are_not_replaced) {
    const ScratchFolder folder;
    LoadResult loaded = load(folder.write("top.bkd", "a 1\n"));
    ASSERT_TRUE(set(loaded.document.root(), "a", 10));
    const SavePreview preview = preview_save(loaded.document);
    folder.write("top.bkd", "a 3\n");
    EXPECT_EQ(replace_files(preview.changes),
              folder.full_path("top.bkd") + ": has changed on the disk since it was loaded");
    EXPECT_EQ(folder.read("top.bkd"), "a 3\n");
}

} // namespace
