#include "core/core_version.h"
#include "parser/parser_group.h"
#include "tests/support/resident_memory.h"

#include <gtest/gtest.h>

#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// The resident memory after threads have freed blocks of each other. Each test measures the growth since the
// moment before the threads began.

namespace {

constexpr double mebibyte = 1024.0 * 1024.0;
constexpr unsigned int entry_count = 400000;

std::unique_ptr<ParserGroup> large_document() {
    std::string text;
    for (unsigned int i = 0; i < entry_count; ++i) {
        text += "entry" + std::to_string(i) + " \"a string that is too long to stand inside\" 0.5 1.25 " +
                std::to_string(i) + " { name \"a string of its own\" " + std::to_string(i) + " }\n";
    }
    auto root = std::make_unique<ParserGroup>("root");
    root->set_text(CoreString(text), CoreVersion(1.2), nullptr);
    EXPECT_EQ(root->get_entry_count(), entry_count);
    return root;
}

/// Runs the action on a new thread, which then waits until it may end.
class WaitingThread {
public:
    template <class Action>
    explicit WaitingThread(Action action)
        : thread_([this, action] {
              action();
              is_done_.count_down();
              may_end_.wait();
          }) {
        is_done_.wait();
    }
    ~WaitingThread() { end(); }
    WaitingThread(const WaitingThread&) = delete;
    WaitingThread& operator=(const WaitingThread&) = delete;

    void end() {
        if (thread_.joinable()) {
            may_end_.count_down();
            thread_.join();
        }
    }

private:
    std::latch is_done_{1};
    std::latch may_end_{1};
    std::thread thread_;
};

class resident_threads : public testing::Test {
protected:
    void SetUp() override {
        before_ = resident_memory();
        if (before_ < 0.0) {
            GTEST_SKIP() << "resident memory cannot be told here";
        }
    }
    double taken() const { return (resident_memory() - before_) / mebibyte; }

private:
    double before_ = 0.0;
};

/// Uses the library in the destructor of a thread_local object that outlives the library's own.
struct UsesTheLibraryAtTheEnd {
    ~UsesTheLibraryAtTheEnd() {
        ParserGroup group("root");
        group.set_text("entry 1 2 3 \"a string that is too long to stand inside\" ", CoreVersion(1.2),
                       nullptr);
        EXPECT_EQ(group.get_entry_count(), 1u);
        kept = std::make_unique<CoreString>("another string that is too long to stand inside");
    }
    std::unique_ptr<CoreString> kept;
};

} // namespace

TEST_F(resident_threads, a_document_is_given_back_when_another_thread_destroys_it_while_its_reader_waits) {
    std::unique_ptr<ParserGroup> root;
    WaitingThread reader([&] { root = large_document(); });
    EXPECT_GT(taken(), 150.0) << "the document's memory is not seen";
    WaitingThread destroyer([&] { root.reset(); });
    EXPECT_LT(taken(), 64.0) << "both wait";
    destroyer.end();
    EXPECT_LT(taken(), 64.0) << "the reader waits";
    reader.end();
    EXPECT_LT(taken(), 64.0) << "both have ended";
}

TEST_F(resident_threads, a_document_is_given_back_when_another_thread_destroys_it_after_its_reader_ended) {
    std::unique_ptr<ParserGroup> root;
    WaitingThread([&] { root = large_document(); }).end();
    EXPECT_GT(taken(), 150.0) << "the document's memory is not seen";
    WaitingThread destroyer([&] { root.reset(); });
    EXPECT_LT(taken(), 64.0) << "the destroyer waits";
    destroyer.end();
    EXPECT_LT(taken(), 64.0) << "both have ended";
}

TEST_F(resident_threads, reading_again_takes_what_another_thread_gave_back) {
    std::unique_ptr<ParserGroup> root;
    WaitingThread reader([&] { root = large_document(); });
    const double once = taken();
    WaitingThread destroyer([&] { root.reset(); });
    root = large_document();
    EXPECT_LT(taken(), once + 32.0);
    root.reset();
    EXPECT_LT(taken(), 64.0);
}

TEST_F(resident_threads, a_document_that_two_threads_destroy_in_turns_is_given_back) {
    std::unique_ptr<ParserGroup> root;
    WaitingThread reader([&] { root = large_document(); });
    EXPECT_GT(taken(), 150.0) << "the document's memory is not seen";
    WaitingThread first([&] {
        for (unsigned int i = 0; i < entry_count; i += 2) {
            ParserEntry* const entry = root->get_entry(i);
            root->detach_entry(i);
            delete entry;
        }
    });
    WaitingThread second([&] { root.reset(); });
    EXPECT_LT(taken(), 64.0) << "all wait";
}

TEST_F(resident_threads, a_thread_that_uses_the_library_at_its_end_keeps_nothing) {
    for (int i = 0; i < 400; ++i) {
        std::thread([] {
            static thread_local UsesTheLibraryAtTheEnd user;
            static_cast<void>(user.kept);
            ParserGroup group("root");
            group.add_entry("entry", 0, 0);
        }).join();
    }
    EXPECT_LT(taken(), 40.0);
}

TEST_F(resident_threads, threads_that_use_the_library_at_their_end_at_the_same_time_keep_nothing) {
    constexpr int thread_count = 400;
    std::latch all_are_there(thread_count);
    std::vector<std::thread> threads;
    for (int i = 0; i < thread_count; ++i) {
        threads.emplace_back([&] {
            static thread_local UsesTheLibraryAtTheEnd user;
            static_cast<void>(user.kept);
            ParserGroup group("root");
            group.add_entry("entry", 0, 0);
            all_are_there.arrive_and_wait();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_LT(taken(), 40.0);
}

TEST_F(resident_threads, a_hundred_threads_with_one_string_each_take_little) {
    constexpr int thread_count = 100;
    std::latch all_have_taken(thread_count + 1);
    std::latch may_end(1);
    std::vector<std::thread> threads;
    for (int i = 0; i < thread_count; ++i) {
        threads.emplace_back([&] {
            const CoreString string("a string of thirty-seven characters..");
            EXPECT_EQ(string.get_length(), 37u);
            all_have_taken.count_down();
            may_end.wait();
        });
    }
    all_have_taken.arrive_and_wait();
    EXPECT_LT(taken(), 50.0);
    may_end.count_down();
    for (std::thread& thread : threads) {
        thread.join();
    }
}
