#include "input/archive_facts.h"
#include "input/files/input.h"
#include "output/display/text_display.h"
#include "output/display/value_display.h"
#include "output/json_writer.h"
#include "platform/paths.h"
#include "tree/tree_walk.h"
#include "verbs/each_document.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <array>

namespace bkdoc {

namespace {

constexpr std::size_t label_width = 14;

/// Counts the parts of a tree.
struct Counts {
    static constexpr std::size_t entry_kinds = 4;
    static constexpr std::size_t value_types = 8;

    std::array<unsigned long long, entry_kinds> entries{};
    std::array<unsigned long long, value_types> values{};
    unsigned long long templates = 0;
    unsigned long long arrays = 0;
    std::size_t depth = 0;
};

void count_entry(const ParserEntry& entry, Counts& counts) {
    ++counts.entries[entry.get_type()];
    counts.templates += entry.is_template() ? 1 : 0;
    counts.arrays += entry.is_array() ? 1 : 0;
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        ++counts.values[entry.get_value_type(i)];
    }
}

Counts count_tree(const ParserGroup& root) {
    Counts counts;
    TreeWalk walk(root);
    while (walk.next()) {
        if (!walk.is_at_group()) {
            count_entry(walk.entry(), counts);
        }
        counts.depth = std::max(counts.depth, walk.nesting());
    }
    return counts;
}

template <std::size_t Size>
std::string sum_of(const std::array<unsigned long long, Size>& numbers) {
    unsigned long long sum = 0;
    for (const unsigned long long number : numbers) {
        sum += number;
    }
    return grouped(sum);
}

std::string listed(const std::vector<std::string>& parts) {
    std::string list;
    for (const std::string& part : parts) {
        list += (list.empty() ? "" : ", ") + part;
    }
    return list.empty() ? list : "  (" + list + ")";
}

std::string entry_kinds_of(const Counts& counts) {
    constexpr std::array<std::string_view, Counts::entry_kinds> one = {"ordinary", "keyword", "function call",
                                                                       "raw text"};
    constexpr std::array<std::string_view, Counts::entry_kinds> many = {"ordinary", "keywords",
                                                                        "function calls", "raw texts"};
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < counts.entries.size(); ++i) {
        if (counts.entries[i] != 0) {
            parts.push_back(counted(counts.entries[i], one[i], many[i]));
        }
    }
    return listed(parts);
}

std::string value_types_of(const Counts& counts) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < counts.values.size(); ++i) {
        const ParserValue::Type type = static_cast<ParserValue::Type>(i);
        if (counts.values[i] != 0) {
            const std::string word(type_word(type));
            parts.push_back(
                counted(counts.values[i], word, type == ParserValue::TYPE_BINARY_DATA ? word : word + "s"));
        }
    }
    return listed(parts);
}

/// Writes lines with a label and a text.
class InfoWriter {
public:
    explicit InfoWriter(Output& out) : out_(out) {}

    void write(std::string_view label, std::string_view text) {
        out_.paint(Tone::dim, std::string(label) + std::string(label_width - label.size(), ' '));
        out_ << text << "\n";
    }

private:
    Output& out_;
};

std::string version_text(const bk_parser::Document& document) {
    CoreString version;
    version += document.version();
    return std::string(version.get_view());
}

void write_sizes(const bk_parser::Document& document, InfoWriter& writer) {
    unsigned long long bytes = 0;
    unsigned long long lines = 0;
    for (const bk_parser::DocumentFile& file : document.files()) {
        bytes += file.text_size;
        lines += file.line_count;
    }
    writer.write("files", grouped(document.files().size()));
    writer.write("size", counted(bytes, "byte", "bytes") + ", " +
                             counted(document.expanded_size(), "byte", "bytes") +
                             " after includes and comments");
    writer.write("lines", grouped(lines));
}

std::string stored_size(const bk_parser::Document& document) {
    return counted(document.files().empty() ? 0 : document.files().front().stored_size, "byte", "bytes");
}

void write_archive(const bk_parser::Document& document, const std::string& operand, InfoWriter& writer) {
    writer.write("size", stored_size(document));
    if (const auto facts = archive_facts(Input(operand).bytes)) {
        writer.write("strings", grouped(facts->strings));
        writer.write("words", grouped(facts->words) + ", each the number of a string in " +
                                  counted(facts->index_width(), "byte", "bytes"));
    }
}

void write_form(const bk_parser::Document& document, const std::string& operand, InfoWriter& writer) {
    using bk_parser::Form;
    writer.write("form", form_word(document.form()));
    switch (document.form()) {
    case Form::binary:
        writer.write("size", stored_size(document));
        break;
    case Form::archive:
        write_archive(document, operand, writer);
        break;
    case Form::enciphered:
        writer.write("stored", stored_size(document));
        [[fallthrough]];
    case Form::text:
        writer.write("version", version_text(document));
        write_sizes(document, writer);
        break;
    }
}

