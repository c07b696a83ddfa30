#pragma once

#if !defined(_WIN32)

#include <csignal>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// A pseudo terminal for a test.
class Terminal {
public:
    Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
        if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0) {
            slave_ = open(ptsname(master_), O_RDWR | O_NOCTTY);
        }
    }
    ~Terminal() {
        close(slave_);
        close(master_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    bool works() const { return slave_ >= 0; }

    /// Sets the number of columns that programs see.
    void set_width(unsigned short columns) const {
        winsize size{};
        size.ws_col = columns;
        size.ws_row = 24;
        ioctl(slave_, TIOCSWINSZ, &size);
    }

    /// Runs a shell command with the terminal as its standard output, and returns the output.
    std::string show(const std::string& command) {
        start({"/bin/sh", "-c", command}, false);
        return read_until({});
    }

    /// Starts a program with this terminal as its controlling one. Connects all its streams, or only standard output.
    void start(const std::vector<std::string>& words, bool has_all_streams) {
        child_ = fork();
        if (child_ == 0) {
            run(words, has_all_streams);
        }
        close(slave_);
        slave_ = -1;
    }

    /// Reads the output until it contains this text, or to its end.
    std::string read_until(std::string_view text) const {
        std::string shown;
        char buffer[4096];
        for (ssize_t count = 0; (text.empty() || shown.find(text) == std::string::npos) &&
                                (count = read(master_, buffer, sizeof buffer)) > 0;) {
            shown.append(buffer, static_cast<std::size_t>(count));
        }
        return shown;
    }

    void press_interrupt() const {
        const char key = '\x03';
        [[maybe_unused]] const ssize_t taken = write(master_, &key, 1);
    }

    /// The exit code of the program as a shell reports it.
    int wait() const {
        int status = 0;
        waitpid(child_, &status, 0);
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    [[noreturn]] void run(const std::vector<std::string>& words, bool has_all_streams) const {
        setsid();
        ioctl(slave_, TIOCSCTTY, 0);
        for (const int stream : {STDIN_FILENO, STDERR_FILENO}) {
            if (has_all_streams) {
                dup2(slave_, stream);
            }
        }
        dup2(slave_, STDOUT_FILENO);
        std::vector<char*> arguments;
        for (const std::string& word : words) {
            arguments.push_back(const_cast<char*>(word.c_str()));
        }
        arguments.push_back(nullptr);
        execv(arguments[0], arguments.data());
        _exit(127);
    }

    int master_;
    int slave_ = -1;
    pid_t child_ = -1;
};

#endif
