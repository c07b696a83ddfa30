#pragma once

#include "core/core_hash.h"
#include "core/core_memory.h"
#include "core/core_string.h"

#include <algorithm>
#include <bit>
#include <initializer_list>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace bk {
class VectorAccess;
}

/// A growable array that owns its elements and copies them deeply. Its capacity doubles, starting at 1, so
/// that adding is amortised constant time. Counts and indices are 32-bit; an index is not checked.
template <class T>
class CoreVector {
public:
    CoreVector() noexcept = default;
    /// Makes these elements, in their order.
    CoreVector(std::initializer_list<T> elements) : CoreVector() {
        add_range(elements.begin(), static_cast<unsigned int>(elements.size()));
    }
    /// Copies every element.
    CoreVector(const CoreVector& other) : CoreVector() { add_range(other.data_, other.count_); }
    /// Takes the elements; the source is left empty.
    CoreVector(CoreVector&& other) noexcept { swap(other); }
    /// Becomes a copy of every element.
    CoreVector& operator=(const CoreVector& other) {
        if (this != &other) {
            CoreVector copy(other);
            swap(copy);
        }
        return *this;
    }
    /// Takes the elements; the source is left empty.
    CoreVector& operator=(CoreVector&& other) noexcept {
        CoreVector taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~CoreVector() { clear(); }

    /// Adds a copy at the end. Amortised constant time.
    void add(const T& element) {
        if (count_ == capacity_) {
            T copy(element); // `element` may lie in the storage that is about to be freed
            grow_to(doubled_capacity(count_ + core_uint64{1}));
            std::construct_at(data_ + count_, std::move(copy));
        } else {
            std::construct_at(data_ + count_, element);
        }
        ++count_;
    }

    /// Appends `count` elements, which must not lie in this vector. The capacity becomes what adding them one by one would
    /// make it.
    void add_range(const T* elements, const unsigned int& count) {
        const unsigned int added = count; // read before growing: it may be an element
        make_room(added);
        std::uninitialized_copy_n(elements, added, data_ + count_);
        count_ += added;
    }

    /// Appends `count` elements with unspecified values and returns the first. Write them before you read them. The capacity
    /// becomes what adding them one by one would make it.
    T* extend(const unsigned int& count) requires std::is_trivially_copyable_v<T> {
        const unsigned int added = count; // read before growing: it may be an element
        make_room(added);
        T* const first = data_ + count_;
        count_ += added;
        return first;
    }

    /// How many elements there are.
    const unsigned int& get_count() const noexcept { return count_; }
    /// How many elements there is room for without growing.
    const unsigned int& get_capacity() const noexcept { return capacity_; }
    /// Whether there is no element.
    bool is_empty() const noexcept { return count_ == 0; }

    /// The element at a position from 0, which is not checked.
    T& operator[](const unsigned int& i) noexcept { return data_[i]; }
    /// The element at a position from 0, which is not checked.
    const T& operator[](const unsigned int& i) const noexcept { return data_[i]; }
    /// The first of the elements, which stand side by side.
    T* get_data() noexcept { return data_; }
    /// The first of the elements, which stand side by side.
    const T* get_data() const noexcept { return data_; }

    /// Destroys the elements and frees the storage: count and capacity become 0.
    void clear() noexcept {
        truncate(0);
        CoreMemory::release(data_, byte_size(capacity_));
        data_ = nullptr;
        capacity_ = 0;
    }
    /// Keeps the first `count` elements, and the storage.
    void truncate(const unsigned int& count) noexcept {
        std::destroy(data_ + count, data_ + count_);
        count_ = count;
    }
    /// Makes room for `count` more elements. The capacity becomes what adding them one by one would make it.
    void make_room(const unsigned int& count) {
        const core_uint64 needed = core_uint64{count_} + count;
        if (needed > capacity_) {
            grow_to(doubled_capacity(needed));
        }
    }
    /// Makes room for exactly `capacity` elements in all, when there is less.
    void reserve(const unsigned int& capacity) {
        if (capacity > capacity_) {
            grow_to(capacity);
        }
    }
    /// Exchanges the elements of both. Constant time.
    void swap(CoreVector& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(count_, other.count_);
        std::swap(capacity_, other.capacity_);
    }

    /// For loops over the elements, in order.
    T* begin() noexcept { return data_; }
    /// For loops over the elements, in order.
    T* end() noexcept { return data_ + count_; }
    /// For loops over the elements, in order.
    const T* begin() const noexcept { return data_; }
    /// For loops over the elements, in order.
    const T* end() const noexcept { return data_ + count_; }

private:
    friend class bk::VectorAccess;

    static std::size_t byte_size(std::size_t count) noexcept { return count * sizeof(T); }

    unsigned int doubled_capacity(core_uint64 needed) const {
        constexpr core_uint64 limit = 0xFFFFFFFFu;
        if (needed > limit) {
            CoreMemory::refuse_count();
        }
        if (capacity_ == 0) {
            return static_cast<unsigned int>(std::min(std::bit_ceil(needed), limit));
        }
        core_uint64 capacity = capacity_;
        while (capacity < needed) {
            capacity *= 2;
        }
        return static_cast<unsigned int>(std::min(capacity, limit));
    }

    void grow_to(unsigned int capacity) {
        if constexpr (std::is_trivially_copyable_v<T>) {
            data_ = static_cast<T*>(
                CoreMemory::grow(data_, byte_size(capacity_), byte_size(count_), byte_size(capacity)));
        } else {
            T* grown = static_cast<T*>(CoreMemory::allocate(byte_size(capacity)));
            std::uninitialized_move_n(data_, count_, grown);
            std::destroy_n(data_, count_);
            CoreMemory::release(data_, byte_size(capacity_));
            data_ = grown;
        }
        capacity_ = capacity;
    }

    T* data_ = nullptr;
    unsigned int count_ = 0;
    unsigned int capacity_ = 0;
};

/// An array of fixed count. Elements start as T().
template <class T>
class CoreBasicArray {
public:
    /// Makes that many elements, each with its default value.
    explicit CoreBasicArray(const unsigned int& count = 0) { extend_to(count); }
    /// Makes these elements, in their order.
    CoreBasicArray(std::initializer_list<T> elements) : elements_(elements) {}

