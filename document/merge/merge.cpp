#include "document/merge.h"

#include "document/load.h"
#include "document/load/form_impl.h"
#include "document/merge/item_match_impl.h"
#include "document/merge/text_items_impl.h"
#include "parser/files/parser_source_scanner_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <array>
#include <span>
#include <utility>
#include <vector>

namespace bk_parser {

namespace {

/// Joins parts of the texts.
class MergedText {
public:
    void put(const TextItems& text, std::uint32_t begin, std::uint32_t end) {
        if (begin == end) {
            return;
        }
        const std::string_view stretch = text.text(begin, end);
        const bool goes_on = last_ == &text && last_end_ == begin;
        if (!goes_on && needs_line_break(stretch)) {
            out_ += '\n';
        }
        out_ += stretch;
        last_ = &text;
        last_end_ = end;
    }

    void put_conflict(std::string_view ours, std::string_view theirs) {
        const bool breaks = !out_.empty() && out_.back() != '\n';
        put_line(breaks ? "\n<<<<<<< ours\n" : "<<<<<<< ours\n");
        put_version(ours, breaks);
        put_line("=======\n");
        put_version(theirs, breaks);
        put_line(">>>>>>> theirs\n");
        last_ = nullptr;
        ++conflicts_;
    }

    std::size_t conflicts() const noexcept { return conflicts_; }
    std::string& text() noexcept { return out_; }

private:
    static bool is_blank(char character) noexcept { return bk::is_char(character, bk::CHAR_BLANK); }

    /// A text that ends without a line end may end with a comment.
    bool needs_line_break(std::string_view stretch) const noexcept {
        if (out_.empty() || out_.back() == '\n') {
            return false;
        }
        const bool ends_text = last_ != nullptr && last_end_ == last_->source.size();
        return ends_text || (!is_blank(out_.back()) && !is_blank(stretch.front()));
    }

    void put_line(std::string_view line) { out_ += line; }

    void put_version(std::string_view text, bool follows_break) {
        if (follows_break) { // the line break at the beginning of the version goes before the marks
            const std::size_t first = text.find_first_not_of(" \t\r");
            text.remove_prefix(first != std::string_view::npos && text[first] == '\n' ? first + 1 : 0);
        }
        out_ += text;
        if (!text.empty() && text.back() != '\n') {
            out_ += '\n';
        }
    }

    std::string out_;
    std::size_t conflicts_ = 0;
    const TextItems* last_ = nullptr;
    std::uint32_t last_end_ = 0;
};

/// Which text something is taken from.
enum class Taken { ours, theirs, neither };

Taken choose(std::uint64_t base, std::uint64_t ours, std::uint64_t theirs) noexcept {
    return theirs == base || ours == theirs ? Taken::ours : ours == base ? Taken::theirs : Taken::neither;
}

class TextMerge {
public:
    TextMerge(const TextItems& base, const TextItems& ours, const TextItems& theirs)
        : base_(base), ours_(ours), theirs_(theirs) {}

    MergedText run() {
        put_tail({0, 0, 0});
        add_group({0, 0, 0});
        while (!tasks_.empty()) {
            const Task task = tasks_.back();
            tasks_.pop_back();
            if (task.is_conflict) {
                out_.put_conflict(text_of_side(ours_, task.slot.ours, task),
                                  text_of_side(theirs_, task.slot.theirs, task));
            } else if (task.text != nullptr) {
                out_.put(*task.text, task.begin, task.end);
            } else {
                merge_slot(task.slot);
            }
        }
        return std::move(out_);
    }

private:
    /// A part to be copied, a conflict, or an item to be merged.
    struct Task {
        const TextItems* text = nullptr;
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
        bool is_conflict = false;
        bool is_tail = false; // the conflict is about what is after the last items
        MergeSlot slot;
    };

    static std::string_view text_of_side(const TextItems& side, std::uint32_t i, const Task& task) {
        if (i == no_item) {
            return {};
        }
        const TextItem& item = side.items[i];
        return task.is_tail ? side.text(item.tail, item.close) : side.text(item.begin, item.end);
    }

    void add_stretch(const TextItems& text, std::uint32_t begin, std::uint32_t end) {
        Task task;
        task.text = &text;
        task.begin = begin;
        task.end = end;
        tasks_.push_back(task);
    }

    void add_conflict(const MergeSlot& slot, bool is_tail) {
        Task task;
        task.is_conflict = true;
        task.is_tail = is_tail;
        task.slot = slot;
        tasks_.push_back(task);
    }

    const TextItems& text_of(Taken taken) const noexcept { return taken == Taken::theirs ? theirs_ : ours_; }
    const TextItem& item_of(Taken taken, const MergeSlot& slot) const noexcept {
        return taken == Taken::theirs ? theirs_.items[slot.theirs] : ours_.items[slot.ours];
    }

    Taken choose_tail(const MergeSlot& slot) const noexcept {
        return choose(base_.items[slot.base].tail_content, ours_.items[slot.ours].tail_content,
                      theirs_.items[slot.theirs].tail_content);
    }

    void put_tail(const MergeSlot& slot) {
        const Taken taken = choose_tail(slot);
        if (taken == Taken::neither) {
            add_conflict(slot, true);
        } else {
            const TextItem& item = item_of(taken, slot);
            add_stretch(text_of(taken), item.tail, item.close);
        }
    }

