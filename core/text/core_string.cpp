#include "core/core_string.h"

#include "core/core_memory.h"
#include "core/memory/core_immortal_impl.h"
#include "core/numbers/core_number_impl.h"
#include "core/text/core_copy_impl.h"

#include <algorithm>

namespace {

constinit bk::Immortal<CoreString> null_string;

// A capacity whose block, with the closing NUL, fills whole units of 16 bytes.
unsigned int round_capacity(core_uint64 length) noexcept {
    constexpr core_uint64 unit = 16;
    const core_uint64 rounded = (length + unit) / unit * unit - 1;
    return static_cast<unsigned int>(std::min<core_uint64>(rounded, CoreString::max_length));
}

unsigned int grown_capacity(unsigned int capacity, unsigned int needed) noexcept {
    return round_capacity(std::max<core_uint64>(core_uint64{capacity} * 2, needed));
}

char* take_block(unsigned int capacity) {
    return static_cast<char*>(CoreMemory::allocate(std::size_t{capacity} + 1));
}

char* copy_to_block(const char* text, std::size_t size, unsigned int capacity) {
    char* const block = take_block(capacity);
    std::memcpy(block, text, size);
    return block;
}

char* grow_block(char* block, unsigned int capacity, unsigned int kept, unsigned int grown) {
    return static_cast<char*>(
        CoreMemory::grow(block, std::size_t{capacity} + 1, kept, std::size_t{grown} + 1));
}

} // namespace

// Without these definitions, a shared library for Windows has no addresses for the constants that callers could import.
constexpr unsigned int CoreBasicString::inline_capacity; // NOLINT(readability-redundant-declaration)
constexpr unsigned int CoreString::max_length;           // NOLINT(readability-redundant-declaration)

CoreString::CoreString(const char* text) {
    set_data(text);
}

CoreString::CoreString(const char* data, const unsigned int& size) {
    set_data(data, size);
}

CoreString::CoreString(std::string_view text) {
    if (text.size() <= inline_capacity) {
        bk::copy_text(short_.text, text.data(), text.size());
        short_.length = static_cast<unsigned int>(text.size());
    } else {
        append(text);
    }
}

void CoreString::set_data(const char* data, const unsigned int& size) {
    if (data == nullptr) {
        clear();
        return;
    }
    if (size <= max_length) {
        assign(data, size);
        return;
    }
    const std::size_t length = std::strlen(data);
    if (length <= max_length) {
        assign(data, static_cast<unsigned int>(length));
    }
}

void CoreString::set_borrowed(const char* data, const unsigned int& size) {
    if (data == nullptr || size <= inline_capacity || size > max_length) {
        set_data(data, size);
        return;
    }
    release();
    // Nothing writes through this pointer: with the capacity 0, every change makes a new block.
    long_ = {size, 0, const_cast<char*>(data)};
}

void CoreString::clear() noexcept {
    release();
    short_ = {0, {}};
}

const CoreString& CoreString::get_null_string() noexcept {
    return null_string.value;
}

CoreString CoreString::sub_string(const unsigned int& start, const unsigned int& length) const {
    if (start >= get_length()) {
        return CoreString();
    }
    return CoreString(get_data() + start, std::min(length, get_length() - start));
}

CoreString::operator int() const noexcept {
    return bk::text_to_int(get_view()).value;
}

CoreString::operator double() const noexcept {
    return bk::text_to_double(get_view()).value;
}

void CoreString::reserve(const unsigned int& length) {
    if (!is_inline() && length > capacity()) {
        move_to_block(round_capacity(std::max(length, get_length())));
    }
}

char* CoreString::resize(const unsigned int& length) {
    if (length <= inline_capacity) {
        if (!is_inline()) {
            assign(long_.data, length);
        }
    } else if (length > capacity()) {
        const unsigned int kept = std::min(get_length(), length);
        const unsigned int grown = grown_capacity(capacity(), length);
        char* const block = owns_block() ? grow_block(long_.data, long_.capacity, kept, grown)
                                         : copy_to_block(get_data(), kept, grown);
        long_ = {length, grown, block};
    }
    char* const text = writable_data();
    close_at(text, length);
    return text;
}

CoreString& CoreString::operator+=(const char* text) {
    if (text != nullptr) {
        append(text, std::strlen(text));
    }
    return *this;
}

CoreString& CoreString::operator+=(int number) {
    char digits[bk::number_text_capacity];
    append(digits, bk::write_int(digits, number));
    return *this;
}

CoreString& CoreString::operator+=(unsigned int number) {
    return *this += static_cast<unsigned long long>(number);
}

CoreString& CoreString::operator+=(unsigned long number) {
    return *this += static_cast<unsigned long long>(number);
}

CoreString& CoreString::operator+=(unsigned long long number) {
    char digits[bk::number_text_capacity];
    append(digits, bk::write_unsigned(digits, number));
    return *this;
}

CoreString& CoreString::operator+=(double number) {
    char digits[bk::number_text_capacity];
    append(digits, bk::write_double(digits, number));
    return *this;
}

void CoreString::release_block() noexcept {
    CoreMemory::release(long_.data, std::size_t{long_.capacity} + 1);
}

void CoreString::assign(const char* data, unsigned int size) {
    if (size <= inline_capacity) {
        Short fresh{size, {}};
        bk::copy_text(fresh.text, data, size);
        release();
        short_ = fresh;
    } else if (size <= capacity()) {
        std::memmove(long_.data, data, size);
        long_.data[size] = '\0';
        long_.length = size;
    } else {
        const unsigned int fresh_capacity = round_capacity(size);
        char* const block = copy_to_block(data, size, fresh_capacity);
        block[size] = '\0';
        release();
        long_ = {size, fresh_capacity, block};
    }
}

// The bytes may be in the storage that is freed, so free it last.
bool CoreString::append(const char* data, const std::size_t& size) {
    if (size > room()) {
        return append_growing(data, size);
    }
    if (size != 0) {
        const unsigned int length = get_length();
        char* const text = writable_data();
        std::memcpy(text + length, data, size);
        close_at(text, length + static_cast<unsigned int>(size));
    }
    return true;
}

bool CoreString::append_growing(const char* data, std::size_t size) {
    const unsigned int length = get_length();
    if (size > max_length - length) {
        return false;
    }
    const unsigned int total = length + static_cast<unsigned int>(size);
    const unsigned int grown = grown_capacity(capacity(), total);
    char* const block = copy_to_block(get_data(), length, grown);
    std::memcpy(block + length, data, size);
    block[total] = '\0';
    release();
    long_ = {total, grown, block};
    return true;
}

void CoreString::append_growing(char character) {
    append_growing(&character, 1);
}

// For text that is longer than inline_capacity.
void CoreString::move_to_block(unsigned int new_capacity) {
    const unsigned int length = get_length();
    char* const block = copy_to_block(get_data(), std::size_t{length} + 1, new_capacity);
    release();
    long_ = {length, new_capacity, block};
}
