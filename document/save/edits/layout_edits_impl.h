#pragma once

#include "document/save/edits/layout_print_impl.h"
#include "document/save/record/layout_record_impl.h"
#include "document/save/record/save_sources_impl.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace bk_parser {

/// Bytes of a file, in one of the places that it is included at, that give way to others.
struct Edit {
    std::size_t inclusion = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string text;
    std::string about; // the name of an entry
    bool removes_entries = false;
};

/// A range of a file in one of the places that it is included at.
struct FileRange {
    std::size_t inclusion = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Works out which bytes of which files have to change, so that the text says what the tree now holds.
class LayoutEdits {
public:
    LayoutEdits(const SaveSources& sources, const LayoutRecord& record, bool has_escapes)
        : sources_(sources), record_(record), has_escapes_(has_escapes) {}

    /// False when it cannot be said in that layout: the reason tells why.
    bool run();
    const std::string& reason() const noexcept { return reason_; }
    const std::vector<Edit>& edits() const noexcept { return edits_; }
    /// The paths of the files that nothing includes any more, as the entries around their directives were removed.
    std::vector<std::string> dropped_files() const;

private:
    /// Something that is to be put between two entries that stay.
    struct Addition {
        const ParserEntry* const* entries;
        std::uint32_t count;
        const OldEntry* moved_from; // null of new ones
    };
    /// A place between entries: in a file, and what it is next to.
    struct Gap {
        const OldGroup* group;
        const OldEntry* before; // null at the begin of the group
        const OldEntry* behind; // null at its end
    };
    /// Bytes that are taken away: where that begins, and the edit that takes most.
    struct Cover {
        std::size_t inclusion;
        std::size_t begin;
        const Edit* furthest;
        bool operator<(const Cover& other) const noexcept {
            return inclusion != other.inclusion ? inclusion < other.inclusion : begin < other.begin;
        }
    };
    struct Anchor {
        std::size_t inclusion = 0;
        std::size_t at = 0;
        std::string indent;
        enum class Way {
            lines_behind,
            in_line_behind,
            lines_before,
            in_line_before,
            at_end
        } way = Way::at_end;
    };

    std::string_view text_of(std::size_t inclusion) const noexcept;
    const std::string& unit_of(std::size_t inclusion);
    bool locate(TextRange range, FileRange& place);
    bool is_of_one_file(TextRange range) const noexcept;
    std::size_t parent(std::size_t inclusion) const noexcept;
    std::size_t common(std::size_t a, std::size_t b) const noexcept;
    FileRange climb(FileRange place, std::size_t ancestor) const noexcept;

    // layout_includes.cpp
    void note_covers();
    const Edit* cover_of(Spot directive) const noexcept;
    bool keeps_includes();

    // layout_groups.cpp
    bool edit_group(std::uint32_t index);
    void add_between(const Gap& gap, std::vector<Addition>& additions);
    bool remove_range(TextRange range, std::string about);

    // layout_anchor.cpp
    bool find_anchor(const Gap& gap, Anchor& anchor);
    void settle_behind(Anchor& anchor, const FileRange& place, const Gap& gap);
    std::string indent_behind(const FileRange& place, const Gap& gap);
    std::string compose(const Anchor& anchor, const std::vector<Addition>& additions);
    std::string addition_lines(const Anchor& anchor, const Addition& addition);
    std::string addition_in_line(const Addition& addition);
    PrintLayout layout_at(const Anchor& anchor);

    // layout_entries.cpp
    bool edit_entry(const OldGroup& group, const OldEntry& old, const ParserEntry& now);
    bool edit_head(const OldEntry& old, const ParserEntry& now);
    bool edit_last_group(const OldEntry& old, const ParserEntry& now, std::uint32_t count);
    bool reprint(const OldEntry& old, const ParserEntry& now);
    bool replace(TextRange range, std::string text, const ParserEntry& about);
    PrintLayout layout_of(std::uint32_t at);
    std::string value_text(const ParserEntry& now, std::uint32_t i, std::uint32_t at);

    // layout_values.cpp
    bool edit_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now, std::uint32_t count);
    bool fill_empty(const OldEntry& old, const ParserEntry& now, std::uint32_t count);
    bool drop_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now, std::uint32_t first,
                     std::uint32_t last);
    bool insert_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now, std::uint32_t at,
                       std::uint32_t first, std::uint32_t last);
    std::string separator(const OldGroup& group, const OldEntry& old) const;
    static TextRange value_of(const OldGroup& group, const OldEntry& old, std::uint32_t i) noexcept {
        return group.values[old.first_value + i];
    }
    bool is_same(TextRange word, const ParserValue& value) const;
    bool refuse(const std::string& about, const char* why);

    std::string_view words(TextRange range) const noexcept {
        return sources_.text().substr(range.begin, range.end - range.begin);
    }

    const SaveSources& sources_;
    const LayoutRecord& record_;
    bool has_escapes_;
    std::string reason_;
    std::vector<Edit> edits_;
    std::vector<Cover> covers_;
    bool has_printed_ = false;           // an entry, in a new place
    std::vector<std::uint32_t> pending_; // changed groups
    std::vector<std::string> units_;     // of indentation, by file
};

} // namespace bk_parser
