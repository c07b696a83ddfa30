#include "tests/support/document_folder.h"
#include "tests/support/forwarding_device.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

} // namespace

TEST(file_read, the_tree_is_read_from_the_file) {
    const DocumentFolder folder;
    folder.write("main.bkd", "#Brellwick_Serial_Version 1.2\n\na 1\nb {\n    c \"x\\ty\"\n}\n");
    ParserFile file(CoreString{});
    EXPECT_TRUE(file.read(folder.core_path("main.bkd"), "", nullptr));
    ASSERT_EQ(file.get_root().get_entries().get_count(), 2u);
    EXPECT_EQ(file.get_root().get_entry("a")->get_int(0), 1);
    EXPECT_EQ(plain(file.get_root().get_entry("b")->get_group(0)->get_entry("c")->get_string(0)), "x\ty");
    EXPECT_EQ(plain(file.get_filename()), folder.path("main.bkd"));
}

TEST(file_read, lines_and_columns_are_those_of_the_expanded_text) {
    const DocumentFolder folder;
    folder.write("main.bkd", "#Brellwick_Serial_Version 1.2\n// note\na 1\n  b 2\n");
    ParserFile file(folder.core_path("main.bkd"));
    ASSERT_TRUE(file.read("", "", nullptr));
    EXPECT_EQ(file.get_root().get_entry("a")->get_line(), 1u);
    EXPECT_EQ(file.get_root().get_entry("b")->get_line(), 2u);
    EXPECT_EQ(file.get_root().get_entry("b")->get_column(), 3u);
}

TEST(file_read, without_a_name_the_stored_file_is_read_again) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    ParserFile file(folder.core_path("main.bkd"));
    EXPECT_EQ(DocumentFolder::read_into(file, "").tree, " a 1");
    folder.write("main.bkd", "b 2\n");
    file.clear();
    EXPECT_EQ(DocumentFolder::read_into(file, "").tree, " b 2");
    EXPECT_EQ(plain(file.get_filename()), folder.path("main.bkd"));
}

TEST(file_read, entries_are_appended_to_those_of_the_root) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    ParserFile file(folder.core_path("main.bkd"));
    file.get_root().add_entry("before", 0, 0);
    EXPECT_EQ(DocumentFolder::read_into(file, "").tree, " before <empty> a 1");
    EXPECT_EQ(DocumentFolder::read_into(file, "").tree, " before <empty> a 1 a 1");
}

TEST(file_read, faults_of_the_syntax_are_logged_and_are_no_failure) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("a 1 = 2\nb");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.tree, " a 1");
    EXPECT_EQ(reading.messages, (Messages{"ParserGroup.set_text: (1:4) Entry '=' wrongly placed.\n",
                                          "ParserGroup.set_text: (1:7) Value without entry: 2\n",
                                          "ParserGroup.set_text: (2:0) Entry 'b' has no value.\n"}));
}

TEST(file_read, an_empty_file_is_read) {
    const DocumentFolder folder;
    const Reading reading = folder.read_text("");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.0);
    EXPECT_EQ(reading.tree, "");
}

TEST(file_read, a_failure_leaves_the_root_as_it_was_and_the_version_zero) {
    const DocumentFolder folder;
    folder.write("bad.bkd", "b 2\n#include \"missing\"\n");
    ParserFile file(CoreString{});
    file.get_root().add_entry("a", 0, 0)->add_int(1);
    const Reading reading = DocumentFolder::read_into(file, folder.path("bad.bkd"));
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.tree, " a 1");
    EXPECT_EQ(reading.version, 0.0);
    EXPECT_EQ(plain(file.get_filename()), folder.path("bad.bkd"));
}

TEST(file_read, a_read_after_a_failure_sets_the_version_again) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    ParserFile file(CoreString{});
    EXPECT_EQ(DocumentFolder::read_into(file, folder.path("missing")).version, 0.0);
    EXPECT_EQ(DocumentFolder::read_into(file, folder.path("main.bkd")).version, 1.0);
}

