#include "output/display/text_display.h"
#include "output/display/value_display.h"
#include "tree/tree_walk.h"
#include "verbs/each_document.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <limits>

namespace bkdoc {

namespace {

constexpr std::size_t widest_name = 28; // a longer name moves its own line only
constexpr std::size_t widest_types = 20;
constexpr std::size_t values_width = 72;

bool has_group(const ParserEntry& entry) {
    for (unsigned int i = entry.get_value_count(); i > 0; --i) {
        if (entry.is_value_group(i - 1)) {
            return true;
        }
    }
    return false;
}

std::string types_column(const ParserEntry& entry) {
    std::string column = shown_kind(entry);
    const std::string types = shown_types(entry);
    if (!types.empty()) {
        column += (column.empty() ? "" : ", ") + types;
    }
    return column.empty() && !entry.has_value() ? "empty" : column;
}

/// The column widths of one group, so that its entries align.
struct Columns {
    std::size_t name = 0;
    std::size_t types = 0;
};

void widen(std::size_t& column, std::string_view text, std::size_t limit) {
    const std::size_t width = count_characters(text);
    if (width <= limit) {
        column = std::max(column, width);
    }
}

Columns columns_of(const ParserGroup& group) {
    Columns columns;
    for (const ParserEntry* entry : group.get_entries()) {
        if (!has_group(*entry)) {
            widen(columns.name, shown_name(*entry), widest_name);
            widen(columns.types, types_column(*entry), widest_types);
        }
    }
    return columns;
}

/// Draws a tree line by line.
class TreePainter {
public:
    explicit TreePainter(Output& out) : out_(out) {}

    void paint_stop(const TreeWalk& walk) {
        if (!walk.is_at_group() && walk.is_first()) {
            columns_.resize(walk.depth());
            columns_.back() = columns_of(walk.group());
        } else {
            columns_.resize(walk.depth());
        }
        paint_branch(walk);
        if (walk.is_at_group()) {
            out_.paint(Tone::dim, "group " + entries_of(*walk.group_below()));
        } else if (has_group(walk.entry())) {
            paint_group_entry(walk);
        } else {
            paint_leaf(walk.entry());
        }
        out_ << "\n";
    }

private:
    static std::string entries_of(const ParserGroup& group) {
        return "{ " + counted(group.get_entries().get_count(), "entry", "entries") + " }";
    }

    void paint_branch(const TreeWalk& walk) {
        const std::size_t levels = std::min(walk.depth() - 1, indented_levels);
        std::string branch;
        for (std::size_t depth = 1; depth <= levels; ++depth) {
            branch += walk.is_last_at(depth) ? "    " : "\xE2\x94\x82   ";
        }
        if (walk.depth() - 1 > levels) {
            branch += std::string(ellipsis) + std::to_string(walk.depth()) + " ";
        }
        branch += walk.is_last() ? "\xE2\x94\x94\xE2\x94\x80\xE2\x94\x80 "
                                 : "\xE2\x94\x9C\xE2\x94\x80\xE2\x94\x80 ";
        out_.paint(Tone::dim, branch);
    }

    void paint_group_entry(const TreeWalk& walk) {
        const ParserEntry& entry = walk.entry();
        out_.paint(Tone::name, shown_name(entry));
        if (const std::string kind = shown_kind(entry); !kind.empty()) {
            out_.paint(Tone::dim, "  " + kind);
        }
        if (entry.get_value_count() > 1) {
            out_ << "  ";
            paint_values(entry);
        }
        if (walk.group_below() != nullptr) {
            out_.paint(Tone::dim, "  " + entries_of(*walk.group_below()));
        }
    }

    void paint_leaf(const ParserEntry& entry) {
        const std::string name = shown_name(entry);
        const std::string types = types_column(entry);
        out_.paint(Tone::name, name);
        pad(name, columns_.back().name);
        out_.paint(Tone::dim, types);
        const bool is_call = entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL;
        if (entry.has_value() || is_call) {
            pad(types, columns_.back().types);
            out_ << (is_call ? "(" : "");
            paint_values(entry);
            out_ << (is_call ? ")" : "");
        }
    }

    void pad(std::string_view text, std::size_t width) {
        const std::size_t used = count_characters(text);
        out_ << std::string(std::max(width, used) - used + 2, ' ');
    }

    // Groups are drawn on the lines below.
    void paint_values(const ParserEntry& entry) {
        std::size_t width = 0;
        bool first = true;
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            if (entry.is_value_group(i)) {
                continue;
            }
            if (width >= values_width) {
                out_ << ", " << ellipsis;
                out_.paint(Tone::dim, " (" + counted(entry.get_value_count(), "value", "values") + ")");
                return;
            }
            const std::string value = shown_value(entry, i);
            out_ << (first ? "" : ", ");
            out_.paint(tone_of(entry.get_value_type(i)), value);
            width += count_characters(value) + 2;
            first = false;
        }
    }

    Output& out_;
    std::vector<Columns> columns_;
};

// Shows the version, or the form when the form stores no version.
std::string storage_text(const OpenedDocument& document) {
    using bk_parser::Form;
    if (document.form() == Form::binary || document.form() == Form::archive) {
        return std::string(form_word(document.form()));
    }
    CoreString version;
    version += document.document().version();
    return (document.form() == Form::text ? "version " : "encrypted, version ") +
           std::string(version.get_view());
}

void write_heading(const OpenedDocument& document, const ParserGroup& group, Output& out) {
    out.paint(Tone::strong, shown(document.name(), values_width));
    out.paint(Tone::dim, "  " + storage_text(document) + ", " +
                             counted(group.get_entries().get_count(), "entry", "entries"));
    out << "\n";
}

void draw(const ParserGroup& root, std::size_t depth, Output& out) {
    if (depth == 0) {
        return;
    }
    TreePainter painter(out);
    TreeWalk walk(root);
    while (!out.has_failed() && walk.next()) {
        painter.paint_stop(walk);
        if (walk.depth() >= depth) {
            walk.skip();
        }
    }
}

} // namespace

ExitCode run_tree(const Arguments& arguments, Streams& streams) {
    const std::size_t depth = arguments.number_or("--depth", std::numeric_limits<std::size_t>::max());
    bool is_first = true;
    return for_each_selection(arguments, streams,
                              [&](const OpenedDocument& document, const ParserGroup& group) {
                                  streams.out << (is_first ? "" : "\n");
                                  is_first = false;
                                  write_heading(document, group, streams.out);
                                  draw(group, depth, streams.out);
                                  return EXIT_CLEAN;
                              });
}

} // namespace bkdoc
