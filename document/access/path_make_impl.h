#pragma once

#include "document/paths/path_steps_impl.h"
#include "document/values.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Whether a name is one of the text syntax, without a template or array suffix.
bool is_plain_name(std::string_view name, bool& is_keyword) noexcept;

/// How far the steps of a path lead into a tree.
struct PathWay {
    std::size_t found = 0;            // steps with an entry
    std::vector<ParserEntry*> passed; // the entries on the way, outermost first
    ParserGroup* group = nullptr;     // the group for the next step
    bool has_no_group = false;        // the last entry on the way has no group yet; `group` is null
    std::optional<unsigned int>
        like_count;          // how many entries of `group` match the next step without its number, if known
    bool is_blocked = false; // the last step names a value that is not a group; `group` is null

    ParserEntry* holder() const noexcept { return passed.back(); }
};

/// The longest way along the first `step_count` steps.
PathWay find_way(ParserGroup& root, const ParsedPath& path, std::size_t step_count);

/// A chain of new entries, each in a group of the one before.
struct MadeEntries {
    std::unique_ptr<ParserEntry> outermost; // null when nothing was missing
    ParserEntry* innermost = nullptr;
};

/// Makes entries for the steps from way.found up to `step_count`. Returns false when a step does not say what entry to make.
bool make_steps(const PathWay& way, const ParsedPath& path, std::size_t step_count, MadeEntries& made);

/// Adds made entries to the tree at the end of a way, or a new group when none was made. Unless `keep` is called, the destructor
/// removes them again, which needs no memory.
class Attachment {
public:
    Attachment(const PathWay& way, MadeEntries made);
    ~Attachment();
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;

    /// The group that the way and what was made lead to.
    ParserGroup& group() const noexcept { return *group_; }
    void keep() noexcept { is_kept_ = true; }

private:
    void undo() noexcept;

    ParserGroup* listed_in_ = nullptr; // the group whose last entry is the outermost new one
    ParserEntry* holder_ = nullptr;    // the entry whose last value is a new group
    ParserGroup* group_ = nullptr;
    std::vector<unsigned char> marks_;
    bool is_kept_ = false;
};

} // namespace bk_parser
