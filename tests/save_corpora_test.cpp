#include "document/document.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

// Saves the documents of this repository: the example project, the golden files and the seeds of the fuzzers.

using namespace bk_parser;

namespace {

std::vector<std::filesystem::path> documents() {
    std::vector<std::filesystem::path> found;
    for (const char* const folder : {"examples", "tests/data", "fuzz/corpus"}) {
        const std::filesystem::path root = std::filesystem::path(BK_PARSER_SOURCE_DIR) / folder;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            if (entry.is_regular_file()) {
                found.push_back(entry.path());
            }
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string read(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace

TEST(save_corpora, documents_that_were_not_changed_are_not_written) {
    unsigned int count = 0;
    for (const std::filesystem::path& path : documents()) {
        LoadResult loaded = load(path);
        if (loaded.document.form() != Form::text || !loaded.ok()) {
            continue;
        }
        ++count;
        const std::string before = read(path);
        const SaveResult result = save(loaded.document);
        EXPECT_TRUE(result.ok()) << result.reason;
        EXPECT_TRUE(result.written.empty()) << path;
        EXPECT_EQ(read(path), before) << path;
    }
    EXPECT_GT(count, 10u);
}

TEST(save_corpora, a_copy_of_a_document_without_includes_is_the_same_bytes) {
    const ScratchFolder folder;
    for (const std::filesystem::path& path : documents()) {
        LoadResult loaded = load(path);
        if (loaded.document.form() != Form::text || !loaded.ok() || !loaded.document.dependencies().empty()) {
            continue;
        }
        const SaveResult result = save(loaded.document, folder.path("copy"));
        EXPECT_TRUE(result.ok()) << result.reason;
        EXPECT_EQ(folder.read("copy"), read(path)) << path;
        std::filesystem::remove(folder.path("copy"));
    }
}
