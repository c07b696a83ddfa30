#include "document/document.h"
#include "tests/support/forwarding_device.h"
#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

using namespace bk_parser;

namespace {

/// A document of three files. Two places of the tree include the same file.
class SaveFiles : public testing::Test {
protected:
    SaveFiles() {
        folder_.write("document", "// top\na 1\n#include \"parts/lights\"\nz 9\n");
        folder_.write("parts/lights", "light {\n  power 40 // watts\n}\n#include \"common\"\n");
        folder_.write("parts/common", "unit 1\r\n");
    }
    LoadResult load_it() { return load(folder_.path("document")); }
    static ParserEntry& entry(Document& document, const char* name) {
        return *document.root().get_entry(CoreString(name));
    }
    void expect_same(Document& document) {
        const LoadResult again = load_it();
        EXPECT_EQ(content_difference(document.root(), again.document.root()), "");
    }
    std::string all() const {
        return folder_.read("document") + "|" + folder_.read("parts/lights") + "|" +
               folder_.read("parts/common");
    }

    const ScratchFolder folder_;
};

using save_files = SaveFiles;

/// Lets one call of a kind fail as on a full disk, after `left` calls that work.
class Failing : public ForwardingDevice {
public:
    enum Call { creating, replacing };
    Failing(Call call, int left) : call_(call), left_(left) {}

    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created) override {
        return call_ == creating && left_-- == 0 ? fail(),
               nullptr                           : ForwardingDevice::create_beside(target, created);
    }
    bool replace(const std::string& from, const std::string& to) override {
        if (call_ == replacing && left_-- == 0) {
            fail();
            return false;
        }
        return ForwardingDevice::replace(from, to);
    }

private:
    static void fail() {
#if defined(_WIN32)
        SetLastError(ERROR_DISK_FULL);
#else
        errno = ENOSPC;
#endif
    }

    Call call_;
    int left_;
};

/// A path with the separators of the platform.
std::string native(const std::string& path) {
    return std::filesystem::path(path).make_preferred().string();
}

bool has_loss(const SaveResult& result, std::string_view code) {
    return std::any_of(result.losses.begin(), result.losses.end(),
                       [code](const Problem& problem) { return problem.code == code; });
}

} // namespace

TEST_F(save_files, a_change_goes_into_the_file_that_the_entry_came_from) {
    LoadResult loaded = load_it();
    ASSERT_TRUE(loaded.ok());
    entry(loaded.document, "light").get_group(0)->get_entry("power")->set_int(60, 0);
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(all(), "// top\na 1\n#include \"parts/lights\"\nz 9\n|light {\n  power 60 // "
                     "watts\n}\n#include \"common\"\n|unit 1\r\n");
    ASSERT_EQ(result.written.size(), 1u);
    EXPECT_EQ(result.written[0].generic_string(), folder_.path("parts/lights"));
    expect_same(loaded.document);
}

TEST_F(save_files, several_files_change_together) {
    LoadResult loaded = load_it();
    entry(loaded.document, "a").set_int(2, 0);
    entry(loaded.document, "unit").set_int(3, 0);
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(result.written.size(), 2u);
    EXPECT_EQ(folder_.read("parts/common"), "unit 3\r\n");
    EXPECT_EQ(folder_.count(), 2u) << "nothing is left beside the document";
    expect_same(loaded.document);
}

TEST_F(save_files, an_entry_behind_an_include_goes_behind_its_directive) {
    LoadResult loaded = load_it();
    ParserGroup& root = loaded.document.root();
    root.add_entry("new", 0, 0)->add_int(5);
    root.move_entry(root.get_entries().get_count() - 1, root.get_entries().get_count() - 2);
    ASSERT_TRUE(save(loaded.document).ok());
    EXPECT_EQ(folder_.read("document"), "// top\na 1\n#include \"parts/lights\"\nnew 5\nz 9\n");
    expect_same(loaded.document);
}

TEST_F(save_files, an_entry_between_those_of_an_include_goes_into_it) {
    LoadResult loaded = load_it();
    ParserGroup& root = loaded.document.root();
    root.add_entry("new", 0, 0)->add_int(5);
    root.move_entry(root.get_entries().get_count() - 1, 2);
    ASSERT_TRUE(save(loaded.document).ok());
    EXPECT_EQ(folder_.read("parts/lights"), "light {\n  power 40 // watts\n}\nnew 5\n#include \"common\"\n");
    expect_same(loaded.document);
}

TEST_F(save_files, a_change_of_an_included_file_is_refused_where_that_is_asked_for) {
    LoadResult loaded = load_it();
    entry(loaded.document, "unit").set_int(3, 0);
    SaveOptions options;
    options.into_includes = false;
    const std::string before = all();
    const SaveResult result = save(loaded.document, {}, options);
    EXPECT_FALSE(result.ok());
    EXPECT_NE(result.reason.find(native("parts/common") + ": holds entry 'unit'"), std::string::npos)
        << result.reason;
    EXPECT_EQ(all(), before);
}

