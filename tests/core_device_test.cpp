#include "core/sys_device.h"
#include "core/sys_file.h"

#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace {

enum class Fault { none, create, write, short_write, sync, close, replace };

/// Forwards every call to the platform's device, except the one that is to fail.
class FaultyDevice : public SysDevice {
public:
    explicit FaultyDevice(Fault fault, int good_calls = 0)
        : inner_(SysDevice::get()), fault_(fault), good_calls_(good_calls) {
        SysDevice::set(this);
    }
    ~FaultyDevice() override { SysDevice::set(nullptr); }

    SysPathInfo inspect(const std::string& path) override { return inner_.inspect(path); }
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return inner_.open_for_reading(path);
    }
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override {
        return inner_.open_in_place(path);
    }
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created) override {
        if (fails(Fault::create)) {
            return nullptr;
        }
        std::unique_ptr<SysHandle> handle = inner_.create_beside(target, created);
        return handle == nullptr ? nullptr : std::make_unique<Handle>(*this, std::move(handle));
    }
    bool replace(const std::string& from, const std::string& to) override {
        return !fails(Fault::replace) && inner_.replace(from, to);
    }
    bool remove(const std::string& path) override {
        ++removals;
        return inner_.remove(path);
    }
    std::string resolve_links(const std::string& path) override { return inner_.resolve_links(path); }
    std::string current_folder() override { return inner_.current_folder(); }

    int removals = 0;
    int syncs = 0;

private:
    class Handle : public SysHandle {
    public:
        Handle(FaultyDevice& device, std::unique_ptr<SysHandle> inner)
            : device_(device), inner_(std::move(inner)) {}
        core_int64 read(char* buffer, std::size_t size) override { return inner_->read(buffer, size); }
        core_int64 write(const char* data, std::size_t size) override {
            if (device_.fails(Fault::write)) {
                return -1;
            }
            // A device may take fewer bytes than it is given. The library then writes the rest.
            const bool less = device_.fault_ == Fault::short_write && size > 1;
            return inner_->write(data, less ? size / 2 : size);
        }
        bool sync() override {
            ++device_.syncs;
            return !device_.fails(Fault::sync) && inner_->sync();
        }
        bool close() override {
            const bool closed = inner_->close();
            return !device_.fails(Fault::close) && closed;
        }

    private:
        FaultyDevice& device_;
        std::unique_ptr<SysHandle> inner_;
    };

    bool fails(Fault fault) { return fault == fault_ && good_calls_-- <= 0; }

    SysDevice& inner_;
    Fault fault_;
    int good_calls_;
};

const std::string content(3u << 20, 'n');

class core_device : public testing::Test {
protected:
    ScratchFolder folder;

    void SetUp() override { folder.write("data", "old"); }

    /// Writes the content in pieces to the current device.
    bool store(const char* name) {
        SysFile file;
        if (!file.open(folder.core_path(name), SysFile::MODE_WRITE, SysFile::TYPE_BINARY)) {
            return false;
        }
        core_int64 taken = 0;
        for (std::size_t start = 0; start < content.size(); start += 1u << 18) {
            taken += file.write(content.data() + start, 1 << 18);
        }
        const bool closed = file.close();
        EXPECT_TRUE(file.close()) << "a file that failed to close is closed all the same";
        return closed && taken == static_cast<core_int64>(content.size());
    }
};

TEST_F(core_device, the_platforms_device_is_in_use_at_first_and_is_put_back_by_null) {
    SysDevice* first = &SysDevice::get();
    {
        FaultyDevice device(Fault::none);
        EXPECT_EQ(&SysDevice::get(), &device);
    }
    EXPECT_EQ(&SysDevice::get(), first);
}