    /// How many elements there are.
    const unsigned int& get_count() const noexcept { return elements_.get_count(); }
    /// The element at a position from 0, which is not checked.
    T& operator[](const unsigned int& i) noexcept { return elements_[i]; }
    /// The element at a position from 0, which is not checked.
    const T& operator[](const unsigned int& i) const noexcept { return elements_[i]; }
    /// The first of the elements, which stand side by side.
    T* get_data() noexcept { return elements_.get_data(); }
    /// The first of the elements, which stand side by side.
    const T* get_data() const noexcept { return elements_.get_data(); }

    /// For loops over the elements, in order.
    T* begin() noexcept { return elements_.begin(); }
    /// For loops over the elements, in order.
    T* end() noexcept { return elements_.end(); }
    /// For loops over the elements, in order.
    const T* begin() const noexcept { return elements_.begin(); }
    /// For loops over the elements, in order.
    const T* end() const noexcept { return elements_.end(); }

protected:
    /// Grows to that many elements; it never shrinks.
    void extend_to(const unsigned int& count) {
        const unsigned int wanted = count; // read before growing: it may be an element
        elements_.reserve(wanted);
        if constexpr (std::is_trivially_copyable_v<T>) {
            const unsigned int added = wanted - elements_.get_count();
            std::uninitialized_value_construct_n(elements_.extend(added), added);
        } else {
            const unsigned int kept = elements_.get_count();
            try {
                while (elements_.get_count() < wanted) {
                    elements_.add(T());
                }
            } catch (...) {
                elements_.truncate(kept);
                throw;
            }
        }
    }

    /// The elements.
    CoreVector<T> elements_;
};

/// An array whose count can be changed.
template <class T>
class CoreArray : public CoreBasicArray<T> {
public:
    using CoreBasicArray<T>::CoreBasicArray;

    /// Keeps the elements that remain; new ones start as T(). The storage is exactly as large as needed.
    void resize(const unsigned int& count) {
        if (count < this->get_count()) {
            this->elements_.truncate(count);
        } else {
            this->extend_to(count);
        }
    }
};

/// A list in order of adding.
template <class T>
class CoreList {
public:
    CoreList() noexcept = default;
    /// Makes these elements, in their order.
    CoreList(std::initializer_list<T> elements) : elements_(elements) {}

