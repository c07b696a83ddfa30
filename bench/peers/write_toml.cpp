#include "bench/peers/forms.h"
#include "bench/peers/quoted.h"

namespace bench {

namespace {

using Entries = std::vector<const Entry*>;

std::string key(std::string_view name) {
    return name.find('.') == std::string_view::npos ? std::string(name) : quoted(name);
}

/// Writes a group as a table with its whole path. Groups of one name become an array of tables.
class TomlWriter {
public:
    void group(const Entry& group, const std::string& path) {
        if (!group.template_name.empty()) {
            out_ += "template = " + quoted(group.template_name) + '\n';
        }
        const std::vector<Entries> lists = grouped_by_name(group);
        for (const Entries& entries : lists) {
            if (!entries[0]->is_group) {
                values(entries);
            }
        }
        for (const Entries& entries : lists) {
            if (entries[0]->is_group) {
                tables(entries, path);
            }
        }
    }

    std::string out_;

private:
    void tables(const Entries& entries, const std::string& path) {
        const std::string inner =
            path.empty() ? key(entries[0]->plain_name()) : path + '.' + key(entries[0]->plain_name());
        for (const Entry* entry : entries) {
            out_ += entries.size() == 1 ? "[" + inner + "]\n" : "[[" + inner + "]]\n";
            group(*entry, inner);
        }
    }

    void values(const Entries& entries) {
        out_ += key(entries[0]->plain_name()) + " = ";
        if (entries.size() == 1) {
            content(*entries[0]);
        } else {
            const char* before = "[";
            for (const Entry* entry : entries) {
                out_ += before;
                before = ", ";
                content(*entry);
            }
            out_ += ']';
        }
        out_ += '\n';
    }

    void content(const Entry& entry) {
        if (entry.is_scalar()) {
            out_ += spelled(entry.values[0]);
            return;
        }
        const char* before = "[";
        for (const Value& item : entry.values) {
            out_ += before;
            before = ", ";
            out_ += spelled(item);
        }
        out_ += ']';
    }
};

} // namespace

std::string write_toml(const Document& document) {
    TomlWriter writer;
    writer.group(document.root(), "");
    return writer.out_;
}

} // namespace bench
