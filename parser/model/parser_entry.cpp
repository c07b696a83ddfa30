#include "parser/parser_entry.h"

#include "core/core_memory.h"
#include "core/memory/core_nothrow_impl.h"
#include "core/memory/system/core_thread_impl.h"
#include "parser/model/drop/parser_document_pages_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_tree_copy_impl.h"
#include "parser/model/parser_value_impl.h"

#include <utility>
#include <vector>

namespace {

/// The entry whose destructor has just run, but whose block must stay because strings are left in it.
constinit thread_local const void* kept_entry BK_TLS_MODEL = nullptr;

/// Returns false when the whole document is being freed, and the entry with it.
bool may_go(const ParserEntry& entry) noexcept {
    bk::DocumentPages* const pages =
        bk::EntryAccess::is_in_pages(entry) ? bk::DocumentPages::of(&entry) : nullptr;
    return pages == nullptr || pages->may_go(entry);
}

} // namespace

// Without this definition, a shared library for Windows has no address for the constant that callers could import.
constexpr unsigned int ParserEntry::not_an_array; // NOLINT(readability-redundant-declaration)

ParserEntry::ParserEntry(const CoreString& name, const Type& type, const core_ulong& line,
                         const core_ulong& column)
    : name_(name), line_(line), column_(column), type_(type) {
    static_assert(sizeof(ParserEntry) == 64, "an entry fills one cache line");
}

ParserEntry::ParserEntry(const ParserEntry& other)
    : ParserEntry(other.name_, other.type_, other.line_, other.column_) {
    copy_fields(other);
    bk::TreeCopier copier;
    copier.copy_values(other.values_, values_);
    copier.finish();
}

ParserEntry::~ParserEntry() {
    if (!values_.dies_with_entry() && values_.may_outlive_entry()) [[unlikely]] {
        leave_values();
    }
    if (rare_ != nullptr) {
        std::destroy_at(rare_);
        CoreMemory::release(rare_, sizeof(Rare));
    }
}

/// Some of the values may stay alive in other entries.
void ParserEntry::leave_values() noexcept {
    values_.forget_source(*this, nullptr);
    values_.clear();
    if (!values_.let_go_of_entry(*this)) {
        kept_entry = this;
    }
}

ParserEntry& ParserEntry::operator=(const ParserEntry& other) {
    if (this != &other) {
        ParserValueList shared;
        shared.share(other.values_);
        copy_fields(other);
        values_.forget_source(*this, &shared);
        values_.swap(shared); // the old values are destroyed last: `other` may be one of them
    }
    return *this;
}

void ParserEntry::copy_from(const ParserEntry& other) {
    if (this == &other) {
        return;
    }
    ParserValueList copied;
    bk::TreeCopier copier;
    copier.copy_values(other.values_, copied);
    copier.finish();
    copy_fields(other);
    values_.forget_source(*this, nullptr);
    values_.swap(copied);
}

/// Everything that can throw comes before the first change.
void ParserEntry::copy_fields(const ParserEntry& other) {
    CoreString name(other.name_);
    copy_former_names(other);
    set_template(other.get_template());
    name_ = std::move(name);
    line_ = other.line_;
    column_ = other.column_;
    array_count_ = other.array_count_;
    change_type(other.type_);
}

void ParserEntry::reset() {
    values_.forget_source(*this, nullptr);
    values_.clear();
}

const CoreString& ParserEntry::get_template() const noexcept {
    return rare_ == nullptr ? CoreString::get_null_string() : rare_->template_name;
}

bool ParserEntry::is_group() const {
    return values_.get_count() == 1 && values_[0].type() == ParserValue::TYPE_GROUP;
}

/// A save recognises an entry that was read by the name in the text, so the old name is noted.
void ParserEntry::rename(const CoreString& name) {
    values_.list_entry();
    if (line_ != 0 && name != name_) {
        make_rare().former_names |= bk::name_bit(name_.get_view());
    }
    name_ = name;
}

void ParserEntry::copy_former_names(const ParserEntry& other) {
    const unsigned long long names = other.rare_ == nullptr ? 0 : other.rare_->former_names;
    if (rare_ != nullptr || names != 0) {
        make_rare().former_names = names;
    }
}

void ParserEntry::set_template(const CoreString& name) {
    if (rare_ != nullptr || !name.is_empty()) {
        make_rare().template_name = name;
    }
}

void ParserEntry::set_array(const bool& is_array, const unsigned int& count) {
    array_count_ = is_array ? count : not_an_array;
}

void ParserEntry::set_as_raw_text(bool raw) {
    change_type(raw ? TYPE_RAW_TEXT : TYPE_ENTRY);
}

void ParserEntry::change_type(Type type) noexcept {
    if (type != type_) {
        type_ = type;
        bk::type_era.fetch_add(1, std::memory_order_relaxed);
    }
}

ParserEntry::Rare& ParserEntry::make_rare() {
    if (rare_ == nullptr) {
        values_.list_entry();
        rare_ = new (CoreMemory::allocate(sizeof(Rare))) Rare;
    }
    return *rare_;
}

void ParserEntry::move_value(const unsigned int& from, const unsigned int& to) {
    if (from != to) {
        values_.move(from, to);
    }
}

void ParserEntry::remove_value(const unsigned int& i) {
    remove_value(CoreBasicArray<unsigned int>{i});
}

void ParserEntry::remove_value(const CoreBasicArray<unsigned int>& indices) {
    std::vector<unsigned char> marks(values_.get_count());
    for (const unsigned int i : indices) {
        if (i < marks.size()) {
            marks[i] = 1;
        }
    }
    values_.remove_marked(marks.data(), *this);
}

void ParserEntry::remove_value(const CoreList<unsigned int>& indices) {
    CoreBasicArray<unsigned int> array(indices.get_count());
    std::copy(indices.begin(), indices.end(), array.begin());
    remove_value(array);
}

void* ParserEntry::operator new(std::size_t size) {
    return CoreMemory::allocate(size);
}

void* ParserEntry::operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return bk::allocate_or_null(size);
}

void ParserEntry::operator delete(void* block, std::size_t size) noexcept {
    if (block == kept_entry) {
        kept_entry = nullptr;
        return;
    }
    CoreMemory::release(block, size);
}

void ParserEntry::operator delete(void* block, const std::nothrow_t&) noexcept {
    CoreMemory::release(block, sizeof(ParserEntry));
}

void bk::EntryAccess::release(ParserEntry* entry) noexcept {
    if (entry == nullptr) {
        return;
    }
    if (entry->rare_ != nullptr && entry->rare_->other_owners != 0) {
        --entry->rare_->other_owners;
    } else if (may_go(*entry)) {
        delete entry;
    }
}
