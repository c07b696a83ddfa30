#include "platform/platform.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>
#else
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace bkdoc {

namespace {

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool is_dumb_terminal() {
    const char* kind = std::getenv("TERM");
    return kind != nullptr && std::string_view(kind) == "dumb";
}

std::filesystem::path utf8_path(const std::string& path) {
    return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

#if defined(_WIN32)
std::string to_utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string utf8(size > 0 ? static_cast<std::size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();
    return utf8;
}
#endif

constexpr std::size_t usual_width = 80;

#if defined(_WIN32)
std::size_t columns_of(std::FILE* stream) {
    CONSOLE_SCREEN_BUFFER_INFO info;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    return GetConsoleScreenBufferInfo(handle, &info) == 0
               ? usual_width
               : static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}
#else
std::size_t columns_of(std::FILE* stream) {
    winsize size{};
    const bool is_known = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return is_known ? size.ws_col : usual_width;
}
#endif

} // namespace

std::size_t terminal_width(std::FILE* stream) {
    constexpr std::size_t narrowest = 40;
    constexpr std::size_t widest = 100;
    return is_terminal(stream) ? std::clamp(columns_of(stream), narrowest, widest) : usual_width;
}

#if defined(_WIN32)

std::vector<std::string> command_line(int argc, char** argv) {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr) {
        return {argv + (argc > 0 ? 1 : 0), argv + argc};
    }
    std::vector<std::string> result;
    for (int i = 1; i < count; ++i) {
        result.push_back(to_utf8(words[i]));
    }
    LocalFree(words);
    return result;
}

std::string environment_variable(const char* name) {
    const std::wstring wide(name, name + std::string_view(name).size());
    const wchar_t* value = _wgetenv(wide.c_str());
    return value == nullptr ? std::string() : to_utf8(value);
}

void prepare_streams() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

bool is_terminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

bool is_standard_input(const std::string& path) {
    const HANDLE file =
        CreateFileW(utf8_path(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    BY_HANDLE_FILE_INFORMATION input;
    BY_HANDLE_FILE_INFORMATION named;
    const bool are_known = GetFileInformationByHandle(GetStdHandle(STD_INPUT_HANDLE), &input) != 0 &&
                           GetFileInformationByHandle(file, &named) != 0;
    CloseHandle(file);
    return are_known && input.dwVolumeSerialNumber == named.dwVolumeSerialNumber &&
           input.nFileIndexHigh == named.nFileIndexHigh && input.nFileIndexLow == named.nFileIndexLow;
}

// Windows reports a pipe without a reader as an invalid argument.
bool is_closed_pipe(int error) noexcept {
    return error == EPIPE || error == EINVAL;
}

#else

std::vector<std::string> command_line(int argc, char** argv) {
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::string environment_variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

void prepare_streams() {
    std::signal(SIGPIPE, SIG_IGN);
}

bool is_terminal(std::FILE* stream) {
    return isatty(fileno(stream)) != 0;
}

bool is_standard_input(const std::string& path) {
    struct stat input;
    struct stat named;
    return fstat(STDIN_FILENO, &input) == 0 && stat(path.c_str(), &named) == 0 &&
           input.st_dev == named.st_dev && input.st_ino == named.st_ino;
}

bool is_closed_pipe(int error) noexcept {
    return error == EPIPE;
}

#endif

bool takes_colours(std::FILE* stream) {
    return is_terminal(stream) && !is_set("NO_COLOR") && !is_dumb_terminal();
}

bool are_same_file(const std::string& first, const std::string& second) {
    std::error_code error;
    return std::filesystem::equivalent(utf8_path(first), utf8_path(second), error) && !error;
}

} // namespace bkdoc
