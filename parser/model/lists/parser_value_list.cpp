#include "parser/model/lists/parser_value_list_impl.h"

#include "core/memory/core_assert_impl.h"
#include "parser/model/drop/parser_document_pages_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_entry.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

/// Moves values out of the block in which they are stored side by side. Strings to which a host may hold references stay in the block,
/// which then lives as long as they do.
class ParserValueList::Departure {
public:
    explicit Departure(const ParserValueList& list) : list_(list), block_(list.block_) {
        for (unsigned int i = 0; i < list.count_ && home_ == nullptr; ++i) {
            if (list.shows_string(i)) {
                home_ = make_home();
            }
        }
    }
    ~Departure() {
        if (home_ != nullptr) { // no value has left
            static_cast<void>(home_->let_go_of_record());
        }
    }
    Departure(const Departure&) = delete;
    Departure& operator=(const Departure&) = delete;

    bool stays(unsigned int i) const noexcept { return list_.shows_string(i); }

    /// `text_shift` is how far the text area has moved.
    void move(unsigned int i, void* to, std::uintptr_t text_shift) const noexcept {
        const bk::StoredValue& value = block_->values()[i];
        if (stays(i)) {
            bk::StoredValue::leave_string(value, to, i, *home_);
        } else {
            bk::StoredValue::relocate(value, to, text_shift);
        }
    }

    /// Whether the values have left strings in the entry's own block.
    bool finish() noexcept {
        bk::StringHome* const home = std::exchange(home_, nullptr);
        if (home == nullptr) {
            Block::destroy(block_, sizeof(bk::StoredValue));
            return false;
        }
        const bool is_embedded = block_->is_embedded != 0;
        ::new (static_cast<void*>(block_)) bk::StringHome*(home);
        if (!is_embedded) {
            home->let_go();
        }
        return is_embedded;
    }

private:
    bk::StringHome* make_home() const {
        if (block_->is_embedded) {
            return bk::StringHome::make(reinterpret_cast<ParserEntry*>(block_) - 1, sizeof(ParserEntry));
        }
        return bk::StringHome::make(block_, block_->byte_size(sizeof(bk::StoredValue)));
    }

    const ParserValueList& list_;
    Block* block_;
    bk::StringHome* home_ = nullptr;
};

void ParserValueList::list_entry() noexcept {
    if (is_in_pages_ != 0 && is_listed_ == 0) {
        bk::EntryAccess::list_entry_of(*this);
    }
}

void ParserValueList::leave_document() noexcept {
    if (bk::DocumentPages* const pages = is_in_pages_ != 0 ? bk::DocumentPages::of(this) : nullptr) {
        pages->escape();
    }
}

bk::StoredValue& ParserValueList::change(unsigned int i) noexcept {
    list_entry();
    if (!in_cells_) {
        block_->is_self_contained = 0;
    }
    return at(i);
}

/// Whether a host may hold a reference to the string of a value, and the string is inside the value.
bool ParserValueList::shows_string(unsigned int i) const noexcept {
    return shows_strings_ != 0 && !in_cells_ && at(i).has_string_inside();
}

bk::StoredValue& ParserValueList::append(bk::StoredValue& value) {
    if (value.type() == ParserValue::TYPE_GROUP) {
        leave_document();
    }
    list_entry();
    value.own_text();
    if (block_ == nullptr || count_ == block_->capacity) {
        grow();
    }
    BK_ASSERT(count_ < block_->capacity);
    block_->is_self_contained = 0;
    if (in_cells_) {
        Cell* const cell = Cell::make();
        bk::StoredValue::relocate(value, cell->storage);
        block_->cells()[count_] = cell;
    } else {
        bk::StoredValue::relocate(value, block_->values() + count_);
    }
    value.forget();
    ++count_;
    return at(count_ - 1);
}

