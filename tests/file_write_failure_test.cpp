#include "tests/support/document_folder.h"
#include "tests/support/forwarding_device.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// The step of writing a file that fails.
enum class Failure { write, short_write, full_after_ten_bytes, sync, close, replace };

class FailingHandle : public ForwardingHandle {
public:
    FailingHandle(std::unique_ptr<SysHandle> inner, Failure failure)
        : ForwardingHandle(std::move(inner)), failure_(failure) {}

    core_int64 write(const char* data, std::size_t size) override {
        switch (failure_) {
        case Failure::write:
            return -1;
        case Failure::short_write:
            return 0;
        case Failure::full_after_ten_bytes:
            return write_what_fits(data, size);
        default:
            return ForwardingHandle::write(data, size);
        }
    }
    bool sync() override { return failure_ != Failure::sync && ForwardingHandle::sync(); }
    bool close() override { return ForwardingHandle::close() && failure_ != Failure::close; }

private:
    core_int64 write_what_fits(const char* data, std::size_t size) {
        if (room_ == 0) {
            return -1;
        }
        const core_int64 taken = ForwardingHandle::write(data, std::min(room_, size));
        room_ -= static_cast<std::size_t>(taken);
        return taken;
    }

    Failure failure_;
    std::size_t room_ = 10;
};

class FailingDevice : public ForwardingDevice {
public:
    explicit FailingDevice(Failure failure) : failure_(failure) {}

    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created) override {
        auto inner = ForwardingDevice::create_beside(target, created);
        return inner ? std::make_unique<FailingHandle>(std::move(inner), failure_) : nullptr;
    }
    bool replace(const std::string& from, const std::string& to) override {
        return failure_ != Failure::replace && ForwardingDevice::replace(from, to);
    }

private:
    Failure failure_;
};

class Failing : public testing::TestWithParam<Failure> {
protected:
    Failing() : file(CoreString{}) { file.get_root().add_entry("a", 0, 0)->add_int(1); }

    const DocumentFolder folder;
    ParserFile file;
};

} // namespace

using file_write_failure = Failing;

TEST_P(file_write_failure, is_logged_once_and_the_result_is_true_all_the_same) {
    const FailingDevice device(GetParam());
    RecordingLog log;
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    EXPECT_EQ(log.messages, (std::vector<LoggedMessage>{{1, "ParserFile.write: Can't save project '" +
                                                                folder.path("out.bkd") + "'.\n"}}));
}

TEST_P(file_write_failure, leaves_the_old_file_as_it_was_and_nothing_beside_it) {
    folder.write("out.bkd", "the old document");
    const FailingDevice device(GetParam());
    const RecordingLog log;
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    EXPECT_EQ(folder.read("out.bkd"), "the old document");
    EXPECT_EQ(folder.count(), 1u);
}

TEST_P(file_write_failure, leaves_no_file_where_there_was_none) {
    const FailingDevice device(GetParam());
    const RecordingLog log;
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    EXPECT_EQ(folder.count(), 0u);
}

TEST_P(file_write_failure, is_reported_with_the_name_as_given_even_when_the_stored_one_was_used) {
    file.set_filename(folder.core_path("out.bkd"));
    const FailingDevice device(GetParam());
    RecordingLog log;
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, "", ""));
    EXPECT_EQ(log.messages, (std::vector<LoggedMessage>{{1, "ParserFile.write: Can't save project ''.\n"}}));
}

TEST_P(file_write_failure, is_not_reported_below_verbosity_1) {
    const FailingDevice device(GetParam());
    RecordingLog quiet(0);
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    EXPECT_TRUE(quiet.is_empty());
}

TEST_P(file_write_failure, is_reported_at_verbosity_1) {
    const FailingDevice device(GetParam());
    RecordingLog log(1);
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    EXPECT_EQ(log.messages.size(), 1u);
}

TEST_P(file_write_failure, can_be_made_good_by_writing_again) {
    {
        const FailingDevice device(GetParam());
        const RecordingLog log;
        EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    }
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, "", ""));
    EXPECT_EQ(folder.read("out.bkd"), on_disk("#Brellwick_Serial_Version 1.2\n\na 1"));
}

INSTANTIATE_TEST_SUITE_P(each_step, file_write_failure,
                         testing::Values(Failure::write, Failure::short_write, Failure::full_after_ten_bytes,
                                         Failure::sync, Failure::close, Failure::replace));

TEST(file_write_refusal, a_folder_that_is_missing_is_a_failure_without_a_message) {
    const DocumentFolder folder;
    RecordingLog log;
    ParserFile file(CoreString{});
    EXPECT_FALSE(file.write(ParserFile::MODE_TEXT, folder.core_path("missing/out.bkd"), ""));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(plain(file.get_filename()), folder.path("missing/out.bkd"));
}

TEST(file_write_refusal, a_directory_is_a_failure_without_a_message) {
    const DocumentFolder folder;
    folder.make_folder("out.bkd");
    RecordingLog log;
    ParserFile file(CoreString{});
    EXPECT_FALSE(file.write(ParserFile::MODE_TEXT, folder.core_path("out.bkd"), ""));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(folder.count(), 1u);
}

TEST(file_write_refusal, no_name_at_all_is_a_failure_without_a_message) {
    RecordingLog log;
    ParserFile file(CoreString{});
    EXPECT_FALSE(file.write(ParserFile::MODE_TEXT, "", ""));
    EXPECT_TRUE(log.is_empty());
}

TEST(file_write_refusal, a_file_that_cannot_be_opened_leaves_the_version_entry_as_it_was) {
    const DocumentFolder folder;
    ParserFile file(CoreString{});
    ParserEntry* version = file.get_root().add_entry("#Brellwick_Serial_Version", 0, 0);
    version->add_double(1.0);
    EXPECT_FALSE(file.write(ParserFile::MODE_TEXT, folder.core_path("missing/out.bkd"), ""));
    EXPECT_EQ(version->get_double(0), 1.0);
}

TEST(file_write_refusal, an_unknown_mode_is_not_reported_below_verbosity_1) {
    RecordingLog quiet(0);
    ParserFile file(CoreString{});
    EXPECT_FALSE(file.write(static_cast<ParserFile::Mode>(2), "out.bkd", ""));
    EXPECT_TRUE(quiet.is_empty());
}
