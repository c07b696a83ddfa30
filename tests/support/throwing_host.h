#pragma once

#include "core/app_progress_bar.h"
#include "core/core_log.h"
#include "parser/parser_read_observer.h"
#include "tests/support/memory_disk.h"

#include <exception>
#include <memory>
#include <string>
#include <utility>

/// The kinds of calls that the library makes to a host.
enum class HostCall {
    begin_labelled_task,
    begin_task,
    set_step_count,
    step,
    set_value,
    end_task,
    log,
    include_found,
    file_entered,
    file_left,
    piece_copied,
    fault_found,
    directive_fault_found,
    inspect,
    open_for_reading,
    open_in_place,
    create_beside,
    replace,
    remove,
    resolve_links,
    current_folder,
    read,
    write,
    sync,
    close,
    count
};

/// The exception that a host's call throws: the kind of call, and its number.
struct HostFault {
    HostCall call;
    unsigned int number;
};

/// Makes call number n of a kind throw. With `goes_on`, every later call of any kind throws an exception of its own, too.
class Trap {
public:
    /// Makes the call throw `thrown` instead.
    template <class Thrown>
    static void set_other(HostCall call, unsigned int n, const Thrown& thrown) {
        set(call, n, false);
        other_ = std::make_exception_ptr(thrown);
    }
    static void set(HostCall call, unsigned int n, bool goes_on) {
        other_ = nullptr;
        call_ = call;
        number_ = n;
        count_ = 0;
        goes_on_ = goes_on;
        has_thrown_ = false;
        is_set_ = true;
    }
    /// From now on nothing throws. Returns whether a call has thrown.
    static bool take_away() {
        is_set_ = false;
        return has_thrown_;
    }
    static void reach(HostCall call) {
        if (!is_set_) {
            return;
        }
        if (has_thrown_ && goes_on_) {
            throw HostFault{call, 0};
        }
        if (call == call_ && ++count_ == number_) {
            has_thrown_ = true;
            if (other_ != nullptr) {
                std::rethrow_exception(other_);
            }
            throw HostFault{call, number_};
        }
    }

private:
    static inline HostCall call_ = HostCall::count;
    static inline unsigned int number_ = 0;
    static inline unsigned int count_ = 0;
    static inline bool goes_on_ = false;
    static inline bool has_thrown_ = false;
    static inline std::exception_ptr other_;
    static inline bool is_set_ = false;
};

/// Counts the tasks that were begun and those that were ended.
class ThrowingProgress : public AppProgressBar {
public:
    void begin_task(const CoreString&, const float&, const bool&) override {
        Trap::reach(HostCall::begin_labelled_task);
        ++open_tasks;
    }
    void begin_task(const bool&) override {
        Trap::reach(HostCall::begin_task);
        ++open_tasks;
    }
    void set_step_count(const unsigned int&) override { Trap::reach(HostCall::set_step_count); }
    void step(const unsigned int&) override { Trap::reach(HostCall::step); }
    void set_value(const float&) override { Trap::reach(HostCall::set_value); }
    unsigned int end_task() override {
        --open_tasks;
        Trap::reach(HostCall::end_task);
        return 0;
    }

    int open_tasks = 0;
};

class ThrowingObserver : public ParserReadObserver {
public:
    void include_found(const unsigned int&, const unsigned int&, const CoreString&) override {
        Trap::reach(HostCall::include_found);
    }
    void file_entered(const CoreString&, const CoreString&, const CoreString&) override {
        Trap::reach(HostCall::file_entered);
        ++open_files;
    }
    void file_left() override {
        --open_files;
        Trap::reach(HostCall::file_left);
    }
    void piece_copied(const unsigned int&, const unsigned int&, const unsigned int&) override {
        Trap::reach(HostCall::piece_copied);
    }
    void fault_found(const Fault&, const unsigned int&, const unsigned int&, const CoreString&) override {
        Trap::reach(HostCall::fault_found);
        ++faults;
    }
    void directive_fault_found(const Fault&, const unsigned int&, const unsigned int&,
                               const CoreString&) override {
        Trap::reach(HostCall::directive_fault_found);
        ++faults;
    }

