#include "document/document.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

// An enciphered text states its version in an entry or in its first line. A save keeps the version in its
// place.

using namespace bk_parser;

namespace {

void expect_same_place(const std::string& text, const std::string& saved) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", cipher_reference::enciphered_file(text, "key"));
    LoadOptions options;
    options.key = "key";
    LoadResult loaded = load(path, options);
    ASSERT_TRUE(loaded.ok());
    ASSERT_EQ(loaded.document.root().get_entries().get_count(), 2u);
    for (int i = 0; i < 2; ++i) {
        const SaveResult result = save(loaded.document);
        ASSERT_TRUE(result.ok()) << result.reason;
        EXPECT_EQ(folder.read("file"), cipher_reference::enciphered_file(saved, "key")) << i;
    }
    const LoadResult again = load(path, options);
    EXPECT_EQ(again.document.root().get_entries().get_count(), 2u);
}

} // namespace

TEST(document_save_version, of_an_enciphered_text_stays_where_it_stands) {
    const std::string version = "#Brellwick_Serial_Version 1.2";
    expect_same_place("\na 1\nb 2\n" + version, "\na 1\nb 2\n" + version);
    expect_same_place("\na 1\n" + version + "\nb 2", "\na 1\n" + version + "\nb 2");
    expect_same_place("\n" + version + "\na 1\nb 2", "\n" + version + "\na 1\nb 2");
    expect_same_place(version + "\na 1\nb 2", version + "\na 1\nb 2");
    expect_same_place("a 1\nb 2", "\na 1\nb 2\n" + version);
}
