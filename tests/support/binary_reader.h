#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/bytes.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_content.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

/// Reads the binary form by its description, without the library, and describes its content as text, for comparisons. Recurses, because the
/// trees of tests are shallow.
class BinaryReader {
public:
    explicit BinaryReader(std::string_view bytes, core_uint64 position = 0) : bytes_(bytes), at_(position) {}

    core_uint64 position() const { return at_; }

    /// Returns false when the group fails. Describes what was read before that anyway.
    bool group(std::string& said) {
        const core_uint64 size = number(8);
        if (at_ > bytes_.size() || size > bytes_.size() - at_) {
            return false;
        }
        const core_uint64 end = at_ + size;
        while (at_ < end) {
            const std::string name = string();
            std::string values;
            if (name.empty() || !entry(values)) {
                return false;
            }
            said += std::to_string(name.size()) + name + " (" + values + ") ";
        }
        return true;
    }

    /// An entry without its name.
    bool entry(std::string& said) {
        const core_uint64 size = number(8);
        if (size > bytes_.size()) {
            return false;
        }
        at_ += 1;
        const core_uint64 end = at_ + (size == 0 ? 0 : size - 1);
        while (at_ < end) {
            if (!value(said)) {
                return false;
            }
        }
        return true;
    }

private:
    bool value(std::string& said) {
        if (at_ >= bytes_.size() || static_cast<unsigned char>(bytes_[at_]) > ParserValue::TYPE_BINARY_DATA) {
            ++at_;
            return false;
        }
        const auto type = static_cast<ParserValue::Type>(bytes_[at_++]);
        std::string content = plain(ParserValue::get_type_name(type)) + " ";
        switch (type) {
        case ParserValue::TYPE_GROUP:
            group(content);
            break;
        case ParserValue::TYPE_BOOL:
            content += number(1) != 0 ? "yes" : "no";
            break;
        case ParserValue::TYPE_CHAR:
            content += std::to_string(static_cast<signed char>(number(1)));
            break;
        case ParserValue::TYPE_INT:
            content += std::to_string(static_cast<int>(number(4)));
            break;
        case ParserValue::TYPE_DOUBLE:
            content += std::to_string(std::bit_cast<core_uint64>(finite(std::bit_cast<double>(number(8)))));
            break;
        case ParserValue::TYPE_STRING:
            content += string();
            break;
        default:
            content += literal(data());
        }
        said += content + ", ";
        return true;
    }

    /// Missing bytes count as zeros.
    core_uint64 number(unsigned int width) {
        core_uint64 result = 0;
        for (unsigned int i = 0; i < width; ++i, ++at_) {
            const core_uint64 byte = at_ < bytes_.size() ? static_cast<unsigned char>(bytes_[at_]) : 0;
            result |= byte << (8 * i);
        }
        return result;
    }

    static double finite(double value) {
        constexpr double largest = std::numeric_limits<double>::max();
        return std::isnan(value) ? -largest : std::isinf(value) ? std::copysign(largest, value) : value;
    }

    std::string string() {
        const std::size_t end = at_ < bytes_.size() ? bytes_.find('\0', at_) : std::string_view::npos;
        if (end == std::string_view::npos) {
            at_ = std::max<core_uint64>(at_, bytes_.size());
            return {};
        }
        const std::string result(bytes_.substr(at_, end - at_));
        at_ = end + 1;
        return result;
    }

    std::string data() {
        const core_uint64 size = number(8) & 0xFFFFFFFFu;
        if (at_ > bytes_.size() || size > bytes_.size() - at_) {
            at_ = std::max<core_uint64>(at_, bytes_.size());
            return {};
        }
        at_ += size;
        return std::string(bytes_.substr(at_ - size, size));
    }

    /// The bytes as the text syntax spells them.
    static std::string literal(const std::string& bytes) {
        unsigned int sum = 0;
        for (const char byte : bytes) {
            sum += static_cast<unsigned char>(byte);
        }
        return "0x" + dense_hex(bytes) + dense_hex(little(sum, 4));
    }

    std::string_view bytes_;
    core_uint64 at_;
};

/// Describes a group of the library in the same words.
inline std::string said_of(const ParserGroup& group);
inline std::string said_of(const ParserEntry& entry) {
    std::string said;
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        said +=
            value_content(entry, i) + (entry.is_value_group(i) ? said_of(*entry.get_group(i)) : "") + ", ";
    }
    return said;
}
inline std::string said_of(const ParserGroup& group) {
    std::string said;
    for (const ParserEntry* entry : group.get_entries()) {
        const std::string name = plain(entry->get_name());
        said += std::to_string(name.size()) + name + " (" + said_of(*entry) + ") ";
    }
    return said;
}
