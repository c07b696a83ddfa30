#include "bench/peers/forms.h"

#include <charconv>
#include <cstdint>
#include <cstring>

namespace bench {

namespace {

using Entries = std::vector<const Entry*>;

template <class Number>
Number number(std::string_view text) {
    Number result{};
    std::from_chars(text.data(), text.data() + text.size(), result);
    return result;
}

class MsgpackWriter {
public:
    void group(const Entry& group) {
        const std::vector<Entries> lists = grouped_by_name(group);
        const bool has_template = !group.template_name.empty();
        head(0xDF, lists.size() + (has_template ? 1 : 0));
        if (has_template) {
            string("template");
            string(group.template_name);
        }
        for (const Entries& entries : lists) {
            string(entries[0]->plain_name());
            if (entries.size() > 1) {
                head(0xDD, entries.size());
            }
            for (const Entry* entry : entries) {
                content(*entry);
            }
        }
    }

    std::string out_;

private:
    void byte(unsigned int value) { out_ += static_cast<char>(value); }

    void big_endian(std::uint64_t value, unsigned int bytes) {
        while (bytes-- != 0) {
            byte(static_cast<unsigned int>(value >> (8 * bytes)) & 0xFF);
        }
    }

    /// Begins a map (0xDF) or an array (0xDD) in the shortest form of the format.
    void head(unsigned int wide_tag, std::size_t count) {
        if (count < 16) {
            byte((wide_tag == 0xDF ? 0x80u : 0x90u) | static_cast<unsigned int>(count));
        } else if (count < 65536) {
            byte(wide_tag - 1);
            big_endian(count, 2);
        } else {
            byte(wide_tag);
            big_endian(count, 4);
        }
    }

    void string(std::string_view text) {
        if (text.size() < 32) {
            byte(0xA0 | static_cast<unsigned int>(text.size()));
        } else if (text.size() < 256) {
            byte(0xD9);
            big_endian(text.size(), 1);
        } else {
            byte(0xDB);
            big_endian(text.size(), 4);
        }
        out_ += text;
    }

    void content(const Entry& entry) {
        if (entry.is_group) {
            group(entry);
            return;
        }
        if (!entry.is_scalar()) {
            head(0xDD, entry.values.size());
        }
        for (const Value& item : entry.values) {
            value(item);
        }
    }

    void integer(std::int32_t value) {
        if (value >= -32 && value < 128) {
            byte(static_cast<unsigned int>(value) & 0xFF);
        } else {
            byte(0xD2);
            big_endian(static_cast<std::uint32_t>(value), 4);
        }
    }

    void decimal(double value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        byte(0xCB);
        big_endian(bits, 8);
    }

    void value(const Value& value) {
        switch (value.kind) {
        case SceneValue::Kind::flag:
            byte(value.text == "yes" ? 0xC3 : 0xC2);
            break;
        case SceneValue::Kind::integer:
            integer(number<std::int32_t>(value.text));
            break;
        case SceneValue::Kind::decimal:
            decimal(number<double>(value.text));
            break;
        case SceneValue::Kind::string:
            string(value.text);
            break;
        }
    }
};

} // namespace

std::string write_msgpack(const Document& document) {
    MsgpackWriter writer;
    writer.group(document.root());
    return writer.out_;
}

} // namespace bench