TEST_F(save_files, a_file_that_is_included_twice_changes_when_both_places_ask_for_the_same) {
    folder_.write("document", "one {\n#include \"parts/common\"\n}\ntwo {\n#include \"parts/common\"\n}\n");
    LoadResult loaded = load_it();
    entry(loaded.document, "one").get_group(0)->get_entry("unit")->set_int(3, 0);
    const SaveResult refused = save(loaded.document);
    EXPECT_NE(refused.reason.find(native("parts/common") + ": is included more than once"), std::string::npos)
        << refused.reason;
    entry(loaded.document, "two").get_group(0)->get_entry("unit")->set_int(3, 0);
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder_.read("parts/common"), "unit 3\r\n");
    expect_same(loaded.document);
}

TEST_F(save_files, a_cleared_group_lets_go_of_an_include_that_another_place_keeps) {
    const std::string one = "one { // c\n  #include \"parts/common\" // it\n}\n";
    folder_.write("document", one + "two {\n#include \"parts/common\"\n}\n");
    LoadResult loaded = load_it();
    entry(loaded.document, "two").get_group(0)->clear();
    SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder_.read("document"), one + "two {\n}\n");
    EXPECT_EQ(folder_.read("parts/common"), "unit 1\r\n");
    expect_same(loaded.document);
    entry(loaded.document, "one").get_group(0)->clear();
    result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder_.read("document"), one + "two {\n}\n") << "the last place clears the file";
    EXPECT_EQ(folder_.read("parts/common"), "");
}

TEST_F(save_files, a_cleared_group_lets_go_of_includes_inside_of_includes) {
    folder_.write("parts/lights", "// lights\n#include \"common\"\nl 1\n");
    folder_.write("document",
                  "one {\n#include \"parts/lights\"\n}\ntwo {\n#include \"parts/lights\"\nx 1\n}\n");
    LoadResult loaded = load_it();
    ParserGroup& two = *entry(loaded.document, "two").get_group(0);
    two.clear();
    two.add_entry("new", 0, 0)->add_int(1);
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder_.read("document"), "one {\n#include \"parts/lights\"\n}\ntwo {\n    new 1\n}\n");
    EXPECT_EQ(folder_.read("parts/lights"), "// lights\n#include \"common\"\nl 1\n");
    EXPECT_EQ(folder_.read("parts/common"), "unit 1\r\n");
    expect_same(loaded.document);
}

TEST_F(save_files, a_file_that_changed_on_the_disk_or_is_gone_is_refused) {
    LoadResult loaded = load_it();
    entry(loaded.document, "a").set_int(2, 0);
    folder_.write("parts/common", "unit 2\r\n");
    EXPECT_NE(save(loaded.document).reason.find(native("parts/common") + ": has changed on the disk"),
              std::string::npos);
    std::filesystem::remove(folder_.path("parts/common"));
    EXPECT_NE(save(loaded.document).reason.find(native("parts/common") + ": is not found"), std::string::npos)
        << save(loaded.document).reason;
    folder_.write("parts/common", "unit 1\r\n");
    EXPECT_TRUE(save(loaded.document).ok());
}

TEST_F(save_files, another_path_gets_the_documents_own_file) {
    LoadResult loaded = load_it();
    entry(loaded.document, "a").set_int(2, 0);
    const SaveResult result = save(loaded.document, folder_.path("copy"));
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_EQ(folder_.read("copy"), "// top\na 2\n#include \"parts/lights\"\nz 9\n");
    EXPECT_EQ(folder_.read("document"), "// top\na 1\n#include \"parts/lights\"\nz 9\n");
    EXPECT_EQ(loaded.document.path().generic_string(), folder_.path("copy"));
    entry(loaded.document, "a").set_int(3, 0);
    ASSERT_TRUE(save(loaded.document).ok());
    EXPECT_EQ(folder_.read("copy"), "// top\na 3\n#include \"parts/lights\"\nz 9\n");
}

TEST_F(save_files, another_path_is_refused_where_includes_would_be_missed_or_changed) {
    LoadResult loaded = load_it();
    folder_.make_folder("elsewhere");
    EXPECT_FALSE(save(loaded.document, folder_.path("elsewhere/copy")).ok());
    entry(loaded.document, "unit").set_int(3, 0);
    EXPECT_FALSE(save(loaded.document, folder_.path("copy")).ok());
    EXPECT_FALSE(folder_.exists("elsewhere/copy"));
    EXPECT_FALSE(folder_.exists("copy"));
    SaveOptions anew;
    anew.keep_layout = false;
    EXPECT_TRUE(save(loaded.document, folder_.path("elsewhere/copy"), anew).ok());
    const LoadResult again = load(folder_.path("elsewhere/copy"));
    EXPECT_EQ(content_difference(loaded.document.root(), again.document.root()), "");
}