void write_counts(const Counts& counts, InfoWriter& writer) {
    writer.write("entries", sum_of(counts.entries) + entry_kinds_of(counts));
    writer.write("templates", grouped(counts.templates));
    writer.write("arrays", grouped(counts.arrays));
    writer.write("values", sum_of(counts.values) + value_types_of(counts));
    writer.write("depth", grouped(counts.depth));
}

std::string how_found(const bk_parser::DocumentFile& file, const bk_parser::Document& document) {
    for (const bk_parser::Include& include : document.includes()) {
        if (include.path != file.path || !include.problem.empty()) {
            continue;
        }
        const std::string name = include.name;
        const std::string found = text_of(include.found);
        if (found == name) {
            return "found as named";
        }
        if ((include.file.parent_path() / path_of(name)).lexically_normal() ==
            include.found.lexically_normal()) {
            return "found beside " + shown(text_of(include.file.filename()), file_name_limit);
        }
        const bool shows_folder = found.ends_with("/" + name);
        return "found in " +
               (shows_folder ? "the search folder " +
                                   shown(found.substr(0, found.size() - name.size() - 1), file_name_limit)
                             : std::string("a search folder"));
    }
    return "found as named";
}

void write_dependencies(const bk_parser::Document& document, Output& out, InfoWriter& writer) {
    const auto& files = document.files();
    const std::size_t count = files.empty() ? 0 : files.size() - 1;
    writer.write("dependencies", grouped(count));
    std::size_t width = 0;
    for (std::size_t i = 1; i < files.size(); ++i) {
        width = std::max(width, count_characters(shown(text_of(files[i].file), file_name_limit)));
    }
    for (std::size_t i = 1; i < files.size(); ++i) {
        const std::string name = shown(text_of(files[i].file), file_name_limit);
        out << "  " << name << std::string(width - count_characters(name), ' ');
        out.paint(Tone::dim, "  " + how_found(files[i], document));
        out << "\n";
    }
}

template <std::size_t Size>
void write_numbers(const std::array<unsigned long long, Size>& numbers,
                   const std::array<std::string_view, Size>& names, JsonWriter& json) {
    json.begin_object();
    for (std::size_t i = 0; i < Size; ++i) {
        json.member(names[i], numbers[i]);
    }
    json.end_object();
}

void write_counts(const Counts& counts, JsonWriter& json) {
    constexpr std::array<std::string_view, Counts::entry_kinds> kinds = {"ordinary", "keyword", "call",
                                                                         "raw_text"};
    std::array<std::string_view, Counts::value_types> types;
    for (std::size_t i = 0; i < types.size(); ++i) {
        types[i] = type_word(static_cast<ParserValue::Type>(i));
    }
    json.key("entries");
    write_numbers(counts.entries, kinds, json);
    json.member("templates", counts.templates);
    json.member("arrays", counts.arrays);
    json.key("values");
    write_numbers(counts.values, types, json);
    json.member("depth", counts.depth);
}

void write_files(const bk_parser::Document& document, JsonWriter& json) {
    json.key("files");
    json.begin_array();
    for (const bk_parser::DocumentFile& file : document.files()) {
        json.begin_object();
        json.member("file", text_of(file.file));
        json.member("bytes", file.stored_size);
        json.member("text_bytes", file.text_size);
        json.member("lines", file.line_count);
        json.end_object();
    }
    json.end_array();
}

void write_json(const OpenedDocument& opened, const Counts& counts, JsonWriter& json) {
    using bk_parser::Form;
    const bk_parser::Document& document = opened.document();
    json.begin_object();
    json.member("document", opened.name());
    json.member("form", document.form() == Form::enciphered ? "enciphered" : form_word(document.form()));
    if (document.form() == Form::text || document.form() == Form::enciphered) {
        json.member("version", version_text(document));
        json.member("expanded_bytes", document.expanded_size());
    }
    write_files(document, json);
    write_counts(counts, json);
    json.member("problems", opened.problems().size());
    json.end_object();
}

void write_text(const OpenedDocument& opened, const Counts& counts, Output& out) {
    const bk_parser::Document& document = opened.document();
    InfoWriter writer(out);
    writer.write("document", shown(opened.name(), file_name_limit));
    write_form(document, opened.operand(), writer);
    write_counts(counts, writer);
    writer.write("problems", grouped(opened.problems().size()));
    write_dependencies(document, out, writer);
}

} // namespace

ExitCode run_info(const Arguments& arguments, Streams& streams) {
    const bool is_json = arguments.has("--json");
    bool is_first = true;
    JsonWriter json(streams.out);
    if (is_json) {
        json.begin_array();
    }
    const ExitCode result =
        for_each_selection(arguments, streams, [&](const OpenedDocument& opened, const ParserGroup& group) {
            if (is_json) {
                write_json(opened, count_tree(group), json);
                return EXIT_CLEAN;
            }
            streams.out << (is_first ? "" : "\n");
            is_first = false;
            write_text(opened, count_tree(group), streams.out);
            return EXIT_CLEAN;
        });
    if (is_json) {
        json.end_array();
        json.finish();
    }
    return result;
}

} // namespace bkdoc
