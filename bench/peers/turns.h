#pragma once

#include <cstddef>

namespace bench {

/// Chooses the change of each entry that holds values. Of ten entries, one is renamed, for one a new entry is added at the end of the
/// group, one is removed, and one is moved to the end of the group.
class Turns {
public:
    enum Change { NOTHING, RENAME, ADD, REMOVE, MOVE };

    Change next() {
        constexpr Change of_ten[] = {RENAME,  NOTHING, NOTHING, ADD,     NOTHING,
                                     NOTHING, REMOVE,  NOTHING, NOTHING, MOVE};
        const Change change = of_ten[turn_++ % 10];
        changes_ += change != NOTHING ? 1 : 0;
        return change;
    }

    std::size_t changes() const { return changes_; }

private:
    std::size_t turn_ = 0;
    std::size_t changes_ = 0;
};

} // namespace bench