    int open_files = 0;
    int faults = 0;
};

/// Takes every message in place of the handler installed before, and keeps none.
class ThrowingLog : public CoreLogHandler {
public:
    ThrowingLog() : previous_(s_main_log_handler) { s_main_log_handler = this; }
    ~ThrowingLog() override { s_main_log_handler = previous_; }
    ThrowingLog(const ThrowingLog&) = delete;
    ThrowingLog& operator=(const ThrowingLog&) = delete;

    void log(const int&, const CoreLogStream& stream) override {
        ++count;
        Trap::reach(HostCall::log);
        if (throws_at_the_end_of_memory && stream.get_message().get_view().ends_with(": out of memory\n")) {
            throw HostFault{HostCall::log, 0};
        }
    }

    int count = 0;
    bool throws_at_the_end_of_memory = false;

private:
    CoreLogHandler* previous_;
};

/// A disk in memory whose calls can throw. "pipe" is no regular file, "stuck" cannot be replaced, and nothing can be written beside "full".
class ThrowingDisk : public MemoryDisk {
public:
    int open_handles = 0;

    bool has(const std::string& name) const { return files.contains(name); }

    SysPathInfo inspect(const std::string& path) override {
        Trap::reach(HostCall::inspect);
        SysPathInfo info = MemoryDisk::inspect(path);
        if (path.ends_with("pipe")) {
            info.kind = SysPathKind::other;
        }
        return info;
    }
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        Trap::reach(HostCall::open_for_reading);
        return wrap(MemoryDisk::open_for_reading(path), false);
    }
    std::unique_ptr<SysHandle> open_in_place(const std::string&) override {
        Trap::reach(HostCall::open_in_place);
        std::string created;
        auto handle = MemoryDisk::create_beside("written_in_place", created);
        return wrap(std::move(handle), false);
    }
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override {
        Trap::reach(HostCall::create_beside);
        return wrap(MemoryDisk::create_beside(target, created_path), target.ends_with("full"));
    }
    bool replace(const std::string& from, const std::string& to) override {
        Trap::reach(HostCall::replace);
        return !to.ends_with("stuck") && MemoryDisk::replace(from, to);
    }
    bool remove(const std::string& path) override {
        Trap::reach(HostCall::remove);
        return MemoryDisk::remove(path);
    }
    std::string resolve_links(const std::string& path) override {
        Trap::reach(HostCall::resolve_links);
        return MemoryDisk::resolve_links(path);
    }
    std::string current_folder() override {
        Trap::reach(HostCall::current_folder);
        return MemoryDisk::current_folder();
    }

private:
    class Handle : public ForwardingHandle {
    public:
        Handle(std::unique_ptr<SysHandle> inner, bool is_full, int& open_handles)
            : ForwardingHandle(std::move(inner)), is_full_(is_full), open_handles_(open_handles) {
            ++open_handles_;
        }
        ~Handle() override { --open_handles_; }

        core_int64 read(char* buffer, std::size_t size) override {
            Trap::reach(HostCall::read);
            return ForwardingHandle::read(buffer, size);
        }
        core_int64 write(const char* data, std::size_t size) override {
            Trap::reach(HostCall::write);
            return is_full_ ? -1 : ForwardingHandle::write(data, size);
        }
        bool sync() override {
            Trap::reach(HostCall::sync);
            return true;
        }
        bool close() override {
            Trap::reach(HostCall::close);
            return true;
        }

    private:
        bool is_full_;
        int& open_handles_;
    };

    std::unique_ptr<SysHandle> wrap(std::unique_ptr<SysHandle> inner, bool is_full) {
        return inner == nullptr ? nullptr : std::make_unique<Handle>(std::move(inner), is_full, open_handles);
    }
};
