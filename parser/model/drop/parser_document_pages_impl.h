#pragma once

#include "core/core_containers.h"
#include "core/memory/runs/core_document_run_impl.h"

#include <cstddef>
#include <new>
#include <utility>

class ParserEntry;
class ParserGroup;

namespace bk {

/// The pages of one document: the entries that one read created, the groups in them, and the lists of these groups. When the group that
/// lists the outermost entries gives them up, the pages are freed as a whole. Only objects that own memory elsewhere are destroyed
/// one by one before. This works as long as
///
/// - every object has one owner, which is in the document or is that one group;
/// - the document contains no entry or group that was created elsewhere.
///
/// An edit that would end this first makes the document give up its pages (`escape`). From then on, its objects are destroyed one by one
/// like any others. An edit after which an object owns memory elsewhere puts that object into a list. Single objects may be removed
/// earlier. When an eighth of them has been, the document gives up its pages, so that empty ones are freed.
///
/// One thread at a time edits and destroys a document. Reading does not touch this object.
class DocumentPages {
public:
    /// Returns null for fewer than 32 KiB, whose pages would be mostly empty, and when there is no memory.
    static DocumentPages* begin(std::size_t byte_count) noexcept;
    /// The pages of an object that is marked to be in pages. Null once the document has given them up.
    static DocumentPages* of(const void* object) noexcept {
        return static_cast<DocumentPages*>(DocumentRun::document_of(object));
    }

    /// Allocates an entry, a group or the list of a group, of at most slab_largest_small_block bytes.
    [[nodiscard]] void* allocate(std::size_t size) {
        void* const block = run_.take(size);
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        ++taken_;
        return block;
    }

    /// Notes an object that owns memory elsewhere, or is about to.
    void list(ParserEntry& entry) noexcept;
    void list(ParserGroup& group) noexcept;

    /// Call it at the end of the read, when every object has its owner.
    void finish() noexcept;
    /// Call it when the read has failed. Its objects are then destroyed one by one.
    void abandon() noexcept { let_go(); }

    /// Call it before an edit after which the document cannot be freed as a whole.
    void escape() noexcept;
    /// Call it before one object is destroyed by itself. Returns false when the whole document is being freed, and the object with it.
    bool may_go(const ParserEntry& entry) noexcept;
    bool may_go(const ParserGroup& group) noexcept;

    /// Call it when the owner gives up an entry of the document. Returns true when the whole document can be freed, and puts it in front of
    /// `others`. From then on no object of it is destroyed by itself.
    bool doom(DocumentPages*& others) noexcept;
    /// Frees all of these documents.
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
    std::size_t gone_ = 0;  // objects that were removed one by one
    DocumentPages* next_doomed_ = nullptr;
    State state_ = State::being_read;
};

/// The documents to free when a group gives up its entries. They are those whose outermost entries it lists. It reads an entry only when
/// that is the first of its page in the list. The entries are freed when this object is destroyed.
class DoomedDocuments {
public:
    /// For a group that gives up its entries. When the group is itself in a document, that document is not freed.
    explicit DoomedDocuments(const ParserGroup& owner) noexcept;
    ~DoomedDocuments() { DocumentPages::drop_all(documents_); }
    DoomedDocuments(const DoomedDocuments&) = delete;
    DoomedDocuments& operator=(const DoomedDocuments&) = delete;

    /// Whether the entry, which is not deleted yet, is freed with its document. Takes null.
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

/// The pages of a document that is being read. When the read ends early, its objects are destroyed one by one.
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
