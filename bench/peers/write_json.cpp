#include "bench/peers/forms.h"
#include "bench/peers/quoted.h"

namespace bench {

namespace {

using Entries = std::vector<const Entry*>;

class JsonWriter {
public:
    void group(const Entry& group) {
        out_ += '{';
        ++depth_;
        const char* before = "";
        if (!group.template_name.empty()) {
            member("template", before);
            out_ += quoted(group.template_name);
        }
        for (const Entries& entries : grouped_by_name(group)) {
            member(entries[0]->plain_name(), before);
            entries.size() == 1 ? content(*entries[0]) : list(entries);
        }
        --depth_;
        line();
        out_ += '}';
    }

    std::string out_;

private:
    void line() {
        out_ += '\n';
        out_.append(4 * depth_, ' ');
    }

    void member(std::string_view name, const char*& before) {
        out_ += before;
        before = ",";
        line();
        out_ += quoted(name);
        out_ += ": ";
    }

    void list(const Entries& entries) {
        out_ += '[';
        ++depth_;
        const char* before = "";
        for (const Entry* entry : entries) {
            out_ += before;
            before = ",";
            line();
            content(*entry);
        }
        --depth_;
        line();
        out_ += ']';
    }

    void content(const Entry& entry) {
        if (entry.is_group) {
            group(entry);
            return;
        }
        if (entry.is_scalar()) {
            out_ += spelled(entry.values[0]);
            return;
        }
        out_ += '[';
        const char* before = "";
        for (const Value& item : entry.values) {
            out_ += before;
            before = ", ";
            out_ += spelled(item);
        }
        out_ += ']';
    }

    std::size_t depth_ = 0;
};

} // namespace

std::string write_json(const Document& document) {
    JsonWriter writer;
    writer.group(document.root());
    return writer.out_ + '\n';
}

} // namespace bench
