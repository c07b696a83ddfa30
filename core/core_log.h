#pragma once

#include "core/core_base_object.h"
#include "core/core_string.h"

/// One message on its way to a log handler. It is composed by appending to it.
class BK_PARSER_API CoreLogStream : public CoreBaseObject {
public:
    CoreLogStream();
    /// Borrows a message instead of copying it, so that it takes no memory. The caller keeps the bytes, and a NUL after them, as
    /// long as the stream lives.
    CoreLogStream(const char* text, const unsigned int& size);
    ~CoreLogStream() override;

    /// What was appended so far.
    const CoreString& get_message() const noexcept { return message_; }

    /// Appends a part, as CoreString does.
    template <class T>
    CoreLogStream& operator+=(const T& part) {
        message_ += part;
        return *this;
    }

private:
    CoreString message_;
};

/// Receives the messages of the library. Level 1 is an error, level 2 a warning. A message is composed only when
/// the handler's verbosity is at least its level. A host overrides `log`, points `s_main_log_handler` at its
/// own handler, and keeps that alive as long as the library may log. An exception that `log` throws ends the operation and
/// passes to its caller, except std::bad_alloc: then the operation goes on without the message.
class BK_PARSER_API CoreLogHandler : public CoreBaseObject {
public:
    /// Something was not done: a file that cannot be written, memory that has run out.
    static constexpr int level_error = 1;
    /// Something was wrong with what was read, or a value was asked for as another type.
    static constexpr int level_warning = 2;

    constexpr CoreLogHandler() noexcept = default;
    ~CoreLogHandler() override;

    /// Delivers the message. The default writes it to standard error unchanged.
    virtual void log(const int& level, const CoreLogStream& stream);

    /// The highest level that is delivered.
    const int& get_verbosity() const noexcept { return verbosity_; }
    /// 0 delivers nothing, 1 errors, 2 warnings too.
    void set_verbosity(const int& verbosity) noexcept { verbosity_ = verbosity; }

    /// Never null; at first the default handler. Read without synchronisation.
    static CoreLogHandler* s_main_log_handler;

private:
    int verbosity_ = level_warning;
};