TEST_F(save_files, when_any_step_fails_every_file_is_as_it_was) {
    const std::string before = all();
    for (const Failing::Call call : {Failing::creating, Failing::replacing}) {
        for (int n = 0; n < 2; ++n) {
            LoadResult loaded = load_it();
            entry(loaded.document, "a").set_int(2, 0);
            entry(loaded.document, "unit").set_int(3, 0);
            SaveResult result;
            {
                const Failing device(call, n);
                result = save(loaded.document);
            }
            EXPECT_NE(result.reason.find(": no space left on the device"), std::string::npos)
                << result.reason;
            EXPECT_NE(result.reason.find(n == 0 || call == Failing::creating ? "common" : "document"),
                      std::string::npos);
            EXPECT_TRUE(result.written.empty());
            EXPECT_EQ(all(), before);
            EXPECT_EQ(folder_.count(), 2u);
            ASSERT_TRUE(save(loaded.document).ok()) << "and the next try succeeds";
            folder_.write("document", "// top\na 1\n#include \"parts/lights\"\nz 9\n");
            folder_.write("parts/common", "unit 1\r\n");
        }
    }
}

TEST_F(save_files, an_enciphered_include_is_enciphered_again) {
    Document hidden;
    hidden.root().add_entry("unit", 0, 0)->add_int(1);
    SaveOptions options;
    options.form = Form::enciphered;
    options.key = "key";
    ASSERT_TRUE(save(hidden, folder_.path("parts/common"), options).ok());
    LoadOptions load_options;
    load_options.key = "key";
    LoadResult loaded = load(folder_.path("document"), load_options);
    ASSERT_NE(loaded.document.root().get_entry("unit"), nullptr);
    entry(loaded.document, "unit").set_int(3, 0);
    const SaveResult result = save(loaded.document);
    ASSERT_TRUE(result.ok()) << result.reason;
    EXPECT_TRUE(folder_.read("parts/common").starts_with("KWBF"));
    const LoadResult again = load(folder_.path("document"), load_options);
    EXPECT_EQ(content_difference(loaded.document.root(), again.document.root()), "");
}

TEST(save_reasons, name_the_file_and_why) {
    const ScratchFolder folder;
    Document document;
    EXPECT_EQ(save(document).reason, "there is no path to save to");
    EXPECT_EQ(save(document, folder.path()).reason, folder.path() + ": is a directory");
    EXPECT_EQ(save(document, folder.path("no/file")).reason,
              folder.path("no/file") + ": there is no folder " + folder.path("no"));
    EXPECT_TRUE(save(document, folder.path("file")).ok());
    EXPECT_EQ(folder.read("file"), "#Brellwick_Serial_Version 1.2\n");
}

TEST(save_reasons, a_file_that_was_deleted_is_told_as_such_and_written_anew_where_that_is_asked_for) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "a 1 // one\n");
    LoadResult loaded = load(path);
    std::filesystem::remove(path);
    ASSERT_TRUE(set(loaded.document.root(), "a", 2));
    EXPECT_EQ(save(loaded.document).reason,
              native(path) + ": is not there any more: it was deleted or renamed since it was loaded");
    EXPECT_FALSE(std::filesystem::exists(path));
    SaveOptions anew;
    anew.keep_layout = false;
    EXPECT_TRUE(save(loaded.document, {}, anew).ok());
    EXPECT_EQ(folder.read("file"), "#Brellwick_Serial_Version 1.2\n\na 2\n");
}

TEST(save_reasons, a_file_that_was_not_read_is_not_replaced) {
    const ScratchFolder folder;
    const std::string image = "\x89PNG\r\n\x1A\n and more";
    const std::string path = folder.write("file", image);
    LoadResult loaded = load(path);
    ASSERT_FALSE(loaded.ok());
    loaded.document.root().add_entry("a", 0, 0)->add_int(1);
    const SaveResult result = save(loaded.document);
    EXPECT_TRUE(has_loss(result, "not-read-whole")) << result.reason;
    EXPECT_EQ(folder.read("file"), image);
    LoadResult missing = load(folder.path("new"));
    missing.document.root().add_entry("a", 0, 0)->add_int(1);
    EXPECT_TRUE(save(missing.document).ok()) << "where there is no file, nothing is lost";
}

TEST(save_reasons, a_text_with_too_many_control_characters_is_refused_in_plain_words) {
    const ScratchFolder folder;
    Document document;
    ASSERT_TRUE(set(document.root(), "a", std::string(40, '\x01')));
    SaveOptions options;
    for (const Form form : {Form::text, Form::enciphered}) {
        options.form = form;
        options.key = form == Form::enciphered ? "secret" : "";
        const SaveResult result = save(document, folder.path("file"), options);
        EXPECT_EQ(result.reason,
                  folder.path("file") +
                      ": the text has so many control characters that it would not be taken for a text: "
                      "choose the binary form");
    }
    options.form = Form::binary;
    EXPECT_TRUE(save(document, folder.path("file"), options).ok());
}

TEST(save_reasons, a_text_that_would_be_taken_for_another_form_is_refused) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "a 1\n");
    LoadResult loaded = load(path);
    loaded.document.root().get_entry(0)->rename("UDFS");
    EXPECT_EQ(save(loaded.document).reason, native(path) + ": would not be taken for a text any more");
    EXPECT_EQ(folder.read("file"), "a 1\n");
}
