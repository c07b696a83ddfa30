#pragma once

#include "core/core_memory.h"

#include <cstddef>
#include <new>

namespace bk {

/// Storage that values have left, but strings have not which a host may hold by reference: the block of a list, or an
/// entry with the block behind it. It goes back when the last of these strings has died and, of an entry, the entry too.
class StringHome {
public:
    /// A home with one user: whoever makes it, until it lets go.
    static StringHome* make(void* storage, std::size_t size) {
        return new (CoreMemory::allocate(sizeof(StringHome))) StringHome{storage, size, 1};
    }

    void add_user() noexcept { ++user_count_; }
    void let_go() noexcept {
        if (--user_count_ == 0) {
            CoreMemory::release(storage_, size_);
            CoreMemory::release(this, sizeof(StringHome));
        }
    }
    /// The same of whoever gives the storage back itself when nobody else uses it, which the result tells.
    bool let_go_of_record() noexcept {
        if (user_count_ != 1) {
            --user_count_;
            return false;
        }
        CoreMemory::release(this, sizeof(StringHome));
        return true;
    }

private:
    StringHome(void* storage, std::size_t size, unsigned int user_count) noexcept
        : storage_(storage), size_(size), user_count_(user_count) {}

    void* storage_;
    std::size_t size_;
    unsigned int user_count_;
};

} // namespace bk
