#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if defined(__linux__)
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>
#endif

namespace {

/// Documents that all include one file.
class BkdocSharedFiles : public testing::Test {
protected:
    BkdocSharedFiles() {
        folder.write("lib/part.bkd", "p ! 1\n");
        for (int i = 0; i < 40; ++i) {
            folder.write("shots/s" + std::to_string(i) + ".bkd",
                         "#include \"../lib/part.bkd\"\ns " + std::to_string(i) + "\n");
        }
    }

    const ScratchFolder folder;
};

using bkdoc_shared_files = BkdocSharedFiles;

#if defined(__linux__)

/// Counts how often a file is opened.
class OpenCounter {
public:
    explicit OpenCounter(const std::string& file) : events_(inotify_init1(IN_NONBLOCK)) {
        inotify_add_watch(events_, file.c_str(), IN_OPEN | IN_CLOSE_NOWRITE); // merges equal events in a row
    }
    ~OpenCounter() { close(events_); }
    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;

    int count() const {
        int opened = 0;
        char buffer[65536];
        for (ssize_t size = 0; (size = read(events_, buffer, sizeof buffer)) > 0;) {
            for (ssize_t at = 0; at < size;) {
                inotify_event event;
                std::memcpy(&event, buffer + at, sizeof event);
                opened += (event.mask & IN_OPEN) != 0 ? 1 : 0;
                at += static_cast<ssize_t>(sizeof event) + event.len;
            }
        }
        return opened;
    }

private:
    int events_;
};

TEST_F(bkdoc_shared_files, are_read_once_in_all_threads) {
    const std::string part = folder.path("lib/part.bkd");
    for (const char* threads : {"1", "4"}) {
        const OpenCounter counter(part);
        const BkdocRun run = run_bkdoc({"check", "-j", threads, folder.path("shots")});
        EXPECT_TRUE(run.out.ends_with("\n40 files, 40 with problems (1 error)\n")) << run.out;
        EXPECT_EQ(counter.count(), 1) << threads;
    }
}

TEST_F(bkdoc_shared_files, are_read_once_when_they_are_checked_themselves) {
    const OpenCounter counter(folder.path("lib/part.bkd"));
    run_bkdoc({"check", "-j1", "--ext", "bkd", folder.path()});
    EXPECT_EQ(counter.count(), 1);
}

TEST_F(bkdoc_shared_files, are_read_once_however_often_documents_name_them) {
    constexpr int count = 20; // the first document then has 2^20 - 2 inclusions
    for (int i = 0; i < count; ++i) {
        const std::string next = "#include \"f" + std::to_string(i + 1) + ".bkd\"\n";
        folder.write("twice/f" + std::to_string(i) + ".bkd",
                     (i + 1 < count ? next + next : "") + "a" + std::to_string(i) + " 1\n");
    }
    const OpenCounter counter(folder.path("twice/f" + std::to_string(count - 1) + ".bkd"));
    const BkdocRun run = run_bkdoc({"check", "--format", "gcc", "--ext", "bkd", folder.path("twice")});
    EXPECT_EQ(run.code, 1) << run.err;
    EXPECT_LE(counter.count(), 2); // one of them to see whether it is a document
    EXPECT_NE(run.out.find(": error: too many includes; --trusted reads on [too-many-includes]\n"),
              std::string::npos)
        << run.out;
}

#endif

TEST_F(bkdoc_shared_files, do_not_change_what_is_told) {
    folder.write("lib/empty.bkd", "");
    folder.write("shots/with_empty.bkd", "a 1\n#include \"../lib/empty.bkd\"\n");
    folder.write("shots/with_none.bkd", "a 1\n#include \"../lib/none.bkd\"\n");
    folder.write("shots/with_folder.bkd", "a 1\n#include \"../lib\"\n");
    std::string large = "a \"" + std::string(5 << 20, 'x') + "\"\n";
    folder.write("lib/large.bkd", large);
    folder.write("shots/with_large.bkd", "#include \"../lib/large.bkd\"\nb @\n");
    std::string alone;
    for (const char* name : {"empty", "folder", "large", "none"}) {
        std::string out =
            run_bkdoc({"check", "--format", "gcc", folder.path("shots/with_" + std::string(name) + ".bkd")})
                .out;
        alone += out;
    }
    EXPECT_NE(alone.find("'../lib/none.bkd' not found"), std::string::npos) << alone;
    const BkdocRun together = run_bkdoc({"check", "--format", "gcc", folder.path("shots") + "/with_*.bkd"});
    EXPECT_EQ(together.out, alone);
    EXPECT_EQ(together.code, 1);
}

TEST_F(bkdoc_shared_files, beyond_what_is_kept_are_read_again) {
    const std::string padding(1 << 20, ' ');
    std::string includes;
    for (int i = 0; i < 70; ++i) { // 70 MiB, more than the cache keeps
        const std::string name = "lib/pad" + std::to_string(i) + ".bkd";
        folder.write(name, "v" + std::to_string(i) + " 1" + padding + "\n");
        includes += "#include \"" + name + "\"\n";
    }
    folder.write("a.bkd", includes + "a @\n");
    folder.write("b.bkd", includes + "b @\n");
    const BkdocRun run =
        run_bkdoc({"check", "-j2", "--format", "gcc", folder.path("a.bkd"), folder.path("b.bkd")});
    EXPECT_EQ(run.out, folder.path("a.bkd") + ":71:3: error: unexpected '@' [unexpected-word]\n" +
                           folder.path("b.bkd") + ":71:3: error: unexpected '@' [unexpected-word]\n");
}

} // namespace
