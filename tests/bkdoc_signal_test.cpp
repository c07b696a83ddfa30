#if defined(__linux__)

#include "tests/support/bkdoc_run.h"
#include "tests/support/sanitizer.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// The tool gets a signal before and after each of its system calls. It must leave the old document or the new
// one, and no other file.

namespace {

constexpr int more_than_any_needs = 5000;

struct Ended {
    bool is_traced = false;
    bool has_got_signal = false;
    int status = 0; // as from waitpid
};

pid_t start_traced(const std::vector<std::string>& arguments) {
    const pid_t child = ::fork();
    if (child == 0) {
        const int nothing = ::open("/dev/null", O_RDWR);
        ::dup2(nothing, 1);
        ::dup2(nothing, 2);
        std::vector<char*> words{const_cast<char*>("bkdoc")};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0) {
            ::execv(BK_PARSER_BKDOC, words.data());
        }
        ::_exit(77);
    }
    return child;
}

/// Runs the tool and sends it the signal at the n-th place, counted from 1.
Ended run_with_signal_at(int n, int signal, const std::vector<std::string>& arguments,
                         const std::function<void()>& at_signal = {}) {
    Ended ended;
    const pid_t child = start_traced(arguments);
    if (child < 0 || ::waitpid(child, &ended.status, 0) != child || !WIFSTOPPED(ended.status)) {
        return ended;
    }
    ended.is_traced = true;
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    int to_deliver = 0;
    for (int places = 0;;) {
        const bool is_watched = !ended.has_got_signal;
        ::ptrace(is_watched ? PTRACE_SYSCALL : PTRACE_CONT, child, nullptr, to_deliver);
        to_deliver = 0;
        ::waitpid(child, &ended.status, 0);
        if (!WIFSTOPPED(ended.status)) {
            return ended;
        }
        if (WSTOPSIG(ended.status) != (SIGTRAP | 0x80)) {
            to_deliver = WSTOPSIG(ended.status) == SIGTRAP ? 0 : WSTOPSIG(ended.status);
        } else if (++places == n) {
            ended.has_got_signal = true;
            if (at_signal) {
                at_signal();
            }
            ::kill(child, signal);
        }
    }
}

class bkdoc_signal : public testing::TestWithParam<int> {
protected:
    bkdoc_signal() {
        std::string text;
        for (int i = 0; i < 2000; ++i) {
            text += "entry 1234567\n";
        }
        source = folder.write("source/a.bkd", text);
        folder.make_folder("target");
    }

    std::size_t rest_count() const {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path("target"))) {
            count += entry.path().filename() != "document" ? 1 : 0;
        }
        return count;
    }

    const ScratchFolder folder;
    std::string source;
};

TEST_P(bkdoc_signal, at_any_system_call_leaves_nothing_beside_the_document_and_ends_the_tool) {
#if defined(BK_PARSER_SANITIZED_MEMORY)
    GTEST_SKIP() << "the leak sanitizer does not work in a traced process";
#endif
    const std::string old_bytes = "a \"the old document\"\n";
    int ended_by_signal = 0;
    const int step = GetParam() == SIGTERM ? 1 : 7; // the other signals take the same path
    for (int n = 1;; n += step) {
        ASSERT_LT(n, more_than_any_needs);
        const std::string target = folder.write("target/document", old_bytes);
        const Ended ended = run_with_signal_at(n, GetParam(), {"convert", source, target, "--to", "text"});
        if (!ended.is_traced) {
            GTEST_SKIP() << "this process may not trace another one";
        }
        ASSERT_EQ(rest_count(), 0u) << "place " << n;
        const std::string bytes = folder.read("target/document");
        ASSERT_TRUE(bytes == old_bytes || bytes.ends_with("entry 1234567")) << "place " << n;
        if (!ended.has_got_signal) {
            ASSERT_TRUE(WIFEXITED(ended.status));
            EXPECT_EQ(WEXITSTATUS(ended.status), 0);
            EXPECT_NE(bytes, old_bytes);
            EXPECT_GT(ended_by_signal, 50 / step);
            return;
        }
        // At the last call, the process has ended before the signal arrives.
        if (WIFSIGNALED(ended.status)) {
            EXPECT_EQ(WTERMSIG(ended.status), GetParam());
            ++ended_by_signal;
        }
    }
}

TEST_P(bkdoc_signal,
       at_any_system_call_of_a_change_of_three_files_leaves_all_old_or_all_new_and_nothing_beside) {
#if defined(BK_PARSER_SANITIZED_MEMORY)
    GTEST_SKIP() << "the leak sanitizer does not work in a traced process";
#endif
    const ScratchFolder set;
    const int step = GetParam() == SIGTERM ? 3 : 11;
    for (int n = 1;; n += step) {
        ASSERT_LT(n, more_than_any_needs);
        std::vector<std::string> arguments = {"set", "-w", "a", "=2"};
        for (const char* name : {"x.bkd", "y.bkd", "z.bkd"}) {
            arguments.push_back(set.write(name, "a 1\n"));
        }
        const Ended ended = run_with_signal_at(n, GetParam(), arguments);
        if (!ended.is_traced) {
            GTEST_SKIP() << "this process may not trace another one";
        }
        ASSERT_EQ(set.count(), 3u) << "place " << n;
        const std::string first = set.read("x.bkd");
        ASSERT_TRUE(first == "a 1\n" || first == "a 2\n") << "place " << n;
        ASSERT_EQ(set.read("y.bkd"), first) << "place " << n;
        ASSERT_EQ(set.read("z.bkd"), first) << "place " << n;
        if (!ended.has_got_signal) {
            EXPECT_EQ(first, "a 2\n");
            return;
        }
    }
}

TEST_P(bkdoc_signal, before_a_formatted_file_is_stored_leaves_the_old_one) {
#if defined(BK_PARSER_SANITIZED_MEMORY)
    GTEST_SKIP() << "the leak sanitizer does not work in a traced process";
#endif
    const std::string old_bytes = "a    \"the old document\"\n";
    const int step = GetParam() == SIGINT ? 3 : 11;
    for (int n = 1;; n += step) {
        ASSERT_LT(n, more_than_any_needs);
        const std::string target = folder.write("target/document", old_bytes);
        bool has_begun_to_store = false;
        const Ended ended = run_with_signal_at(n, GetParam(), {"fmt", "-w", target}, [&] {
            has_begun_to_store = rest_count() != 0 || folder.read("target/document") != old_bytes;
        });
        if (!ended.is_traced) {
            GTEST_SKIP() << "this process may not trace another one";
        }
        ASSERT_EQ(rest_count(), 0u) << "place " << n;
        const std::string bytes = folder.read("target/document");
        if (!ended.has_got_signal) {
            EXPECT_EQ(bytes, "a \"the old document\"\n");
            return;
        }
        if (!has_begun_to_store) {
            ASSERT_EQ(bytes, old_bytes) << "place " << n;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(each, bkdoc_signal, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(bkdoc_ignored_signal, a_signal_that_the_caller_ignores_stays_ignored) {
    const ScratchFolder folder;
    const std::string source = folder.write("a.bkd", "a 1\n");
    ::signal(SIGHUP, SIG_IGN); // like nohup
    for (int n = 50; n < 1000; n += 50) {
        const Ended ended =
            run_with_signal_at(n, SIGHUP, {"convert", source, folder.path("b.bkd"), "--to", "text"});
        if (!ended.is_traced) {
            GTEST_SKIP() << "this process may not trace another one";
        }
        EXPECT_TRUE(WIFEXITED(ended.status)) << n;
    }
    ::signal(SIGHUP, SIG_DFL);
}

} // namespace

#endif
