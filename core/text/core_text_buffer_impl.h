#pragma once

#include "core/core_string.h"
#include "core/numbers/core_number_impl.h"
#include "core/text/core_copy_impl.h"

#include <string_view>

namespace bk {

/// Appends to a string. The destructor sets the string's length. When the string would become too long, the buffer drops the
/// rest, and the string ends as it was before.
class TextBuffer {
public:
    explicit TextBuffer(CoreString& out) noexcept : out_(out), old_length_(out.get_length()) {}
    ~TextBuffer() {
        if (begin_ != nullptr) { // else nothing was written, and a borrowed text stays borrowed
            out_.resize(is_too_long_ ? old_length_ : length());
        }
    }
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    bool is_too_long() const noexcept { return is_too_long_; }

    void put(char character) {
        if (has_room(1)) {
            *end_++ = character;
        }
    }
    void put(std::string_view text) {
        if (has_room(text.size())) {
            copy_text(end_, text.data(), text.size());
            end_ += text.size();
        }
    }
    void put_quoted(std::string_view text) {
        if (has_room(text.size() + 2)) {
            *end_ = '"';
            copy_text(end_ + 1, text.data(), text.size());
            end_ += text.size() + 2;
            end_[-1] = '"';
        }
    }
    /// A line feed and blanks.
    void put_line(std::size_t indentation) {
        if (!has_room(indentation + 1)) {
            return;
        }
        *end_++ = '\n';
        constexpr std::size_t usual = 32;
        if (indentation <= usual && static_cast<std::size_t>(limit_ - end_) >= usual) {
            std::memset(end_, ' ', usual); // a constant size, which the compiler inlines
        } else {
            std::memset(end_, ' ', indentation);
        }
        end_ += indentation;
    }
    void put_number(int number) { put_number(write_int, number); }
    void put_number(unsigned int number) { put_number(write_unsigned, number); }
    void put_number(double number) { put_number(write_double, number); }

private:
    template <class Write, class Number>
    void put_number(Write write, Number number) {
        if (has_room(number_text_capacity)) {
            end_ += write(end_, number);
        }
    }

    bool has_room(std::size_t size) { return static_cast<std::size_t>(limit_ - end_) >= size || grow(size); }
    unsigned int length() const noexcept {
        return begin_ == nullptr ? old_length_ : static_cast<unsigned int>(end_ - begin_);
    }
    bool grow(std::size_t size);

    CoreString& out_;
    unsigned int old_length_;
    bool is_too_long_ = false;
    char* begin_ = nullptr;
    char* end_ = nullptr;
    char* limit_ = nullptr;
};

} // namespace bk
