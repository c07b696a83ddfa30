#include "bench/peers/forms.h"

#include <map>
#include <unordered_map>

namespace bench {

namespace {

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\n':
            out += "&#10;";
            break;
        case '\r':
            out += "&#13;";
            break;
        case '\t':
            out += "&#9;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

/// a, b, ... z, aa, ab, ...
std::string attribute_name(std::size_t index) {
    std::string name(1, static_cast<char>('a' + index % 26));
    while (index >= 26) {
        index = index / 26 - 1;
        name.insert(name.begin(), static_cast<char>('a' + index % 26));
    }
    return name;
}

class XmlWriter {
public:
    void group(const Entry& group, std::string_view name) {
        indent();
        out_ += '<';
        out_ += name;
        if (!group.template_name.empty()) {
            attribute("template", {SceneValue::Kind::string, group.template_name});
        }
        std::vector<const Entry*> elements;
        for (const Entry& entry : group.children) {
            is_attribute_of(group, entry) ? attribute(entry.plain_name(), entry.values[0])
                                          : elements.push_back(&entry);
        }
        out_ += elements.empty() ? "/>\n" : ">\n";
        if (!elements.empty()) {
            content(elements);
            out_ += "</";
            out_ += name;
            out_ += ">\n";
        }
        names_.erase(&group);
    }

    std::string out_;
    std::string kinds_;

private:
    void indent() { out_.append(4 * depth_, ' '); }

    void content(const std::vector<const Entry*>& elements) {
        ++depth_;
        for (const Entry* entry : elements) {
            entry->is_group ? group(*entry, entry->name) : list(*entry);
        }
        --depth_;
        indent();
    }

    void list(const Entry& entry) {
        indent();
        out_ += '<';
        out_ += entry.plain_name();
        for (std::size_t i = 0; i < entry.values.size(); ++i) {
            attribute(attribute_name(i), entry.values[i]);
        }
        out_ += "/>\n";
    }

    void attribute(std::string_view name, const Value& value) {
        out_ += ' ';
        out_ += name;
        out_ += "=\"";
        out_ += value.kind == SceneValue::Kind::string ? escaped(value.text) : value.text;
        out_ += '"';
        kinds_ += static_cast<char>('0' + static_cast<int>(value.kind));
    }

    bool is_attribute_of(const Entry& group, const Entry& entry) {
        if (!entry.is_scalar()) {
            return false;
        }
        auto& counts = names_[&group];
        if (counts.empty()) {
            for (const auto& list : grouped_by_name(group)) {
                counts[list[0]->plain_name()] = list.size();
            }
        }
        return counts[entry.plain_name()] == 1;
    }

    std::size_t depth_ = 0;
    std::map<const Entry*, std::unordered_map<std::string_view, std::size_t>> names_;
};

XmlWriter written(const Document& document) {
    XmlWriter writer;
    writer.group(document.root(), "root");
    return writer;
}

} // namespace

std::string write_xml(const Document& document) {
    return written(document).out_;
}

std::string xml_kinds(const Document& document) {
    return written(document).kinds_;
}

} // namespace bench
