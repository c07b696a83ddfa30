#include "parser/parser_file.h"
#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

/// Counts how many groups of its class were destroyed.
class MortalGroup : public ParserGroup {
public:
    explicit MortalGroup(int& deaths) : ParserGroup("mortal"), deaths_(deaths) {}
    ~MortalGroup() override { ++deaths_; }

private:
    int& deaths_;
};

} // namespace

TEST(file_copies, a_copy_has_the_same_root_and_fields) {
    ParserFile file(CoreString("name"));
    file.set_search_paths({"one"});
    const ParserFile copy(file);
    EXPECT_EQ(&copy.get_root(), &file.get_root());
    EXPECT_EQ(plain(copy.get_filename()), "name");
    ASSERT_EQ(copy.get_search_paths().get_count(), 1u);
    EXPECT_EQ(plain(copy.get_search_paths()[0]), "one");
    EXPECT_EQ(copy.get_serial_version().get_value(), 1.2);
}

TEST(file_copies, what_is_added_through_one_is_seen_through_the_other) {
    ParserFile file(CoreString("name"));
    const ParserFile copy(file);
    file.get_root().add_entry("a", 0, 0);
    EXPECT_EQ(copy.get_root().get_entries().get_count(), 1u);
}

TEST(file_copies, all_but_the_root_is_independent) {
    ParserFile file(CoreString("name"));
    ParserFile copy(file);
    copy.set_filename("other");
    copy.set_search_paths({"one"});
    EXPECT_EQ(plain(file.get_filename()), "name");
    EXPECT_EQ(file.get_search_paths().get_count(), 0u);
}

TEST(file_copies, version_dependencies_and_storage_are_copied) {
    const DocumentFolder folder;
    folder.write("x.bkd", "a 1\n");
    folder.write("main.bkd", "#Brellwick_Serial_Version 1.1\n#include \"x.bkd\"\n");
    ParserFile file(core(folder.path("main.bkd")));
    file.set_search_paths({core(folder.path())});
    ASSERT_TRUE(file.read("", "", nullptr));
    const ParserFile copy(file);
    ParserFile assigned(CoreString("other"));
    assigned = file;
    for (const ParserFile* other : {&copy, static_cast<const ParserFile*>(&assigned)}) {
        EXPECT_EQ(other->get_serial_version().get_value(), 1.1);
        EXPECT_EQ(other->get_dependencies().get_count(), 1u);
        EXPECT_TRUE(other->get_dependencies().exists(core(folder.full_path("x.bkd"))));
        EXPECT_FALSE(other->is_encrypted());
        EXPECT_EQ(&other->get_root(), &file.get_root());
    }
}

TEST(file_copies, the_root_dies_with_the_last_file_that_shares_it) {
    int deaths = 0;
    auto file = std::make_unique<ParserFile>(*new MortalGroup(deaths));
    auto copy = std::make_unique<ParserFile>(*file);
    auto copy_of_copy = std::make_unique<ParserFile>(*copy);
    file.reset();
    EXPECT_EQ(deaths, 0);
    copy_of_copy.reset();
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(plain(copy->get_root().get_name()), "mortal");
    copy.reset();
    EXPECT_EQ(deaths, 1);
}

TEST(file_copies, a_file_of_its_own_deletes_its_root) {
    int deaths = 0;
    { const ParserFile file(*new MortalGroup(deaths)); }
    EXPECT_EQ(deaths, 1);
}

TEST(file_copies, an_assigned_file_gives_up_its_own_root) {
    int first_deaths = 0;
    int second_deaths = 0;
    auto first = std::make_unique<ParserFile>(*new MortalGroup(first_deaths));
    auto second = std::make_unique<ParserFile>(*new MortalGroup(second_deaths));
    *first = *second;
    EXPECT_EQ(first_deaths, 1);
    EXPECT_EQ(&first->get_root(), &second->get_root());
    second.reset();
    EXPECT_EQ(second_deaths, 0);
    first.reset();
    EXPECT_EQ(second_deaths, 1);
}

TEST(file_copies, a_root_given_up_lives_on_with_its_other_files) {
    int deaths = 0;
    ParserFile first(*new MortalGroup(deaths));
    {
        const ParserFile copy(first);
        first = ParserFile(CoreString("other"));
        EXPECT_EQ(deaths, 0);
        EXPECT_EQ(plain(copy.get_root().get_name()), "mortal");
    }
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(plain(first.get_root().get_name()), "root");
}

TEST(file_copies, assigning_a_file_to_itself_changes_nothing) {
    int deaths = 0;
    ParserFile file(*new MortalGroup(deaths));
    file.set_filename("name");
    file.set_search_paths({"one"});
    const ParserGroup* root = &file.get_root();
    const ParserFile& same = file;
    file = same;
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(&file.get_root(), root);
    EXPECT_EQ(plain(file.get_filename()), "name");
    EXPECT_EQ(file.get_search_paths().get_count(), 1u);
}

TEST(file_copies, assigning_files_that_share_a_root_keeps_it) {
    int deaths = 0;
    {
        ParserFile file(*new MortalGroup(deaths));
        ParserFile copy(file);
        copy.set_filename("copy");
        file = copy;
        EXPECT_EQ(deaths, 0);
        EXPECT_EQ(plain(file.get_filename()), "copy");
    }
    EXPECT_EQ(deaths, 1);
}

TEST(file_copies, clearing_one_empties_the_root_of_both) {
    ParserFile file(CoreString("name"));
    ParserFile copy(file);
    file.get_root().add_entry("a", 0, 0);
    copy.clear();
    EXPECT_EQ(file.get_root().get_entries().get_count(), 0u);
}
