#include "output/report.h"
#include "output/text_display.h"
#include "output/value_display.h"
#include "tree/tree_walk.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <array>

namespace bkdoc {

namespace {

constexpr std::size_t label_width = 14;

/// What a tree is made of.
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

/// Writes lines of a label and what it is about.
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

std::string version_text(const Document& document) {
    CoreString version;
    version += document.get_file().get_serial_version().get_value();
    return std::string(version.get_view());
}

void write_sizes(const SourceMap& sources, InfoWriter& writer) {
    unsigned long long bytes = 0;
    unsigned long long lines = 0;
    for (const auto& file : sources.get_files()) {
        bytes += file->text.get_text().size();
        lines += file->text.get_line_count();
    }
    const std::size_t files = sources.get_files().size();
    writer.write("files", grouped(files));
    writer.write("size", counted(bytes, "byte", "bytes") + ", " +
                             counted(sources.get_expanded_size(), "byte", "bytes") +
                             " after includes and comments");
    writer.write("lines", grouped(lines));
}

std::string stored_size(const Document& document) {
    return counted(static_cast<unsigned long long>(document.get_input().get_size()), "byte", "bytes");
}

void write_archive(const Document& document, InfoWriter& writer) {
    const ArchiveFacts& facts = document.get_archive_facts();
    writer.write("size", stored_size(document));
    writer.write("strings", grouped(facts.strings));
    writer.write("words", grouped(facts.words) + ", each the number of a string in " +
                              counted(facts.index_width(), "byte", "bytes"));
}

void write_form(const Document& document, InfoWriter& writer) {
    writer.write("form", form_word(document.get_form()));
    switch (document.get_form()) {
    case DocumentForm::binary:
        writer.write("size", stored_size(document));
        break;
    case DocumentForm::archive:
        write_archive(document, writer);
        break;
    case DocumentForm::enciphered:
        writer.write("stored", stored_size(document));
        [[fallthrough]];
    case DocumentForm::text:
        writer.write("version", version_text(document));
        write_sizes(document.get_sources(), writer);
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

std::size_t width_of_names(const SourceMap& sources) {
    std::size_t width = 0;
    for (const auto& file : sources.get_files()) {
        width = std::max(width, count_characters(shown(file->name.shown, file_name_limit)));
    }
    return width;
}

void write_dependencies(const Document& document, Output& out, InfoWriter& writer) {
    const CoreSet<CoreString>& dependencies = document.get_file().get_dependencies();
    writer.write("dependencies", grouped(dependencies.get_count()));
    const std::size_t width = width_of_names(document.get_sources());
    for (const auto& file : document.get_sources().get_files()) {
        if (!dependencies.exists(CoreString(file->path))) {
            continue;
        }
        const std::string name = shown(file->name.shown, file_name_limit);
        out << "  " << name << std::string(width - count_characters(name), ' ');
        out.paint(Tone::dim, file->name.folder.empty() ? "  found as named"
                                                       : "  found in the search folder " +
                                                             shown(file->name.folder, file_name_limit));
        out << "\n";
    }
}

} // namespace

ExitCode run_info(const InfoOptions& options, Streams& streams, StreamDevice& device) {
    const Document document(options.file, options.open, device);
    const ExitCode result = report_aside(document, streams);
    if (!document.is_read()) {
        return result;
    }
    InfoWriter writer(streams.out);
    writer.write("document", shown(document.get_name(), file_name_limit));
    write_form(document, writer);
    write_counts(count_tree(document.get_root()), writer);
    writer.write("faults", grouped(document.get_faults().size() + document.get_damage().size()));
    write_dependencies(document, streams.out, writer);
    return result;
}

} // namespace bkdoc
