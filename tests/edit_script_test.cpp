#include "tests/support/edit_script.h"

#include "tests/support/counted_objects.h"
#include "tests/support/counting_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace {

std::string random_script(unsigned int seed) {
    std::mt19937 random(seed);
    std::string script(300, '\0');
    for (char& byte : script) {
        byte = static_cast<char>(random() % 256);
    }
    return script;
}

} // namespace

TEST(edit_script, random_edits_of_every_kind_give_what_plain_lists_give) {
    const CountingLog log;
    for (unsigned int seed = 1; seed <= 300; ++seed) {
        const NothingLeaks nothing_leaks;
        ASSERT_EQ(EditScript(random_script(seed)).run(), "") << "seed " << seed;
    }
}

TEST(edit_script, random_edits_of_large_documents_give_what_plain_lists_give) {
    const CountingLog log;
    for (unsigned int seed = 1; seed <= 300; ++seed) {
        const NothingLeaks nothing_leaks;
        ASSERT_EQ(EditScript(random_script(seed)).with_large_texts().run(), "") << "seed " << seed;
    }
}

TEST(edit_script, the_seeds_of_the_fuzzer_give_what_plain_lists_give) {
    const CountingLog log;
    unsigned int scripts = 0;
    for (const auto& file : std::filesystem::directory_iterator(BK_PARSER_SOURCE_DIR "/fuzz/corpus/edits")) {
        std::ifstream stream(file.path(), std::ios::binary);
        const std::string script{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        EXPECT_EQ(EditScript(script).run(), "") << file.path();
        EXPECT_EQ(EditScript(script).with_large_texts().run(), "") << file.path();
        ++scripts;
    }
    EXPECT_GE(scripts, 6u);
}
