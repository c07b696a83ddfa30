#include "core/core_log.h"

#include "core/memory/core_immortal_impl.h"

#include <cstdio>

namespace {

constinit bk::Immortal<CoreLogHandler> default_handler;

} // namespace

// Without these definitions, a shared library for Windows has no addresses for the constants that callers could import.
constexpr int CoreLogHandler::level_error;   // NOLINT(readability-redundant-declaration)
constexpr int CoreLogHandler::level_warning; // NOLINT(readability-redundant-declaration)

CoreLogStream::CoreLogStream() = default;
CoreLogStream::~CoreLogStream() = default;

CoreLogStream::CoreLogStream(const char* text, const unsigned int& size) {
    message_.set_borrowed(text, size);
}

CoreLogHandler::~CoreLogHandler() = default;

void CoreLogHandler::log(const int& /*level*/, const CoreLogStream& stream) {
    const CoreString& message = stream.get_message();
    std::fwrite(message.get_data(), 1, message.get_length(), stderr);
}

constinit CoreLogHandler* CoreLogHandler::s_main_log_handler = &default_handler.value;
