#pragma once

#include "core/core_containers.h"
#include "core/memory/runs/core_document_run_impl.h"

#include <cstddef>
#include <utility>

class ParserEntry;
class ParserGroup;

namespace bk {

/// What one reading has made, in pages of its own: entries, the groups in them, and the lists of these groups. All of it goes at
/// once when the group that lists the outermost entries gives them up: no object is visited but those that own something
/// elsewhere. That is possible as long as
///
/// - every object has one owner, inside the document or that one group,
/// - nothing hangs in the document that was made elsewhere and is an entry or a group.
///
/// An edit that ends this lets the pages go first (`escape`). From then on the objects are visited and given back one by one, as
/// all others are. An edit that merely lets an object own memory outside lists that object. Objects may go before the rest;
/// when an eighth has, the pages are let go, so that those that are empty can go back.
///
/// One thread at a time edits a document, and destroys it; nothing here is touched by reading.
class DocumentPages {
public:
    /// Null for a reading of so few bytes that pages would be mostly empty, and when there is no memory.
    static DocumentPages* begin(std::size_t byte_count) noexcept;
    /// Of an object that is marked to stand in pages; null once these were let go.
    static DocumentPages* of(const void* object) noexcept {
        return static_cast<DocumentPages*>(DocumentRun::document_of(object));
    }

    /// For an entry, a group or the list of a group, of at most slab_largest_small_block bytes.
    [[nodiscard]] void* allocate(std::size_t size);

    /// Of an object here that owns something outside, or is about to.
    void list(ParserEntry& entry) noexcept;
    void list(ParserGroup& group) noexcept;

    /// The reading is done: every object is where it belongs.
    void finish() noexcept;
    /// The reading has failed: what it made is visited.
    void abandon() noexcept { let_go(); }

    /// Before an edit after which the document does not go as one.
    void escape() noexcept;
    /// Before one object is destroyed by itself. False when the whole document goes, and the object with it.
    bool may_go(const ParserEntry& entry) noexcept;
    bool may_go(const ParserGroup& group) noexcept;

    /// The owner gives up an entry of it. True when everything goes with that: from here on no object goes by itself, and the
    /// document stands in front of `others`.
    bool doom(DocumentPages*& others) noexcept;
    /// Everything goes, of all these documents.
    static void drop_all(DocumentPages* doomed) noexcept;

private:
    enum class State : unsigned char { being_read, broken, whole, doomed };

    DocumentPages() noexcept : run_(this) {}
    ~DocumentPages() = default;

    template <class Object>
    void list_in(CoreVector<Object*>& listed, Object& object) noexcept;
    void let_go() noexcept;
    bool may_go(bool is_listed) noexcept;
    void drop() noexcept;

    DocumentRun run_;
    CoreVector<ParserEntry*> listed_entries_;
    CoreVector<ParserGroup*> listed_groups_;
    std::size_t taken_ = 0; // objects and lists
    std::size_t gone_ = 0;  // of the objects
    DocumentPages* next_doomed_ = nullptr;
    State state_ = State::being_read;
};

/// The documents that go with a group, because it lists their outermost entries. An entry is looked at only when it is the first
/// of its page in the list. The entries stay where they are until this object goes.
class DoomedDocuments {
public:
    /// Of a group that gives up its entries. When it is a part of a document itself, this one does not go with it.
    explicit DoomedDocuments(const ParserGroup& owner) noexcept;
    ~DoomedDocuments() { DocumentPages::drop_all(documents_); }
    DoomedDocuments(const DoomedDocuments&) = delete;
    DoomedDocuments& operator=(const DoomedDocuments&) = delete;

    /// Whether the entry, which nobody has deleted yet, goes with its document. Null is legal.
    bool take(const ParserEntry* entry) noexcept {
        const SlabPage* const page = SlabPage::of(const_cast<ParserEntry*>(entry));
        if (page != page_) {
            page_ = page;
            goes_ = entry != nullptr && belongs_to_whole(*entry);
        }
        return goes_;
    }

private:
    bool belongs_to_whole(const ParserEntry& entry) noexcept;

    const DocumentPages* own_;
    DocumentPages* documents_ = nullptr;
    const SlabPage* page_ = nullptr;
    bool goes_ = false;
};

/// The pages that a reading fills; what ends before they are kept is visited.
class UnfinishedPages {
public:
    explicit UnfinishedPages(std::size_t byte_count) noexcept : pages_(DocumentPages::begin(byte_count)) {}
    ~UnfinishedPages() {
        if (pages_ != nullptr) {
            pages_->abandon();
        }
    }
    UnfinishedPages(const UnfinishedPages&) = delete;
    UnfinishedPages& operator=(const UnfinishedPages&) = delete;

    /// Null for a small document.
    DocumentPages* get() const noexcept { return pages_; }
    void finish() noexcept {
        if (DocumentPages* const pages = std::exchange(pages_, nullptr)) {
            pages->finish();
        }
    }

private:
    DocumentPages* pages_;
};

} // namespace bk
