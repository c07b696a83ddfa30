#pragma once

#include "document/save/edits/layout_print_impl.h"
#include "document/save/files/same_file_impl.h"
#include "document/save/record/layout_record_impl.h"
#include "document/save/record/save_sources_impl.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace bk_parser {

/// The place in a text at which the text of a moved entry is inserted.
struct CarriedText {
    std::size_t at = 0;
    std::uint32_t carry = no_index;
};

/// A range of a file, in one of the inclusions of the file.
struct FileRange {
    std::size_t inclusion = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// A replacement of bytes of a file, in one of the inclusions of the file.
struct Edit {
    std::size_t inclusion = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string text;
    std::string about; // name of an entry, for messages
    bool removes_entries = false;
    bool moves = false;               // the bytes move to another place
    std::uint32_t inside = no_index;  // index of the carried text that it changes
    std::vector<CarriedText> carried; // by ascending place
};

/// Computes which bytes of which files must change so that the text has the content of the tree.
class LayoutEdits {
public:
    LayoutEdits(const SaveSources& sources, const LayoutRecord& record, const FileNames& names,
                bool has_escapes)
        : sources_(sources), record_(record), names_(names), has_escapes_(has_escapes) {}

    /// Returns false when the layout cannot express the change; the reason says why.
    bool run();
    const std::string& reason() const noexcept { return reason_; }
    const std::vector<Edit>& edits() const noexcept { return edits_; }
    /// The files that nothing includes any more, because the entries around their directives were removed.
    const std::vector<std::string>& dropped_files() const noexcept { return dropped_; }
    /// Whether a string with a quote was printed into a text whose version has no escapes. It may read back as it is, but a load
    /// reports it as an error.
    bool prints_quotes() const noexcept { return prints_quotes_; }

private:
    /// The bytes of a moved entry, including all changes inside.
    struct Carry {
        FileRange place;
        std::string from; // old indentation of the first line
        std::string to;   // new indentation
        bool has_lines;   // whether all lines are indented anew
        std::string text; // final text, set once all changes inside are known
    };
    /// A changed group, and the carried text that contains it.
    struct PendingGroup {
        std::uint32_t group;
        std::uint32_t inside;
    };
    /// Entries that are put between two entries that stay.
    struct Addition {
        const ParserEntry* const* entries;
        std::uint32_t count;
        const OldEntry* moved_from; // null for new entries
        bool comes_from_elsewhere;  // from another group, unchanged
    };
    /// An edit that removes a run of entries.
    struct Removal {
        std::size_t edit;
        FileRange place; // without the blanks or line around them
        const OldEntry* first;
        const OldEntry* last;
        bool has_whole_lines;
    };
    /// A place between two entries of a group.
    struct Gap {
        const OldGroup* group;
        const OldEntry* before; // null at the beginning of the group
        const OldEntry* behind; // null at its end
    };
    /// The beginning of removed bytes, and of the removals that begin up to there the one that reaches furthest.
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

    // layout_carries.cpp
    bool can_carry(const Addition& addition, std::size_t target, FileRange& place);
    bool carry(const Anchor& anchor, const Gap& gap, const Addition& addition, const FileRange& place,
               Edit& edit);
    void fill_carries();
    static void fill(Edit& edit, const std::vector<Carry>& carries);

    // layout_travellers.cpp
    void note_lost_entries();
    const OldEntry* take_lost(const ParserGroup& group, std::uint32_t position);
    void note_moves();

    // cleared_includes.cpp
    bool is_of_file(const Edit& edit) const noexcept;
    std::vector<std::vector<Edit>> take_file_edits();
    Edit removal_of_directive(std::size_t inclusion, std::string about) const;
    std::vector<bool> cleared_places(const std::vector<std::vector<Edit>>& edits) const;
    void drop_edits_below(std::size_t inclusion, std::vector<std::vector<Edit>>& edits) const;
    void drop_cleared_includes();

    // layout_unread.cpp
    bool keeps_unread_words();
    bool owns_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now);

    // layout_includes.cpp
    void note_covers();
    const Edit* cover_of(Spot directive) const noexcept;
    bool keeps_includes();
    void note_dropped_files();