TEST_F(core_device, without_a_fault_the_file_is_replaced_and_flushed_to_the_disk) {
    FaultyDevice device(Fault::none);
    EXPECT_TRUE(store("data"));
    EXPECT_EQ(folder.read("data"), content);
    EXPECT_GE(device.syncs, 1);
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(core_device, a_file_that_cannot_be_created_is_not_opened) {
    FaultyDevice device(Fault::create);
    EXPECT_FALSE(store("data"));
    EXPECT_EQ(folder.read("data"), "old");
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(core_device, whatever_fails_the_old_file_stays_and_the_new_one_is_removed) {
    for (const Fault fault : {Fault::write, Fault::sync, Fault::close, Fault::replace}) {
        FaultyDevice device(fault);
        EXPECT_FALSE(store("data")) << static_cast<int>(fault);
        EXPECT_EQ(folder.read("data"), "old") << static_cast<int>(fault);
        EXPECT_EQ(folder.count(), 1u) << static_cast<int>(fault);
        EXPECT_GE(device.removals, 1) << static_cast<int>(fault);
    }
}

TEST_F(core_device, a_later_write_that_fails_counts_as_much_as_the_first) {
    for (int good_writes = 1; good_writes <= 3; ++good_writes) {
        FaultyDevice device(Fault::write, good_writes);
        EXPECT_FALSE(store("data")) << good_writes;
        EXPECT_EQ(folder.read("data"), "old") << good_writes;
        EXPECT_EQ(folder.count(), 1u) << good_writes;
    }
}

TEST_F(core_device, a_new_file_that_fails_leaves_nothing_behind) {
    for (const Fault fault : {Fault::create, Fault::write, Fault::sync, Fault::close, Fault::replace}) {
        FaultyDevice device(fault);
        EXPECT_FALSE(store("fresh"));
        EXPECT_FALSE(folder.exists("fresh"));
        EXPECT_EQ(folder.count(), 1u);
    }
}

TEST_F(core_device, writes_that_take_fewer_bytes_than_offered_are_continued) {
    FaultyDevice device(Fault::short_write);
    EXPECT_TRUE(store("data"));
    EXPECT_TRUE(folder.read("data") == content);
}

TEST_F(core_device, after_a_failure_the_next_file_is_stored) {
    {
        FaultyDevice device(Fault::replace);
        EXPECT_FALSE(store("data"));
    }
    EXPECT_TRUE(store("data"));
    EXPECT_TRUE(folder.read("data") == content);
}

/// Serves one file from memory in pieces of a few bytes.
class MemoryDevice : public SysDevice {
public:
    explicit MemoryDevice(std::string bytes) : bytes_(std::move(bytes)) { SysDevice::set(this); }
    ~MemoryDevice() override { SysDevice::set(nullptr); }

    SysPathInfo inspect(const std::string& path) override {
        return path.find("memory") == std::string::npos
                   ? SysPathInfo()
                   : SysPathInfo{SysPathKind::regular, static_cast<core_int64>(bytes_.size())};
    }
    std::unique_ptr<SysHandle> open_for_reading(const std::string&) override {
        return std::make_unique<Handle>(bytes_);
    }
    std::unique_ptr<SysHandle> open_in_place(const std::string&) override { return nullptr; }
    std::unique_ptr<SysHandle> create_beside(const std::string&, std::string&) override { return nullptr; }
    bool replace(const std::string&, const std::string&) override { return false; }
    bool remove(const std::string&) override { return false; }
    std::string resolve_links(const std::string& path) override { return path; }
    std::string current_folder() override { return "/"; }

private:
    class Handle : public SysHandle {
    public:
        explicit Handle(const std::string& bytes) : bytes_(bytes) {}
        core_int64 read(char* buffer, std::size_t size) override {
            const std::size_t given = bytes_.copy(buffer, size < 7 ? size : 7, position_);
            position_ += given;
            return static_cast<core_int64>(given);
        }
        core_int64 write(const char*, std::size_t) override { return -1; }
        bool sync() override { return true; }
        bool close() override { return true; }

    private:
        const std::string& bytes_;
        std::size_t position_ = 0;
    };

    std::string bytes_;
};

TEST_F(core_device, reads_that_give_fewer_bytes_than_asked_for_are_continued) {
    const std::string bytes = "a text of some length, in pieces of seven";
    MemoryDevice device(bytes);
    SysFile file;
    ASSERT_TRUE(file.open(CoreString("memory"), SysFile::MODE_READ, SysFile::TYPE_BINARY));
    EXPECT_EQ(file.get_size(), static_cast<core_int64>(bytes.size()));
    CoreString text;
    EXPECT_EQ(file.read(text, file.get_size()), static_cast<core_int64>(bytes.size()));
    EXPECT_EQ(plain(text), bytes);
}

TEST_F(core_device, whether_a_file_exists_is_asked_of_the_device_in_use) {
    MemoryDevice device("bytes");
    EXPECT_TRUE(SysFilesystem::file_exists(CoreString("memory")));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.core_path("data")));
}

} // namespace
