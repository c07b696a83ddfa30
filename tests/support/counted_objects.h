#pragma once

#include "tests/support/counted_tree.h"

#include <gtest/gtest.h>

/// Expects that as many counted objects are alive at the end of a scope as at its beginning.
class NothingLeaks {
public:
    ~NothingLeaks() {
        EXPECT_EQ(CountedEntry::alive, entries_);
        EXPECT_EQ(CountedGroup::alive, groups_);
    }

private:
    int entries_ = CountedEntry::alive;
    int groups_ = CountedGroup::alive;
};