TEST(file_read, the_search_paths_are_afterwards_as_they_were) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    ParserFile file(CoreString{});
    file.set_search_paths({"one", "two"});
    EXPECT_TRUE(DocumentFolder::read_into(file, folder.path("main.bkd")).result);
    ASSERT_EQ(file.get_search_paths().get_count(), 2u);
    EXPECT_EQ(plain(file.get_search_paths()[0]), "one");
    EXPECT_EQ(plain(file.get_search_paths()[1]), "two");
    EXPECT_FALSE(DocumentFolder::read_into(file, folder.path("missing")).result);
    EXPECT_EQ(file.get_search_paths().get_count(), 2u);
}

TEST(file_read, no_search_paths_are_afterwards_none) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    ParserFile file(CoreString{});
    EXPECT_TRUE(DocumentFolder::read_into(file, folder.path("main.bkd")).result);
    EXPECT_EQ(file.get_search_paths().get_count(), 0u);
}

TEST(file_read, the_key_is_ignored_for_a_plain_text) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    ParserFile file(CoreString{});
    EXPECT_TRUE(file.read(folder.core_path("main.bkd"), "key", nullptr));
    EXPECT_NE(file.get_root().get_entry("a"), nullptr);
    EXPECT_FALSE(file.is_encrypted());
}

TEST(file_read, a_binary_document_is_not_recognised) {
    const DocumentFolder folder;
    ParserFile written_file(CoreString{});
    written_file.get_root().add_entry("a", 0, 0)->add_int(1);
    ASSERT_TRUE(written_file.write(ParserFile::MODE_BINARY, folder.core_path("main.bin"), ""));
    ParserFile file(CoreString{});
    EXPECT_TRUE(DocumentFolder::read_into(file, folder.path("main.bin")).result);
    EXPECT_EQ(file.get_root().get_entry("a"), nullptr);
}

TEST(file_read, a_file_that_cannot_be_opened_is_reported_by_its_name) {
    class Locked : public ForwardingDevice {
    public:
        std::unique_ptr<SysHandle> open_for_reading(const std::string&) override { return nullptr; }
    };
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    ParserFile file(CoreString{});
    file.set_search_paths({folder.core_path("")});
    const Locked device;
    const Reading reading = DocumentFolder::read_into(file, "main.bkd");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.version, 0.0);
    EXPECT_EQ(reading.messages, Messages{"Failed to open file 'main.bkd'.\n"});
}

TEST(file_read, an_included_file_that_cannot_be_opened_is_reported_by_its_name) {
    class Locked : public ForwardingDevice {
    public:
        std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
            return path.ends_with("x.bkd") ? nullptr : ForwardingDevice::open_for_reading(path);
        }
    };
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2\n");
    const Locked device;
    const Reading reading = folder.read_text("#include \"x.bkd\"\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, Messages{"Failed to open file 'x.bkd'.\n"});
}

TEST(file_read, a_file_of_four_gibibytes_is_refused_before_it_is_read) {
    class Endless : public SysHandle {
    public:
        explicit Endless(bool& was_read) : was_read_(was_read) {}
        core_int64 read(char*, std::size_t) override {
            was_read_ = true;
            return -1;
        }
        core_int64 write(const char*, std::size_t) override { return -1; }
        bool sync() override { return true; }
        bool close() override { return true; }

    private:
        bool& was_read_;
    };
    class Large : public ForwardingDevice {
    public:
        bool was_read = false;
        SysPathInfo inspect(const std::string&) override {
            return {SysPathKind::regular, core_int64{1} << 32};
        }
        std::unique_ptr<SysHandle> open_for_reading(const std::string&) override {
            return std::make_unique<Endless>(was_read);
        }
    };
    const Large device;
    ParserFile file(CoreString{});
    const Reading reading = DocumentFolder::read_into(file, "large.bkd");
    EXPECT_FALSE(reading.result);
    EXPECT_FALSE(device.was_read);
    EXPECT_EQ(reading.messages, Messages{"File 'large.bkd' is too large.\n"});
}
