#include "tests/support/run_out.h"

#include "document/document.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/stored_forms.h"

#include <gtest/gtest.h>

#include <optional>

// Memory runs out while documents are loaded. This throws, leaks nothing and logs nothing.

namespace {

class MemoryOutOfDocuments : public testing::TestWithParam<bool> {
protected:
    /// Lets request 1, 2, 3 ... of a load fail, until the load makes fewer requests.
    void expect_loading(const std::string& path) const {
        bk_parser::LoadOptions options;
        options.key = "key";
        options.search = {folder_.path("library")};
        const std::filesystem::path file(path);
        std::string whole;
        std::vector<bk_parser::Problem> problems;
        {
            const bk_parser::LoadResult result = bk_parser::load(file, options);
            whole = print(result.document.root());
            problems = result.problems;
        }
        ASSERT_FALSE(whole.empty());
        constexpr std::size_t more_than_any_needs = 20000;
        for (std::size_t n = 1; n < more_than_any_needs; ++n) {
            const long live = FailingMemory::live();
            bool has_failed = false;
            {
                const CountingLog log;
                std::optional<bk_parser::LoadResult> result;
                FailingMemory::fail_at(n, GetParam());
                try {
                    result.emplace(bk_parser::load(file, options));
                } catch (const std::bad_alloc&) {
                    result.reset();
                }
                has_failed = FailingMemory::disarm();
                EXPECT_TRUE(result || has_failed) << n;
                if (result) {
                    EXPECT_EQ(print(result->document.root()), whole) << n;
                    EXPECT_EQ(result->problems.size(), problems.size()) << n;
                }
                EXPECT_EQ(log.out_of_memory, 0) << n;
            }
            EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
            if (!has_failed || HasFailure()) {
                return;
            }
        }
        FAIL();
    }

    /// Recovers the bytes, and refuses each request for memory in turn.
    static void expect_recovering(const std::string& bytes) {
        const bk_parser::RecoverResult recovered = bk_parser::recover_bytes(bytes);
        const std::string whole = print(recovered.loaded.document.root());
        bool has_failed = true;
        for (std::size_t n = 1; has_failed && !HasFailure(); ++n) {
            const long live = FailingMemory::live();
            {
                std::optional<bk_parser::RecoverResult> result;
                FailingMemory::fail_at(n, GetParam());
                try {
                    result.emplace(bk_parser::recover_bytes(bytes));
                } catch (const std::bad_alloc&) {
                    result.reset();
                }
                has_failed = FailingMemory::disarm();
                EXPECT_TRUE(result || has_failed) << n;
                if (result) {
                    EXPECT_EQ(print(result->loaded.document.root()), whole) << n;
                }
            }
            EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
        }
    }

    const ScratchFolder folder_;
};

using memory_out_of_documents = MemoryOutOfDocuments;

} // namespace

TEST_P(memory_out_of_documents, while_a_text_with_includes_and_faults_is_loaded) {
    folder_.write("library/part.bkd", "part 1 ] // and a comment\n");
    expect_loading(folder_.write("main.bkd", "#Brellwick_Serial_Version 1.2\n#include \"part.bkd\"\n" +
                                                 scene() + "\n#include \"a_file_that_is_missing.bkd\"\n"));
}

TEST_P(memory_out_of_documents, while_an_enciphered_document_is_loaded) {
    expect_loading(folder_.write("x", StoredForms(scene()).enciphered("key")));
}

TEST_P(memory_out_of_documents, while_a_binary_document_is_loaded) {
    StoredForms forms(scene());
    expect_loading(folder_.write("x", forms.binary()));
    expect_loading(folder_.write("y", forms.binary().substr(0, 1500)));
}

TEST_P(memory_out_of_documents, while_an_archive_is_loaded) {
    expect_loading(folder_.write("x", StoredForms(scene()).archive()));
}

TEST_P(memory_out_of_documents, while_a_damaged_document_is_recovered) {
    const std::string whole =
        StoredForms("a { b { c 1 } } d \"a string of more than eleven bytes\"\n").binary();
    for (const std::size_t left : {whole.size(), whole.size() - 1, whole.size() / 2}) {
        expect_recovering(whole.substr(0, left));
    }
}

INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out_of_documents, testing::Bool());
