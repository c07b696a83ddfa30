#include "verbs/check/check_pool.h"

#include "platform/interruption.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>

namespace bkdoc {

namespace {

class Pool {
public:
    Pool(const std::vector<std::string>& files, const CheckRules& rules)
        : files_(files), rules_(rules), results_(files.size()) {}

    void run(std::size_t thread_count, const std::function<void(CheckedFile&&)>& take) {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < thread_count; ++i) {
            threads.emplace_back([this] { work(); });
        }
        try {
            hand_over(take);
        } catch (...) {
            stop({});
            throw;
        }
    }

private:
    void hand_over(const std::function<void(CheckedFile&&)>& take) {
        for (std::optional<CheckedFile>& result : results_) {
            std::unique_lock lock(mutex_);
            is_done_.wait(lock, [&] { return result || fault_ || is_stopped_; });
            if (fault_) {
                std::rethrow_exception(fault_);
            }
            if (!result) {
                return;
            }
            CheckedFile file = std::move(*result);
            result.reset();
            lock.unlock();
            take(std::move(file));
        }
    }

    void work() {
        try {
            while (const std::optional<std::size_t> i = next()) {
                CheckedFile file = check_file(files_[*i], rules_);
                const std::lock_guard lock(mutex_);
                results_[*i] = std::move(file);
                is_done_.notify_all();
            }
        } catch (...) {
            stop(std::current_exception());
        }
    }

    std::optional<std::size_t> next() {
        const std::lock_guard lock(mutex_);
        if (Interruption::is_wanted()) {
            is_stopped_ = true;
            is_done_.notify_all();
        }
        return is_stopped_ || next_ == files_.size() ? std::nullopt : std::optional(next_++);
    }

    void stop(std::exception_ptr fault) {
        const std::lock_guard lock(mutex_);
        fault_ = std::move(fault);
        is_stopped_ = true;
        is_done_.notify_all();
    }

    const std::vector<std::string>& files_;
    const CheckRules& rules_;
    std::mutex mutex_;
    std::condition_variable is_done_;
    std::vector<std::optional<CheckedFile>> results_;
    std::size_t next_ = 0;
    std::exception_ptr fault_;
    bool is_stopped_ = false;
};

} // namespace

void check_files(const std::vector<std::string>& files, const CheckRules& rules, std::size_t threads,
                 const std::function<void(CheckedFile&&)>& take, const std::function<void(double)>& tell) {
    if (threads <= 1 || files.size() <= 1) {
        for (const std::string& file : files) {
            if (Interruption::is_wanted()) {
                return;
            }
            take(check_file(file, rules, tell));
        }
        return;
    }
    Pool(files, rules).run(std::min(threads, files.size()), take);
}

} // namespace bkdoc
