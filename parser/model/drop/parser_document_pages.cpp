#include "parser/model/drop/parser_document_pages_impl.h"

#include "core/memory/core_assert_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"

#include <exception>
#include <new>

namespace bk {

namespace {

/// A tree takes about four times the bytes of its text. So a document of this size fills two pages of 64 KiB.
constexpr std::size_t fewest_bytes = std::size_t{32} << 10;

/// When this part of the objects has been removed one by one, the document gives up its pages, so that empty ones are freed.
constexpr std::size_t part_that_may_go = 8;

} // namespace

DocumentPages* DocumentPages::begin(std::size_t byte_count) noexcept {
    void* const place = byte_count < fewest_bytes ? nullptr : DocumentRun::begin(sizeof(DocumentPages));
    return place == nullptr ? nullptr : ::new (place) DocumentPages;
}

/// When memory for the list runs out, the edit still succeeds, and the document gives up its pages instead.
template <class Object>
void DocumentPages::list_in(CoreVector<Object*>& listed, Object& object) noexcept {
    try {
        listed.add(&object);
    } catch (const std::exception&) {
        if (state_ == State::being_read) {
            state_ = State::broken;
        } else {
            escape();
        }
    }
}

void DocumentPages::list(ParserEntry& entry) noexcept {
    if (state_ != State::doomed && !EntryAccess::is_listed(entry)) {
        EntryAccess::set_listed(entry);
        list_in(listed_entries_, entry);
    }
}

void DocumentPages::list(ParserGroup& group) noexcept {
    list_in(listed_groups_, group);
}

/// A document without an entry has no owner, and is freed at once.
void DocumentPages::finish() noexcept {
    if (state_ == State::being_read && taken_ != 0) {
        state_ = State::whole;
    } else {
        let_go();
    }
}

void DocumentPages::escape() noexcept {
    if (state_ == State::whole) {
        let_go();
    }
}

/// This object is itself a block of the first page.
void DocumentPages::let_go() noexcept {
    DocumentRun run = run_;
    this->~DocumentPages();
    run.let_go();
}

/// When a listed object is removed, the document gives up its pages: its list would keep a dangling pointer.
bool DocumentPages::may_go(bool is_listed) noexcept {
    if (state_ == State::whole && (is_listed || ++gone_ > taken_ / part_that_may_go)) {
        let_go();
        return true;
    }
    return state_ != State::doomed;
}

bool DocumentPages::may_go(const ParserEntry& entry) noexcept {
    return may_go(EntryAccess::is_listed(entry));
}

bool DocumentPages::may_go(const ParserGroup& group) noexcept {
    return may_go(GroupAccess::has_lists_outside(group));
}

bool DocumentPages::doom(DocumentPages*& others) noexcept {
    if (state_ == State::whole) {
        state_ = State::doomed;
        next_doomed_ = std::exchange(others, this);
    }
    return state_ == State::doomed;
}

DoomedDocuments::DoomedDocuments(const ParserGroup& owner) noexcept
    : own_(GroupAccess::is_in_pages(owner) ? DocumentPages::of(&owner) : nullptr) {}

bool DoomedDocuments::belongs_to_whole(const ParserEntry& entry) noexcept {
    DocumentPages* const pages = EntryAccess::is_in_pages(entry) ? DocumentPages::of(&entry) : nullptr;
    return pages != nullptr && pages != own_ && pages->doom(documents_);
}

void DocumentPages::drop_all(DocumentPages* doomed) noexcept {
    while (doomed != nullptr) {
        std::exchange(doomed, doomed->next_doomed_)->drop();
    }
}

void DocumentPages::drop() noexcept {
    for (ParserGroup* group : listed_groups_) {
        GroupAccess::give_lists_back(*group);
    }
    for (ParserEntry* entry : listed_entries_) {
        entry->ParserEntry::~ParserEntry(); // its groups are in the pages and need no destructor
    }
    DocumentRun run = run_;
    this->~DocumentPages();
    run.drop();
}

void EntryAccess::list_entry_of(ParserValueList& values) noexcept {
    constexpr std::size_t place = sizeof(void*) + sizeof(CoreString); // after the virtual table and the name
    if (DocumentPages* const pages = DocumentPages::of(&values)) {
        auto* const entry = reinterpret_cast<ParserEntry*>(reinterpret_cast<char*>(&values) - place);
        BK_ASSERT(&entry->values_ == &values);
        pages->list(*entry);
    }
}

void EntryAccess::escape_from_pages(const ParserEntry& entry) noexcept {
    if (DocumentPages* const pages = DocumentPages::of(&entry)) {
        pages->escape();
    }
}

void GroupAccess::escape_from_pages(const ParserGroup& group) noexcept {
    if (DocumentPages* const pages = DocumentPages::of(&group)) {
        pages->escape();
    }
}

} // namespace bk
