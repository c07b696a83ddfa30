#pragma once

#include "tests/support/failing_memory.h"

#include "core/core_log.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

/// Counts the messages without allocating memory.
class CountingLog : public CoreLogHandler {
public:
    CountingLog() : previous_(s_main_log_handler) { s_main_log_handler = this; }
    ~CountingLog() override { s_main_log_handler = previous_; }
    CountingLog(const CountingLog&) = delete;
    CountingLog& operator=(const CountingLog&) = delete;

    void log(const int& level, const CoreLogStream& stream) override {
        const std::string_view text = stream.get_message().get_view();
        out_of_memory += level == level_error && text.ends_with(": out of memory\n") ? 1 : 0;
    }

    int out_of_memory = 0;

private:
    CoreLogHandler* previous_;
};

inline std::string scene() {
    std::string text = "#use_of_scene \"a name that is longer than eleven characters\"\n";
    for (int i = 0; i < 6; ++i) {
        const std::string number = std::to_string(i);
        text += "object_number_" + number +
                "<a_template_name> { value 1 2.5 yes \"short\" data 0x01020306000000 "
                "text \"a text that is longer than one line of blocks " +
                std::string(40, 'x') +
                "\\n\" "
                "call(1, \"two\", 3.5) list[3] 1 2 3 #key \"word\" inner { a { b { c " +
                number + " } } } }\n";
    }
    return text + "last 1 ";
}

inline std::string print(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

inline CoreString core_text(const std::string& text) {
    return CoreString(std::string_view(text));
}

/// Runs `operate` several times. In run number n, its n-th allocation fails. Ends when a run makes fewer allocations. `operate` returns
/// whether it was completed. After each run, calls `look` with that result, when there is memory again.
inline void run_out_everywhere(bool for_good, const std::function<void()>& prepare,
                               const std::function<bool()>& operate, const std::function<void(bool)>& look,
                               const std::function<void()>& clean_up) {
    constexpr std::size_t more_than_any_needs = 20000;
    for (std::size_t n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        const long live = FailingMemory::live();
        prepare();
        bool is_whole = false;
        int told = 0;
        {
            CountingLog log;
            FailingMemory::fail_at(n, for_good);
            is_whole = operate();
            told = log.out_of_memory;
        }
        const bool has_failed = FailingMemory::disarm();
        if (!is_whole) {
            EXPECT_TRUE(has_failed) << n;
            EXPECT_GE(told, 1) << "request " << n << " failed the operation, and nobody was told";
        }
        look(is_whole);
        clean_up();
        EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
        if (!has_failed) {
            EXPECT_TRUE(is_whole);
            EXPECT_GT(n, 1u) << "nothing was asked for";
            return;
        }
        if (testing::Test::HasFailure()) {
            FAIL() << "at request " << n;
        }
    }
}

class MemoryOut : public testing::TestWithParam<bool> {
protected:
    /// Checks an operation that fills a group.
    void expect_group_operation(const std::function<bool(ParserGroup&)>& operate,
                                const std::string& whole) const {
        std::unique_ptr<ParserGroup> group;
        run_out_everywhere(
            GetParam(), [&] { group = std::make_unique<ParserGroup>("root"); },
            [&] { return operate(*group); },
            [&](bool is_whole) {
                const std::string got = print(*group);
                if (is_whole) {
                    EXPECT_EQ(got, whole);
                    return;
                }
                // The group has the first entries of the document.
                for (unsigned int i = 0; i < group->get_entries().get_count(); ++i) {
                    ASSERT_NE(group->get_entries()[i], nullptr);
                }
                EXPECT_LE(got.size(), whole.size());
                EXPECT_TRUE(operate(*group)) << "the group can be used further";
            },
            [&] { group.reset(); });
    }
    /// Checks an operation that makes an output from a tree.
    template <class Result>
    void expect_making(const std::function<bool(Result&)>& operate,
                       const std::function<void(const Result&, bool)>& look) const {
        std::unique_ptr<Result> result;
        run_out_everywhere(
            GetParam(), [&] { result = std::make_unique<Result>(); }, [&] { return operate(*result); },
            [&](bool is_whole) { look(*result, is_whole); }, [&] { result.reset(); });
    }

    void SetUp() override {
        text_ = core_text(scene());
        tree_.set_text(text_, default_parser_serial_version, nullptr);
        whole_ = print(tree_);
        ASSERT_GT(whole_.size(), 1000u);
    }

    CoreString text_;
    ParserGroup tree_{"root"};
    std::string whole_;
};
