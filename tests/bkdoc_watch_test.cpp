#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {

/// A check with --watch, and its output so far.
class WatchedCheck {
public:
    /// With `polls`, the tool polls as it does where the system reports no changes.
    WatchedCheck(const ScratchFolder& folder, const std::string& checked, bool polls = false) {
        out_ = folder.path() + ".out"; // outside the folder that is watched
        child_ = fork();
        if (child_ == 0) {
            dup2(open(out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
            if (polls) {
                execlp("unshare", "unshare", "-r", "sh", "-c", no_events, BK_PARSER_BKDOC, checked.c_str(),
                       static_cast<char*>(nullptr));
                _exit(127);
            }
            execl(BK_PARSER_BKDOC, "bkdoc", "check", "--watch", checked.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
    }
    ~WatchedCheck() {
        signal_child(SIGKILL);
        end();
        std::filesystem::remove(out_);
    }
    WatchedCheck(const WatchedCheck&) = delete;
    WatchedCheck& operator=(const WatchedCheck&) = delete;

    std::string written() const {
        std::ifstream stream(out_, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    /// Waits up to 20 s until the whole output is `text`.
    bool comes_to(const std::string& text) const {
        for (int i = 0; i < 400 && written() != text; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return written() == text;
    }

    int interrupt() {
        signal_child(SIGINT);
        return end();
    }

private:
    static constexpr const char* no_events =
        "echo 0 >/proc/sys/user/max_inotify_instances && exec \"$0\" check --watch \"$1\"";

    /// Does nothing without a child: kill(-1) would signal every process.
    void signal_child(int signal) const {
        if (child_ > 0) {
            kill(child_, signal);
        }
    }

    int end() {
        int status = 0;
        if (child_ > 0) {
            waitpid(child_, &status, 0);
            child_ = -1;
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string out_;
    pid_t child_ = -1;
};

TEST(bkdoc_watch, checks_again_when_a_file_or_an_include_changes_appears_or_goes) {
    const ScratchFolder folder;
    const std::string top = folder.write("shots/top.bkd", "#include \"../lib/part.bkd\"\na 1\n");
    folder.write("lib/part.bkd", "p 1\n");
    WatchedCheck check(folder, folder.path("shots"));
    std::string expected = "watching 2 files; Ctrl-C ends\n";
    ASSERT_TRUE(check.comes_to(expected)) << check.written();

    folder.write("lib/part.bkd", "p ! 1\n");
    expected += "\npart.bkd changed\nin file included from " + top + ":1:1:\n" + folder.path("lib/part.bkd") +
                ":1:3: error: unexpected '!' [unexpected-word]\np ! 1\n  ^\n1 error\n"
                "watching 2 files; Ctrl-C ends\n";
    ASSERT_TRUE(check.comes_to(expected)) << check.written();

    std::filesystem::remove(folder.path("lib/part.bkd"));
    const std::size_t before = expected.size();
    for (int i = 0; i < 400 && check.written().find("include-not-found", before) == std::string::npos; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_NE(check.written().find("[include-not-found]", before), std::string::npos) << check.written();

    EXPECT_EQ(check.interrupt(), 130);
}

TEST(bkdoc_watch, checks_again_when_the_configuration_comes_or_changes) {
    const ScratchFolder folder;
    const std::string file = folder.write("shots/top.bkd", "a 1E2\n");
    WatchedCheck check(folder, folder.path("shots"));
    const std::string warning = file + ":1:3: warning: '1E2' is read as 1: write the exponent with a small e "
                                       "[exponent-ignored]\na 1E2\n  ^~~\n1 warning\n";
    std::string expected = warning + "watching 1 file; Ctrl-C ends\n";
    ASSERT_TRUE(check.comes_to(expected)) << check.written();
    folder.write("shots/.bkdoc.bkd", "allow \"exponent-ignored\"\n");
    expected += "\n.bkdoc.bkd changed\nwatching 2 files; Ctrl-C ends\n";
    ASSERT_TRUE(check.comes_to(expected)) << check.written();
    folder.write("shots/.bkdoc.bkd", "strict no\n");
    expected += "\n.bkdoc.bkd changed\n" + warning + "watching 2 files; Ctrl-C ends\n";
    ASSERT_TRUE(check.comes_to(expected)) << check.written();
    EXPECT_EQ(check.interrupt(), 130);
}

TEST(bkdoc_watch, looks_again_and_again_where_the_system_gives_no_events) {
    if (std::system("unshare -r sh -c 'echo 0 >/proc/sys/user/max_inotify_instances' 2>/dev/null") != 0) {
        GTEST_SKIP() << "the events of the system cannot be taken away here";
    }
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    WatchedCheck check(folder, file, true);
    std::string expected = "watching 1 file; Ctrl-C ends\n";
    ASSERT_TRUE(check.comes_to(expected)) << check.written();
    folder.write("a.bkd", "a ! 1\n");
    expected += "\na.bkd changed\n" + file +
                ":1:3: error: unexpected '!' [unexpected-word]\na ! 1\n  ^\n1 error\n"
                "watching 1 file; Ctrl-C ends\n";
    ASSERT_TRUE(check.comes_to(expected)) << check.written();
    EXPECT_EQ(check.interrupt(), 130);
}

} // namespace

#endif