    /// The tasks of a group's items, the first one last.
    void add_group(const MergeSlot& slot) {
        const std::vector<MergeSlot> slots =
            merge_slots(base_, slot.base, ours_, slot.ours, theirs_, slot.theirs);
        for (std::size_t i = slots.size(); i-- > 0;) {
            Task task;
            task.slot = slots[i];
            tasks_.push_back(task);
        }
    }

    void put_item(Taken taken, const MergeSlot& slot) {
        const TextItem& item = item_of(taken, slot);
        out_.put(text_of(taken), item.begin, item.end);
    }

    static std::uint64_t content(const TextItems& text, std::uint32_t i) noexcept {
        return i == no_item ? 0 : text.items[i].content;
    }

    void merge_slot(const MergeSlot& slot) {
        const std::uint64_t ours = content(ours_, slot.ours);
        const std::uint64_t theirs = content(theirs_, slot.theirs);
        const Taken taken = choose(content(base_, slot.base), ours, theirs);
        if (taken == Taken::neither) {
            if (!may_merge_inside(slot)) {
                add_conflict(slot, false);
            } else {
                merge_inside(slot);
            }
        } else if ((taken == Taken::ours ? slot.ours : slot.theirs) != no_item) {
            put_item(taken, slot);
        }
    }

    /// Whether all three hold a group, and only one side changed what is around it.
    bool may_merge_inside(const MergeSlot& slot) const noexcept {
        if (slot.base == no_item || slot.ours == no_item || slot.theirs == no_item) {
            return false;
        }
        const TextItem& base = base_.items[slot.base];
        const TextItem& ours = ours_.items[slot.ours];
        const TextItem& theirs = theirs_.items[slot.theirs];
        return base.open_end != 0 && ours.open_end != 0 && theirs.open_end != 0 &&
               choose(base.head, ours.head, theirs.head) != Taken::neither &&
               choose(base.rest_content, ours.rest_content, theirs.rest_content) != Taken::neither;
    }

    void merge_inside(const MergeSlot& slot) {
        const TextItem& base = base_.items[slot.base];
        const TextItem& ours = ours_.items[slot.ours];
        const TextItem& theirs = theirs_.items[slot.theirs];
        const Taken head = choose(base.head, ours.head, theirs.head);
        const Taken rest = choose(base.rest_content, ours.rest_content, theirs.rest_content);
        const TextItem& behind = item_of(rest, slot);
        const TextItem& before = item_of(head, slot);
        add_stretch(text_of(rest), behind.close, behind.end);
        put_tail(slot);
        add_group(slot);
        out_.put(text_of(head), before.begin, before.open_end);
    }

    const TextItems& base_;
    const TextItems& ours_;
    const TextItems& theirs_;
    std::vector<Task> tasks_; // the next one is the last
    MergedText out_;
};

std::string_view without_mark(std::string_view text) noexcept {
    return text.starts_with(bk::byte_order_mark) ? text.substr(bk::byte_order_mark.size()) : text;
}

/// Adds the errors of a text. Returns whether it has any.
bool add_errors(std::string_view text, std::string_view name, std::vector<Problem>& errors) {
    LoadOptions options;
    options.follow_includes = false;
    std::vector<Problem> problems = parse(text, options).problems;
    std::erase_if(problems, [](const Problem& problem) { return problem.severity != Severity::error; });
    for (Problem& problem : problems) {
        problem.file = name;
        errors.push_back(std::move(problem));
    }
    return !problems.empty();
}

MergeResult refused(std::string reason, std::vector<Problem> problems = {}) {
    MergeResult result;
    result.reason = std::move(reason);
    result.problems = std::move(problems);
    return result;
}

/// One of the three texts.
struct MergeInput {
    std::string_view text;
    std::string_view file; // in problems
    std::string_view name; // in sentences
};

/// Checks that the sides can be merged. If not, the result says why.
MergeResult check(std::span<const MergeInput> sides) {
    std::vector<Problem> errors;
    const MergeInput* faulty = nullptr;
    for (const MergeInput& side : sides) {
        if (form_of(side.text) != Form::text) {
            return refused(std::string(side.name) + " is not text");
        }
        if (add_errors(side.text, side.file, errors) && faulty == nullptr) {
            faulty = &side;
        }
    }
    return faulty == nullptr ? MergeResult()
                             : refused(std::string(faulty->name) + " has errors", std::move(errors));
}

} // namespace

MergeResult merge_texts(std::string_view base, std::string_view ours, std::string_view theirs) {
    const std::array<MergeInput, 3> sides = {
        {{base, "base", "the base"}, {ours, "ours", "ours"}, {theirs, "theirs", "theirs"}}};
    if (MergeResult result = check(sides); !result.ok()) {
        return result;
    }
    const TextItems base_items(without_mark(base));
    const TextItems our_items(without_mark(ours));
    const TextItems their_items(without_mark(theirs));
    for (std::size_t i = 0; const TextItems* const items : {&base_items, &our_items, &their_items}) {
        if (items->has_faults) {
            return refused("in " + std::string(sides[i].name) +
                           " a comment or a directive touches a word; put a blank between them");
        }
        ++i;
    }
    MergedText merged = TextMerge(base_items, our_items, their_items).run();
    MergeResult result;
    result.conflicts = merged.conflicts();
    result.text = (ours.starts_with(bk::byte_order_mark) ? std::string(bk::byte_order_mark) : std::string()) +
                  merged.text();
    if (result.conflicts == 0) {
        if (std::vector<Problem> errors; add_errors(result.text, "merged", errors)) {
            return refused("what was merged would have errors", std::move(errors));
        }
    }
    return result;
}

} // namespace bk_parser
