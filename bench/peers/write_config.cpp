#include "bench/peers/forms.h"
#include "bench/peers/quoted.h"

namespace bench {

namespace {

using Entries = std::vector<const Entry*>;

std::string key(std::string_view name) {
    std::string out(name);
    for (char& c : out) {
        if (c == '.') {
            c = '-';
        }
    }
    return out.front() == '_' ? "n" + out : out;
}

/// Writes lists in parentheses, which may have values of different kinds.
class ConfigWriter {
public:
    void members(const Entry& group) {
        if (!group.template_name.empty()) {
            out_ += "template = " + quoted(group.template_name) + ";\n";
        }
        for (const Entries& entries : grouped_by_name(group)) {
            indent();
            out_ += key(entries[0]->plain_name()) + " = ";
            entries.size() == 1 ? content(*entries[0]) : list(entries);
            out_ += ";\n";
        }
    }

    std::string out_;

private:
    void indent() { out_.append(2 * depth_, ' '); }

    void list(const Entries& entries) {
        const char* before = "(";
        for (const Entry* entry : entries) {
            out_ += before;
            before = ", ";
            content(*entry);
        }
        out_ += ')';
    }

    void content(const Entry& entry) {
        if (entry.is_group) {
            out_ += "{\n";
            ++depth_;
            members(entry);
            --depth_;
            indent();
            out_ += '}';
        } else if (entry.is_scalar()) {
            out_ += spelled(entry.values[0]);
        } else {
            const char* before = "(";
            for (const Value& item : entry.values) {
                out_ += before;
                before = ", ";
                out_ += spelled(item);
            }
            out_ += ')';
        }
    }

    std::size_t depth_ = 0;
};

} // namespace

std::string write_config(const Document& document) {
    ConfigWriter writer;
    writer.members(document.root());
    return writer.out_;
}

} // namespace bench
