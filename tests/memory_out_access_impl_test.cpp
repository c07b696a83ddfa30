#include "tests/support/run_out.h"

#include "document/access.h"
#include "tests/support/described.h"

// Memory runs out while a tree is changed by paths. Each change is made completely or not at all.

namespace {

constexpr const char* start =
    "a { b 1 c \"a text that is longer than eleven\" } list[3] \"a first text of some length\" \"two\" 3 "
    "d \"k\" #k 1 raw 1 e { f { g 1 } } ";

/// Runs an edit again and again. In each run, the next request for memory fails.
void expect_whole_or_nothing(const std::function<bool(ParserGroup&)>& edit) {
    std::string whole;
    {
        ParserGroup root("root");
        root.set_text(start, default_parser_serial_version, nullptr);
        ASSERT_TRUE(edit(root));
        whole = described(root);
    }
    for (std::size_t n = 1;; ++n) {
        ASSERT_LT(n, 2000u);
        const long live = FailingMemory::live();
        bool has_thrown = false;
        {
            ParserGroup root("root");
            root.set_text(start, default_parser_serial_version, nullptr);
            root.get_entry("raw")->set_as_raw_text(true); // the index does not know this yet
            const std::string before = described(root);
            FailingMemory::fail_at(n, true);
            try {
                edit(root);
            } catch (const std::bad_alloc&) {
                has_thrown = true;
            }
            FailingMemory::disarm();
            EXPECT_EQ(described(root), has_thrown ? before : whole) << "request " << n;
            for (const bk_parser::Visit& visit : bk_parser::walk(root)) {
                EXPECT_EQ(bk_parser::find(root, bk_parser::path_of(root, visit.entry())), &visit.entry());
            }
        }
        EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
        if (!has_thrown || testing::Test::HasFailure()) {
            EXPECT_GT(n, 1u) << "nothing was asked for";
            return;
        }
    }
}

} // namespace

TEST(memory_out_of_access, a_value_is_set_or_as_it_was) {
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::set(root, "a/c", "another text that is longer than eleven");
    });
    expect_whole_or_nothing([](ParserGroup& root) { return bk_parser::set(root, "a/b", 5.5); });
    expect_whole_or_nothing(
        [](ParserGroup& root) { return bk_parser::set(root, "a/b", std::vector<std::byte>(40)); });
}

TEST(memory_out_of_access, a_list_is_set_or_as_it_was) {
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::set(root, "list",
                              std::vector<std::string>{"a text that is longer than eleven", "x", "y", "z",
                                                       "another text that is longer than eleven"});
    });
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::set(root, "list@1", std::vector<int>{1, 2, 3, 4, 5});
    });
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::set(root, "list",
                              std::array<std::string, 2>{"a text that is longer than eleven", "short"});
    });
    expect_whole_or_nothing(
        [](ParserGroup& root) { return bk_parser::set(root, "list", std::vector<int>{1}); });
}

TEST(memory_out_of_access, the_groups_on_the_way_are_all_made_or_none_is) {
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::set(root, "a/new[\"a key that is longer than eleven\"]/next<t>/last",
                              "text of some length");
    });
    expect_whole_or_nothing([](ParserGroup& root) { return bk_parser::set(root, "d/x/y", 1); });
    expect_whole_or_nothing(
        [](ParserGroup& root) { return bk_parser::add(root, "#another/x", 1) != nullptr; });
}

TEST(memory_out_of_access, an_entry_is_moved_or_where_it_was) {
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::move(root, "a", "e/f/a_name_that_is_longer_than_eleven");
    });
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::move(root, "a/b", "new/group/a_name_that_is_longer_than_eleven");
    });
    expect_whole_or_nothing([](ParserGroup& root) {
        return bk_parser::move(root, "#k", "d/#a_name_that_is_longer_than_eleven");
    });
    expect_whole_or_nothing(
        [](ParserGroup& root) { return bk_parser::rename(root, "a", "a_name_that_is_longer_than_eleven"); });
}

TEST(memory_out_of_access, an_entry_is_removed_or_stays) {
    expect_whole_or_nothing([](ParserGroup& root) { return bk_parser::remove(root, "list"); });
    expect_whole_or_nothing([](ParserGroup& root) { return bk_parser::remove(root, "list@1"); });
    expect_whole_or_nothing([](ParserGroup& root) { return bk_parser::remove_all(root, "*[@0=1]") == 2; });
    expect_whole_or_nothing([](ParserGroup& root) { return bk_parser::take(root, "d") != nullptr; });
}

TEST(memory_out_of_access, an_entry_is_inserted_or_dies) {
    expect_whole_or_nothing([](ParserGroup& root) {
        auto entry = std::make_unique<ParserEntry>("#new", ParserEntry::TYPE_KEYWORD, 0, 0);
        bk_parser::insert(root, 2, std::move(entry));
        return true;
    });
}

TEST(memory_out_of_access, reading_and_searching_leave_the_tree_alone) {
    const CountingLog log;
    std::size_t n = 1;
    ParserGroup root("root");
    root.set_text(start, default_parser_serial_version, nullptr);
    const long live = FailingMemory::live();
    for (bool has_thrown = true; has_thrown; ++n) {
        has_thrown = false;
        FailingMemory::fail_at(n);
        try {
            const auto list = bk_parser::get<std::vector<std::string>>(root, "**/c");
            const std::string path = bk_parser::path_of(root, *bk_parser::find(root, "e/f/g"));
            const std::string text = bk_parser::to_text(root);
            const bk_parser::PathIndex index(root);
            const auto error = bk_parser::path_error("a path that is malformed");
        } catch (const std::bad_alloc&) {
            has_thrown = true;
        }
        FailingMemory::disarm();
        EXPECT_EQ(FailingMemory::live(), live) << n;
    }
    EXPECT_GT(n, 20u);
}