/// Copies the text area as it is, and corrects the pointers of the values.
void ParserValueList::grow() {
    const std::uint64_t capacity = count_ == 0 ? 1 : std::uint64_t{count_} * 2;
    if (block_ == nullptr || in_cells_) {
        Block* const block = Block::make(capacity, in_cells_ ? sizeof(Cell*) : sizeof(bk::StoredValue), 0);
        if (block_ != nullptr) {
            std::copy_n(block_->cells(), count_, block->cells());
            Block::destroy(block_, sizeof(Cell*));
        }
        block_ = block;
        return;
    }
    const std::size_t text_size = block_->text_size;
    Departure departure(*this);
    Block* const block = Block::make(capacity, sizeof(bk::StoredValue), text_size);
    std::copy_n(block_->text(), text_size, block->text());
    const std::uintptr_t text_shift =
        reinterpret_cast<std::uintptr_t>(block->text()) - reinterpret_cast<std::uintptr_t>(block_->text());
    for (unsigned int i = 0; i < count_; ++i) {
        departure.move(i, block->values() + i, text_shift);
    }
    left_entry_ |= departure.finish();
    shows_strings_ = 0;
    block_ = block;
}

void ParserValueList::move(unsigned int from, unsigned int to) {
    BK_ASSERT(from < count_ && to < count_);
    for (unsigned int i = std::min(from, to); shows_strings_ != 0 && i <= std::max(from, to); ++i) {
        if (shows_string(i)) {
            split_into_cells();
        }
    }
    const unsigned int step = from < to ? 1 : 0xFFFFFFFFu; // modulo 2^32: one up or one down
    if (in_cells_) {
        Cell** const cells = block_->cells();
        Cell* const moved = cells[from];
        for (unsigned int i = from; i != to; i += step) {
            cells[i] = cells[i + step];
        }
        cells[to] = moved;
        return;
    }
    bk::StoredValue* const values = room();
    bk::StoredValue moved(ParserValue::TYPE_WORD);
    bk::StoredValue::relocate(values[from], &moved);
    for (unsigned int i = from; i != to; i += step) {
        bk::StoredValue::relocate(values[i + step], values + i);
    }
    bk::StoredValue::relocate(moved, values + to);
}

void ParserValueList::remove_marked(const unsigned char* marks, const ParserEntry& owner) {
    const auto first = static_cast<unsigned int>(
        std::find_if(marks, marks + count_, [](auto mark) { return mark != 0; }) - marks);
    for (unsigned int i = first; shows_strings_ != 0 && i < count_; ++i) {
        if (marks[i] == 0 && shows_string(i)) {
            split_into_cells();
        }
    }
    unsigned int kept = first;
    for (unsigned int i = first; i < count_; ++i) {
        if (in_cells_) {
            Cell** const cells = block_->cells();
            if (marks[i] != 0) {
                static_cast<void>(cells[i]->forget_source(owner));
                release_cell(cells[i]);
            } else {
                cells[kept++] = cells[i];
            }
        } else if (marks[i] != 0) {
            room()[i].release();
        } else {
            bk::StoredValue::relocate(room()[i], room() + kept++);
        }
    }
    count_ = kept;
}

void ParserValueList::truncate(unsigned int count) noexcept {
    while (count_ > count) {
        --count_;
        if (in_cells_) {
            release_cell(block_->cells()[count_]);
        } else {
            room()[count_].release();
        }
    }
}

void ParserValueList::clear() noexcept {
    shows_strings_ = 0;
    if (block_ == nullptr) {
        in_cells_ = false;
        return;
    }
    BK_ASSERT(count_ <= block_->capacity);
    BK_ASSERT(!block_->is_self_contained ||
              (!in_cells_ && std::all_of(block_->values(), block_->values() + count_,
                                         [](const auto& value) { return value.keeps_nothing_outside(); })));
    for (unsigned int i = 0; i < count_ && !block_->is_self_contained; ++i) {
        if (in_cells_) {
            release_cell(block_->cells()[i]);
        } else {
            block_->values()[i].release();
        }
    }
    Block::destroy(block_, in_cells_ ? sizeof(Cell*) : sizeof(bk::StoredValue));
    block_ = nullptr;
    count_ = 0;
    in_cells_ = false;
}

