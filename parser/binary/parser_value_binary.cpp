#include "parser/binary/parser_binary_cut_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_value.h"

#include <bit>
#include <functional>
#include <vector>

namespace {

bk::ByteCursor cursor_at(const CoreVector<char>& data, unsigned long long position) noexcept {
    return {data.get_data(), data.get_count(), position};
}

/// Reads a number of a fixed width and advances the position past it.
std::uint64_t take_number(const CoreVector<char>& data, unsigned long long& position,
                          std::size_t width) noexcept {
    bk::ByteCursor cursor = cursor_at(data, position);
    const std::uint64_t number = cursor.take(width);
    position = cursor.position();
    return number;
}

bool lies_in(const CoreVector<char>& buffer, const char* bytes) noexcept {
    return std::less_equal<>()(buffer.begin(), bytes) && std::less<>()(bytes, buffer.end());
}

} // namespace

void ParserValue::get_binary(CoreVector<char>& out, unsigned long long& count, const bool& with_type) const {
    count += bk::encode(out, "ParserValue.get_binary", [&](bk::BinaryEncoder& encoder) {
        encoder.write_value(bk::StoredValue::of(*this), with_type);
    });
}

unsigned long long ParserValue::bool_to_bin(CoreVector<char>& out, const bool& value) {
    return char_to_bin(out, value ? '\1' : '\0');
}

unsigned long long ParserValue::char_to_bin(CoreVector<char>& out, const char& value) {
    const char byte = value; // copied first: `value` may alias a byte of `out`, which grows
    return bk::encode(out, "ParserValue.char_to_bin",
                      [&](bk::BinaryEncoder& encoder) { encoder.write_bytes(&byte, sizeof(byte)); });
}

unsigned long long ParserValue::int_to_bin(CoreVector<char>& out, const int& value) {
    unsigned char bytes[sizeof(std::uint32_t)];
    bk::store_le32(bytes, static_cast<std::uint32_t>(value));
    return bk::encode(out, "ParserValue.int_to_bin",
                      [&](bk::BinaryEncoder& encoder) { encoder.write_bytes(bytes, sizeof(bytes)); });
}

unsigned long long ParserValue::double_to_bin(CoreVector<char>& out, const double& value) {
    return size_to_bin(out, std::bit_cast<std::uint64_t>(value));
}

unsigned long long ParserValue::size_to_bin(CoreVector<char>& out, const unsigned long long& value) {
    return bk::encode(out, "ParserValue.size_to_bin",
                      [&](bk::BinaryEncoder& encoder) { encoder.write_size(value); });
}

unsigned long long ParserValue::string_to_bin(CoreVector<char>& out, const CoreString& value) {
    return bk::encode(out, "ParserValue.string_to_bin",
                      [&](bk::BinaryEncoder& encoder) { encoder.write_string(value); });
}

unsigned long long ParserValue::binary_data_to_bin(CoreVector<char>& out, void* data,
                                                   const unsigned int& size) {
    const auto* const bytes = static_cast<const char*>(data);
    return bk::encode(out, "ParserValue.binary_data_to_bin", [&](bk::BinaryEncoder& encoder) {
        if (lies_in(out, bytes)) { // growing `out` would free these bytes
            const std::vector<char> copy(bytes, bytes + size);
            encoder.write_binary_data(copy.data(), size);
        } else {
            encoder.write_binary_data(bytes, size);
        }
    });
}

unsigned long long ParserValue::group_to_bin(CoreVector<char>& out, const ParserGroup& group) {
    return bk::encode(out, "ParserValue.group_to_bin",
                      [&](bk::BinaryEncoder& encoder) { encoder.write_group(group); });
}

bool ParserValue::bin_to_bool(const CoreVector<char>& data, unsigned long long& position) {
    return take_number(data, position, 1) != 0;
}

char ParserValue::bin_to_char(const CoreVector<char>& data, unsigned long long& position) {
    return static_cast<char>(take_number(data, position, 1));
}

int ParserValue::bin_to_int(const CoreVector<char>& data, unsigned long long& position) {
    return static_cast<int>(static_cast<std::uint32_t>(take_number(data, position, sizeof(std::uint32_t))));
}

double ParserValue::bin_to_double(const CoreVector<char>& data, unsigned long long& position) {
    return std::bit_cast<double>(bin_to_size(data, position));
}

unsigned long long ParserValue::bin_to_size(const CoreVector<char>& data, unsigned long long& position) {
    return take_number(data, position, sizeof(std::uint64_t));
}

CoreString ParserValue::bin_to_string(const CoreVector<char>& data, unsigned long long& position) {
    bk::ByteCursor cursor = cursor_at(data, position);
    const std::string_view text = bk::take_string(cursor);
    position = cursor.position();
    CoreString string;
    bk::completed("ParserValue.bin_to_string", [&] { string = CoreString(text); });
    return string;
}

void* ParserValue::bin_to_binary_data(const CoreVector<char>& data, unsigned long long& position,
                                      unsigned int& size) {
    bk::ByteCursor cursor = cursor_at(data, position);
    const std::string_view bytes = bk::take_binary_data(cursor);
    position = cursor.position();
    unsigned char* copy = nullptr;
    if (!bytes.empty()) {
        const auto count = static_cast<unsigned int>(bytes.size());
        bk::completed("ParserValue.bin_to_binary_data", [&] { copy = bk::copy_bytes(bytes.data(), count); });
    }
    size = copy == nullptr ? 0 : static_cast<unsigned int>(bytes.size());
    return copy;
}

ParserValue* ParserValue::bin_to_value(const CoreVector<char>& data, unsigned long long& position) {
    bk::BinaryDecoder decoder(data, position);
    ParserValue* value = nullptr;
    bk::completed("ParserValue.bin_to_value", [&] { value = decoder.read_value(); });
    position = decoder.position();
    return value;
}
