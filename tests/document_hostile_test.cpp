#include "tests/support/golden.h"
#include "tests/support/loaded_document.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

// Truncated or damaged golden files are loaded as far as possible, and nothing is logged.

namespace {

class DocumentHostile : public testing::Test {
protected:
    void take(std::string_view bytes) {
        bk_parser::LoadOptions options;
        options.key = "lantern";
        bk_parser::LoadResult result = bk_parser::parse(bytes, options);
        (result.ok() ? whole_ : faulty_) += 1;
        for (const bk_parser::Problem& problem : result.problems) {
            ASSERT_FALSE(problem.code.empty());
            ASSERT_FALSE(problem.message.empty());
        }
        tree_size_ += tree_of(result).size();
        result.document.root().clear();
    }
    template <class Work>
    static void for_each_golden_file(Work work) {
        for (const auto& entry : std::filesystem::directory_iterator(golden::path(""))) {
            work(golden::bytes(entry.path().filename().string()));
        }
    }
    void TearDown() override {
        EXPECT_EQ(log_.messages, std::vector<LoggedMessage>{});
        EXPECT_GT(whole_, 100u);
        EXPECT_GT(faulty_, 1000u);
        EXPECT_GT(tree_size_, 1000u);
    }

    std::size_t whole_ = 0;
    std::size_t faulty_ = 0;
    std::size_t tree_size_ = 0;

private:
    RecordingLog log_;
};

using document_hostile = DocumentHostile;

} // namespace

TEST_F(document_hostile, every_cut_of_every_golden_file_is_survived) {
    for_each_golden_file([this](const std::string& bytes) {
        for (std::size_t size = 0; size <= bytes.size(); ++size) {
            take(std::string_view(bytes).substr(0, size));
        }
    });
}

TEST_F(document_hostile, every_flipped_bit_of_every_small_golden_file_is_survived) {
    for_each_golden_file([this](const std::string& bytes) {
        for (std::size_t bit = 0; bytes.size() <= 512 && bit < 8 * bytes.size(); ++bit) {
            std::string flipped = bytes;
            flipped[bit / 8] =
                static_cast<char>(static_cast<unsigned char>(flipped[bit / 8]) ^ (1u << bit % 8));
            take(flipped);
        }
    });
}