    // layout_groups.cpp
    bool edit_group(std::uint32_t index);
    bool add_between(const Gap& gap, std::vector<Addition>& additions);
    bool remove_unkept(const OldGroup& group, const std::vector<bool>& is_kept);
    bool remove_range(TextRange range, std::string about, const OldEntry& first, const OldEntry& last);
    void join_blank_lines();
    bool add_edit(const FileRange& place, std::string text, std::string about);

    // layout_anchor.cpp
    void find_anchor(const Gap& gap, Anchor& anchor);
    void pass_comments(Anchor& anchor, const std::vector<Addition>& additions) const;
    void settle_behind(Anchor& anchor, const FileRange& place, const Gap& gap);
    std::string indent_behind(const FileRange& place, const Gap& gap);
    bool compose(const Anchor& anchor, const Gap& gap, const std::vector<Addition>& additions, Edit& edit);
    bool add_lines(const Anchor& anchor, const Gap& gap, const Addition& addition, Edit& edit);
    void take_comment(FileRange& place) const;
    void take_comments_above(FileRange& place) const;
    bool add_in_line(const Anchor& anchor, const Gap& gap, const Addition& addition, Edit& edit);
    PrintLayout layout_at(const Anchor& anchor);

    // layout_entries.cpp
    bool edit_entry(const OldGroup& group, const OldEntry& old, const ParserEntry& now);
    bool edit_head(const OldEntry& old, const ParserEntry& now);
    bool edit_last_group(const OldEntry& old, const ParserEntry& now, std::uint32_t count);
    bool drop_group(const OldEntry& old, const ParserEntry& now);
    bool reprint(const OldEntry& old, const ParserEntry& now);
    template <class Printed>
    void note_quotes(const Printed& printed) {
        prints_quotes_ = prints_quotes_ || (!has_escapes_ && has_quote(printed));
    }
    bool replace(TextRange range, std::string text, const ParserEntry& about);
    PrintLayout layout_of(std::uint32_t at);
    std::string value_text(const ParserEntry& now, std::uint32_t i, std::uint32_t at);

    // layout_values.cpp
    bool edit_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now, std::uint32_t count);
    bool fill_empty(const OldEntry& old, const ParserEntry& now, std::uint32_t count);
    bool drop_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now, std::uint32_t first,
                     std::uint32_t last);
    bool drop_before(TextRange dropped, TextRange next, const ParserEntry& now);
    bool drop_behind(TextRange before, TextRange dropped, const ParserEntry& now);
    bool has_comment(const FileRange& place) const;
    bool refuse_split(const ParserEntry& now);
    bool is_cut(TextRange word);
    bool refuse_cut(const ParserEntry& now);
    bool insert_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now, std::uint32_t at,
                       std::uint32_t first, std::uint32_t last);
    std::string separator(const OldGroup& group, const OldEntry& old) const;
    static TextRange value_of(const OldGroup& group, const OldEntry& old, std::uint32_t i) noexcept {
        return group.values[old.first_value + i];
    }
    bool is_same(TextRange word, const bk::StoredValue& value) const;
    bool refuse(const std::string& about, const char* why);

    std::string_view words(TextRange range) const noexcept {
        return sources_.text().substr(range.begin, range.end - range.begin);
    }

    const SaveSources& sources_;
    const LayoutRecord& record_;
    const FileNames& names_;
    bool has_escapes_;
    std::string reason_;
    std::vector<Edit> edits_;
    std::vector<Cover> covers_; // removals, before texts are carried
    std::vector<std::string> dropped_;
    std::vector<Carry> carries_; // each inner text comes after the outer one
    std::unordered_map<const OldEntry*, std::uint32_t> carried_;
    std::unordered_map<std::uint64_t, const OldEntry*>
        lost_; // entries missing in their groups, by line and column
    std::vector<Removal> removals_;
    std::uint32_t inside_ = no_index; // the carried text that is edited now
    bool has_printed_ = false;        // a moved or new entry was printed
    bool prints_quotes_ = false;
    std::vector<PendingGroup> pending_;
    std::vector<std::string> units_; // one level of indentation, by file
};

} // namespace bk_parser