void ParserValueList::swap(ParserValueList& other) noexcept {
    BK_ASSERT(other.is_in_pages_ == 0);
    leave_document();
    std::swap(block_, other.block_);
    std::swap(count_, other.count_);
    std::swap(in_cells_, other.in_cells_);
    std::swap(shows_strings_, other.shows_strings_);
}

void ParserValueList::share(ParserValueList& other) {
    if (this == &other) {
        return;
    }
    BK_ASSERT(is_in_pages_ == 0);
    other.leave_document();
    other.split_into_cells();
    Block* const block = other.count_ == 0 ? nullptr : Block::make(other.count_, sizeof(Cell*), 0);
    for (unsigned int i = 0; i < other.count_; ++i) {
        Cell* const cell = other.block_->cells()[i];
        ++cell->list_count;
        block->cells()[i] = cell;
    }
    const unsigned int count = other.count_;
    clear();
    block_ = block;
    count_ = count;
    in_cells_ = true;
}

void ParserValueList::split_into_cells() {
    if (in_cells_) {
        return;
    }
    if (block_ == nullptr) {
        in_cells_ = true;
        return;
    }
    list_entry();
    Departure departure(*this);
    Block* const block = count_ == 0 ? nullptr : Block::make(count_, sizeof(Cell*), 0);
    unsigned int made = 0;
    try {
        for (; made < count_; ++made) {
            block_->is_self_contained = 0; // its text is now outside the block
            if (!departure.stays(made)) {
                block_->values()[made].own_text();
            }
            block->cells()[made] = Cell::make();
        }
    } catch (...) {
        while (made != 0) {
            CoreMemory::release(block->cells()[--made], sizeof(Cell));
        }
        Block::destroy(block, sizeof(Cell*));
        throw;
    }
    for (unsigned int i = 0; i < count_; ++i) {
        departure.move(i, block->cells()[i]->storage, 0);
    }
    left_entry_ |= departure.finish();
    shows_strings_ = 0;
    block_ = block;
    in_cells_ = true;
}

void ParserValueList::release_cell(Cell* cell) noexcept {
    BK_ASSERT(cell->list_count != 0);
    if (--cell->list_count == 0) {
        cell->value().release();
        CoreMemory::release(cell, sizeof(Cell));
    }
}

bool ParserValueList::Cell::forget_source(const ParserEntry& owner) noexcept {
    ParserGroup* const group = list_count == 1 ? nullptr : value().group();
    if (group == nullptr || group->get_source_entry() != &owner) {
        return false;
    }
    group->set_source_entry(nullptr);
    return true;
}

void ParserValueList::forget_source(ParserEntry& owner, const ParserValueList* next) noexcept {
    for (unsigned int i = 0; in_cells_ && i < count_; ++i) {
        Cell* const cell = block_->cells()[i];
        cell->has_lost_source = cell->forget_source(owner);
    }
    for (unsigned int i = 0; next != nullptr && next->in_cells_ && i < next->count_; ++i) {
        Cell* const cell = next->block_->cells()[i];
        if (cell->has_lost_source) {
            cell->value().group()->set_source_entry(&owner);
        }
    }
    for (unsigned int i = 0; in_cells_ && i < count_; ++i) {
        block_->cells()[i]->has_lost_source = false;
    }
}

bool ParserValueList::let_go_of_entry(ParserEntry& entry) const noexcept {
    if (!left_entry_) {
        return true;
    }
    bk::StringHome* const home = *std::launder(reinterpret_cast<bk::StringHome**>(&entry + 1));
    return home->let_go_of_record();
}
