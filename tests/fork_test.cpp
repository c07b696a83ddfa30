#include "core/core_memory.h"
#include "core/core_version.h"
#include "parser/parser_group.h"
#include "tests/support/sanitizer.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

// A process with busy threads forks. The child has only the thread that forked. A lock that another thread
// held at that moment is never released, so the library must not wait for it.

namespace {

constexpr unsigned int seconds_for_a_child = 20;

CoreString text_of(unsigned int count) {
    std::string text;
    for (unsigned int i = 0; i < count; ++i) {
        text += "entry \"a string that is too long to stand inside\" 0.5 " + std::to_string(i) + " ";
    }
    return CoreString(text);
}

std::unique_ptr<ParserGroup> parsed(const CoreString& text) {
    auto root = std::make_unique<ParserGroup>("root");
    root->set_text(text, CoreVersion(1.2), nullptr);
    return root;
}

/// Threads that read and destroy documents until they are stopped, so that pages change owners all the time.
class BusyThreads {
public:
    explicit BusyThreads(unsigned int count) {
        for (unsigned int i = 0; i < count; ++i) {
            threads_.emplace_back([this] {
                const CoreString text = text_of(100);
                while (!may_end_) {
                    parsed(text).reset();
                    for (int round = 0; round < 1000; ++round) { // each round takes a page and gives it back
                        CoreMemory::release(CoreMemory::allocate(CoreMemory::largest_slab_block),
                                            CoreMemory::largest_slab_block);
                    }
                }
            });
        }
    }
    ~BusyThreads() {
        may_end_ = true;
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    BusyThreads(const BusyThreads&) = delete;
    BusyThreads& operator=(const BusyThreads&) = delete;

private:
    std::atomic<bool> may_end_ = false;
    std::vector<std::thread> threads_;
};

/// Whether the work returns true in a child process. If the child waits for ever, its alarm ends it.
template <class Work>
bool holds_in_a_child(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(seconds_for_a_child);
        _exit(work() ? 0 : 1);
    }
    int status = -1;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class fork_of_a_process : public testing::Test {
protected:
    void SetUp() override {
#if defined(BK_PARSER_SANITIZED_MEMORY)
        GTEST_SKIP() << "what a thread held of the sanitizer's allocator when its process forked stays held "
                        "in the child";
#endif
    }
};

} // namespace

TEST_F(fork_of_a_process, a_child_reads_and_destroys_documents_whatever_other_threads_were_doing) {
    const BusyThreads threads(3);
    const CoreString text = text_of(4000);
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(holds_in_a_child([&] { return parsed(text)->get_entry_count() == 4000; })) << i;
    }
}

TEST_F(fork_of_a_process, a_child_destroys_what_the_threads_of_its_parent_had_read) {
    const CoreString text = text_of(20000);
    std::unique_ptr<ParserGroup> of_an_ended_thread;
    std::thread([&] { of_an_ended_thread = parsed(text); }).join();
    const BusyThreads threads(3);
    std::unique_ptr<ParserGroup> own = parsed(text);
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(holds_in_a_child([&] {
            of_an_ended_thread.reset();
            own.reset();
            return parsed(text)->get_entry_count() == 20000;
        })) << i;
    }
    EXPECT_EQ(of_an_ended_thread->get_entry_count(), 20000u);
    EXPECT_EQ(own->get_entry_count(), 20000u);
}

TEST_F(fork_of_a_process, a_child_starts_threads_that_use_the_library) {
    const BusyThreads threads(3);
    const CoreString text = text_of(4000);
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(holds_in_a_child([&] {
            std::unique_ptr<ParserGroup> root;
            std::thread([&] { root = parsed(text); }).join();
            return root->get_entry_count() == 4000;
        })) << i;
    }
}

#endif
