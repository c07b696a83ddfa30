#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace bk_python {

/// Maps an entry or a group to its handle. Open addressing; the table has a power of two of slots, at most half of them used,
/// because a walk adds and removes one key per entry.
class HandleMap {
public:
    std::size_t size() const noexcept { return size_; }

    /// Null without a handle.
    void* find(const void* key) const noexcept {
        if (size_ == 0) {
            return nullptr;
        }
        for (std::size_t i = home(key);; i = next(i)) {
            if (slots_[i].key == key || slots_[i].key == nullptr) {
                return slots_[i].handle;
            }
        }
    }

    /// Reserves room for this many more handles, so that adding them cannot fail.
    void reserve(std::size_t more) {
        std::size_t slots = slots_.empty() ? 8 : slots_.size();
        while (slots < 2 * (size_ + more)) {
            slots *= 2;
        }
        if (slots != slots_.size()) {
            grow(slots);
        }
    }

    /// Adds a new key. There must be room.
    void add(const void* key, void* handle) noexcept {
        std::size_t i = home(key);
        while (slots_[i].key != nullptr) {
            i = next(i);
        }
        slots_[i] = {key, handle};
        ++size_;
    }

    /// Moves the following keys up, so that no search ends at the hole.
    void erase(const void* key) noexcept {
        if (find(key) == nullptr) {
            return;
        }
        std::size_t hole = home(key);
        while (slots_[hole].key != key) {
            hole = next(hole);
        }
        for (std::size_t i = next(hole); slots_[i].key != nullptr; i = next(i)) {
            const std::size_t from_home = (i - home(slots_[i].key)) & (slots_.size() - 1);
            if (from_home >= ((i - hole) & (slots_.size() - 1))) {
                slots_[hole] = slots_[i];
                hole = i;
            }
        }
        slots_[hole] = {};
        --size_;
    }

private:
    struct Slot {
        const void* key = nullptr;
        void* handle = nullptr;
    };

    std::size_t home(const void* key) const noexcept {
        // Drops the low bits, which are equal because blocks are at least 16 bytes apart. The product spreads the rest over the
        // high bits.
        const auto number = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(key)) >> 4;
        return static_cast<std::size_t>((number * 0x9E3779B97F4A7C15u) >>
                                        (64 - std::countr_zero(slots_.size())));
    }
    std::size_t next(std::size_t i) const noexcept { return (i + 1) & (slots_.size() - 1); }

    void grow(std::size_t slot_count) {
        std::vector<Slot> old(slot_count);
        old.swap(slots_);
        size_ = 0;
        for (const Slot& slot : old) {
            if (slot.key != nullptr) {
                add(slot.key, slot.handle);
            }
        }
    }

    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};

} // namespace bk_python