    /// Adds a copy at the end. Amortised constant time.
    void add(const T& element) { elements_.add(element); }
    /// Removes every element.
    void clear() noexcept { elements_.clear(); }
    /// How many elements there are.
    const unsigned int& get_count() const noexcept { return elements_.get_count(); }
    /// The element at a position from 0, which is not checked.
    T& operator[](const unsigned int& i) noexcept { return elements_[i]; }
    /// The element at a position from 0, which is not checked.
    const T& operator[](const unsigned int& i) const noexcept { return elements_[i]; }

    /// For loops over the elements, in order.
    T* begin() noexcept { return elements_.begin(); }
    /// For loops over the elements, in order.
    T* end() noexcept { return elements_.end(); }
    /// For loops over the elements, in order.
    const T* begin() const noexcept { return elements_.begin(); }
    /// For loops over the elements, in order.
    const T* end() const noexcept { return elements_.end(); }

private:
    CoreVector<T> elements_;
};

/// The hash by which CoreSet files an element. For a type of its own a host provides an overload.
inline unsigned int core_set_hash(const CoreString& text) noexcept {
    return CoreHash::generate_jenkins(text.get_data(), text.get_length());
}
template <class T>
requires std::is_arithmetic_v<T> || std::is_enum_v<T> || std::is_pointer_v<T>
unsigned int core_set_hash(const T& value) noexcept {
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    return CoreHash::generate_jenkins(bytes, sizeof(T));
}

/// A set without duplicates, iterated in order of first adding. Lookups and adding are amortised constant time.
template <class T>
class CoreSet {
public:
    CoreSet() noexcept = default;
    /// Copies every element.
    CoreSet(const CoreSet&) = default;
    /// Takes the elements; the source is left empty.
    CoreSet(CoreSet&&) noexcept = default;
    /// Becomes a copy of every element.
    CoreSet& operator=(const CoreSet& other) {
        CoreSet copy(other); // copying may throw, so it comes before any change
        *this = std::move(copy);
        return *this;
    }
    /// Takes the elements; the source is left empty.
    CoreSet& operator=(CoreSet&&) noexcept = default;
    ~CoreSet() = default;

    /// Adds the element unless an equal one is there. Amortised constant time.
    void add(const T& element) {
        if (exists(element)) {
            return;
        }
        if (elements_.get_count() >= slots_.get_count() / 2) {
            rehash(slots_.get_count() == 0 ? 8 : slots_.get_count() * 2);
        }
        elements_.add(element);
        enter(elements_.get_count() - 1);
    }
    /// Whether an equal element is there. Constant time on average.
    bool exists(const T& element) const {
        if (slots_.get_count() == 0) {
            return false;
        }
        const unsigned int mask = slots_.get_count() - 1;
        for (unsigned int slot = core_set_hash(element) & mask; slots_[slot] != vacant;
             slot = (slot + 1) & mask) {
            if (elements_[slots_[slot]] == element) {
                return true;
            }
        }
        return false;
    }
    /// Removes every element.
    void clear() noexcept {
        elements_.clear();
        slots_.clear();
    }
    /// How many elements there are.
    const unsigned int& get_count() const noexcept { return elements_.get_count(); }

    /// For loops over the elements, in order.
    const T* begin() const noexcept { return elements_.begin(); }
    /// For loops over the elements, in order.
    const T* end() const noexcept { return elements_.end(); }

private:
    static constexpr unsigned int vacant = 0xFFFFFFFFu;

    void enter(unsigned int index) {
        const unsigned int mask = slots_.get_count() - 1;
        unsigned int slot = core_set_hash(elements_[index]) & mask;
        while (slots_[slot] != vacant) {
            slot = (slot + 1) & mask;
        }
        slots_[slot] = index;
    }
    void rehash(unsigned int slot_count) {
        CoreVector<unsigned int> fresh; // when this allocation throws, the old slots are still valid
        std::fill_n(fresh.extend(slot_count), slot_count, vacant);
        slots_.swap(fresh);
        for (unsigned int i = 0; i < elements_.get_count(); ++i) {
            enter(i);
        }
    }

    CoreVector<T> elements_;
    CoreVector<unsigned int> slots_; // positions in elements_; a power of two, at most half full
};
