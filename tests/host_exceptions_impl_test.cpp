#include "tests/support/host_operations.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string_view>

// Each call of a host's progress bar, log handler, observer and disk throws once in every operation. The
// operation must throw the same exception, end what it began, and free its memory and files.

namespace {

std::string print(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

class HostExceptions : public testing::TestWithParam<HostOperation> {
protected:
    /// Runs the operation. Call number n of this kind throws. False when the operation makes fewer such
    /// calls.
    static bool throws_at(HostCall call, unsigned int n, bool goes_on) {
        const long live = FailingMemory::live();
        bool has_thrown = false;
        {
            Stage stage;
            std::optional<HostFault> arrived;
            Trap::set(call, n, goes_on);
            try {
                GetParam().run(stage);
            } catch (const HostFault& fault) {
                arrived = fault;
            }
            has_thrown = Trap::take_away();
            EXPECT_EQ(arrived.has_value(), has_thrown) << "what was thrown has to arrive, and nothing else";
            if (arrived.has_value()) {
                EXPECT_EQ(arrived->call, call);
                EXPECT_EQ(arrived->number, n) << "the exception that came first has to arrive";
            }
            look(stage, call == HostCall::remove || goes_on);
        }
        EXPECT_EQ(FailingMemory::live(), live) << "blocks are left behind";
        return has_thrown;
    }

    /// Throws std::bad_alloc in that call. No operation lets that out.
    static bool runs_out_at(HostCall call, unsigned int n, bool) {
        const long live = FailingMemory::live();
        bool has_thrown = false;
        {
            Stage stage;
            Trap::set_other(call, n, std::bad_alloc());
            EXPECT_NO_THROW(GetParam().run(stage));
            has_thrown = Trap::take_away();
            look(stage, call == HostCall::remove);
        }
        EXPECT_EQ(FailingMemory::live(), live) << "blocks are left behind";
        return has_thrown;
    }

    /// Throws std::length_error in that call. An exception of a host must arrive with the host's message.
    static bool is_too_long_at(HostCall call, unsigned int n, bool) {
        Stage stage;
        bool has_arrived = false;
        Trap::set_other(call, n, std::length_error("a host's"));
        try {
            GetParam().run(stage);
        } catch (const std::length_error& error) {
            has_arrived = std::string_view(error.what()) == "a host's";
        }
        const bool has_thrown = Trap::take_away();
        EXPECT_EQ(has_arrived, has_thrown);
        return has_thrown;
    }

    static void look(Stage& stage, bool may_leave_file) {
        EXPECT_EQ(stage.bar.open_tasks, 0);
        EXPECT_EQ(stage.observer.open_files, 0);
        EXPECT_EQ(stage.disk.open_handles, 0);
        for (const auto& [name, bytes] : stage.disk.files) {
            EXPECT_TRUE(may_leave_file || !name.ends_with(".new") || name == "written_in_place.new") << name;
        }
        EXPECT_EQ(stage.disk.files.at("stuck"), "the old document");
        EXPECT_EQ(stage.disk.files.at("full"), "the old document");
        EXPECT_FALSE(stage.disk.files.at("out").empty());
        EXPECT_NO_THROW(GetParam().run(stage)) << "everything can be used further";
        EXPECT_EQ(stage.bar.open_tasks, 0);
        for (ParserGroup* group : {&stage.group, &stage.tree, &stage.file.get_root()}) {
            for (const ParserEntry* entry : group->get_entries()) {
                ASSERT_NE(entry, nullptr);
            }
            EXPECT_EQ(print(ParserGroup(*group)), print(*group));
        }
    }

    using Attempt = bool (*)(HostCall call, unsigned int n, bool goes_on);

    static void try_all(Attempt attempt, bool goes_on) {
        GetParam().run(*std::make_unique<Stage>()); // makes everything that is made only once
        for (int call = 0; call < static_cast<int>(HostCall::count); ++call) {
            unsigned int n = 1;
            while (attempt(static_cast<HostCall>(call), n, goes_on)) {
                ASSERT_LT(n, 4000u);
                ASSERT_FALSE(HasFailure()) << "call " << call << ", number " << n;
                ++n;
            }
            ASSERT_FALSE(HasFailure()) << "call " << call << ", number " << n;
            made_calls_ += n - 1;
        }
        EXPECT_GT(made_calls_, 0u) << "an operation without calls tests nothing";
        made_calls_ = 0;
    }

private:
    static inline unsigned int made_calls_ = 0;
};

using host_exceptions = HostExceptions;

std::string name_of(const testing::TestParamInfo<HostOperation>& info) {
    return info.param.name;
}

} // namespace

TEST_P(host_exceptions, pass_through) {
    try_all(throws_at, false);
}

TEST_P(host_exceptions, pass_through_when_the_calls_that_end_what_was_begun_throw_too) {
    try_all(throws_at, true);
}

TEST_P(host_exceptions, that_say_that_memory_ran_out_are_taken_for_the_library_s_own) {
    try_all(runs_out_at, false);
}

TEST_P(host_exceptions, that_say_that_something_is_too_long_are_not_taken_for_the_library_s_own) {
    try_all(is_too_long_at, false);
}

INSTANTIATE_TEST_SUITE_P(of_every_call, host_exceptions, testing::ValuesIn(host_operations()), name_of);

TEST(host_exceptions_of_a_disk, a_file_in_which_a_write_threw_never_takes_its_name) {
    Stage stage;
    SysFile file;
    ASSERT_TRUE(file.open(stage.out_path, SysFile::MODE_WRITE, SysFile::TYPE_BINARY));
    EXPECT_EQ(file.write("first", 5), 5);
    Trap::set(HostCall::write, 1, false);
    EXPECT_THROW(file.write("second", 6), HostFault);
    Trap::take_away();
    EXPECT_EQ(file.write("third", 5), 0);
    EXPECT_FALSE(file.close());
    EXPECT_EQ(stage.disk.files.at("out"), "the old document");
    EXPECT_FALSE(stage.disk.has("out.new"));
}

TEST(host_exceptions_of_a_disk, a_file_in_which_a_read_threw_is_not_all_there) {
    Stage stage;
    SysFile file;
    CoreString text("what was there before");
    ASSERT_TRUE(file.open(stage.main_path, SysFile::MODE_READ, SysFile::TYPE_BINARY));
    Trap::set(HostCall::read, 1, false);
    EXPECT_THROW(file.read(text, 10), HostFault);
    Trap::take_away();
    EXPECT_TRUE(text.is_empty());
    EXPECT_FALSE(file.close());
}

TEST(host_exceptions_of_a_read, the_document_is_as_it_was_when_a_file_cannot_be_had) {
    Stage stage;
    stage.file.get_root().set(stage.deep);
    Trap::set(HostCall::piece_copied, 2, false);
    EXPECT_THROW(stage.read(stage.main_path, stage.none), HostFault);
    Trap::take_away();
    EXPECT_EQ(print(stage.file.get_root()), print(stage.deep));
    EXPECT_EQ(stage.file.get_serial_version().get_value(), 0.0);
}

TEST(host_exceptions_of_a_read, the_entries_before_stay_when_the_parse_is_ended) {
    Stage stage;
    Trap::set(HostCall::fault_found, 1, false);
    EXPECT_THROW(stage.read(stage.main_path, stage.none), HostFault);
    Trap::take_away();
    EXPECT_EQ(print(stage.file.get_root()), " part { in 1 }");
    EXPECT_EQ(stage.file.get_serial_version().get_value(), 0.0);
}

TEST(host_exceptions_of_a_print, a_text_that_is_too_long_leaves_the_output_as_it_was) {
    Stage stage;
    CoreString full("longer than eleven"); // only its last byte will be touched
    try {
        full.resize(CoreString::max_length);
    } catch (const std::bad_alloc&) {
        GTEST_SKIP() << "there are not enough addresses for a text of 4 GiB";
    }
    Trap::set(HostCall::log, 1, false);
    EXPECT_THROW(stage.tree.get_text(full, true, true, 1), HostFault);
    Trap::set(HostCall::log, 1, false);
    EXPECT_THROW(stage.tree.get_entry(0u)->get_value_text(full, true, 1), HostFault);
    Trap::take_away();
    EXPECT_EQ(full.get_length(), CoreString::max_length);
}

TEST(host_exceptions_of_an_archive, none_of_the_words_stays) {
    Stage stage;
    Trap::set(HostCall::begin_labelled_task, 3, false);
    EXPECT_THROW(ParserImpl::archive_group(stage.tree, stage.faulty_archive, true, &stage.bar), HostFault);
    Trap::take_away();
    EXPECT_EQ(stage.faulty_archive.strings.get_count(), 5u);
    EXPECT_EQ(stage.faulty_archive.indices.get_count(), 5u);
}

namespace {

class HostEndOfMemory : public testing::TestWithParam<HostOperation> {
protected:
    static void expect_no_leak(bool for_good) {
        GetParam().run(*std::make_unique<Stage>());
        for (std::size_t n = 1;; ++n) {
            ASSERT_LT(n, 20000u);
            ASSERT_FALSE(HasFailure()) << "request " << n;
            const long live = FailingMemory::live();
            bool has_failed = false;
            bool has_told = false;
            {
                Stage stage;
                stage.log.throws_at_the_end_of_memory = true;
                FailingMemory::fail_at(n, for_good);
                try {
                    GetParam().run(stage);
                } catch (const HostFault&) {
                    has_told = true;
                } catch (const std::bad_alloc&) {
                    EXPECT_TRUE(GetParam().is_edit) << "the operation has a result that says so";
                }
                has_failed = FailingMemory::disarm();
                EXPECT_TRUE(has_failed || !has_told);
                stage.log.throws_at_the_end_of_memory = false;
                EXPECT_EQ(stage.bar.open_tasks, 0);
                EXPECT_EQ(stage.observer.open_files, 0);
                EXPECT_EQ(stage.disk.open_handles, 0);
                EXPECT_NO_THROW(GetParam().run(stage)) << "everything can be used further";
            }
            EXPECT_EQ(FailingMemory::live(), live) << "blocks are left behind";
            if (!has_failed) {
                return;
            }
        }
    }
};

using host_end_of_memory = HostEndOfMemory;

} // namespace

TEST_P(host_end_of_memory, is_an_exception_when_the_handler_that_is_told_throws_one) {
    expect_no_leak(false);
    expect_no_leak(true);
}

INSTANTIATE_TEST_SUITE_P(of_every_request, host_end_of_memory, testing::ValuesIn(host_operations()), name_of);
