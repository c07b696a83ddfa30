#include "document/document.h"
#include "tests/support/forwarding_device.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <string>
#include <utility>

// Another program writes a file of the document during a save: after the save looked at the files, and before
// it replaces them.

using namespace bk_parser;

namespace {

/// Calls `act` once, when the library begins to write its first new file.
class Meanwhile : public ForwardingDevice {
public:
    explicit Meanwhile(std::function<void()> act) : act_(std::move(act)) {}

    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created) override {
        if (const std::function<void()> act = std::exchange(act_, nullptr)) {
            act();
        }
        return ForwardingDevice::create_beside(target, created);
    }

private:
    std::function<void()> act_;
};

bool says_that_it_changed(const std::string& reason) {
    return reason.ends_with(": has changed on the disk since it was loaded");
}

class SaveMeanwhile : public testing::Test {
protected:
    SaveMeanwhile() {
        folder_.write("document", "a 1 // one\n#include \"part\"\n");
        folder_.write("part", "b 1\n");
    }
    std::function<void()> writing(const char* name, const char* text) {
        return [this, name, text] { folder_.write(name, text); };
    }
    std::string all() const { return folder_.read("document") + "|" + folder_.read("part"); }
    std::size_t files() const {
        const std::filesystem::directory_iterator all_files(folder_.path(""));
        return static_cast<std::size_t>(std::distance(begin(all_files), end(all_files)));
    }

    const ScratchFolder folder_;
};

using save_meanwhile = SaveMeanwhile;

} // namespace

TEST_F(save_meanwhile, the_documents_file_changes_and_the_save_is_refused) {
    LoadResult loaded = load(folder_.path("document"));
    set(loaded.document.root(), "a", 2);
    const Meanwhile other(writing("document", "a 5 // one\n#include \"part\"\n"));
    const SaveResult saved = save(loaded.document);
    EXPECT_TRUE(says_that_it_changed(saved.reason)) << saved.reason;
    EXPECT_TRUE(saved.written.empty());
    EXPECT_EQ(all(), "a 5 // one\n#include \"part\"\n|b 1\n");
    EXPECT_EQ(files(), 2u);
}

TEST_F(save_meanwhile, one_of_several_files_changes_or_vanishes_and_none_is_replaced) {
    for (const bool vanishes : {false, true}) {
        folder_.write("part", "b 1\n");
        LoadResult loaded = load(folder_.path("document"));
        ASSERT_TRUE(loaded.ok());
        set(loaded.document.root(), "a", 2);
        set(loaded.document.root(), "b", 2);
        const Meanwhile other([&] {
            vanishes ? static_cast<void>(std::filesystem::remove(folder_.path("part")))
                     : static_cast<void>(folder_.write("part", "b 7\n"));
        });
        const SaveResult saved = save(loaded.document);
        EXPECT_EQ(says_that_it_changed(saved.reason), !vanishes) << saved.reason;
        EXPECT_FALSE(saved.ok());
        EXPECT_EQ(folder_.read("document"), "a 1 // one\n#include \"part\"\n");
        EXPECT_EQ(std::filesystem::exists(folder_.path("part")), !vanishes);
        EXPECT_EQ(files(), vanishes ? 1u : 2u);
    }
}

TEST_F(save_meanwhile, a_document_of_another_form_changes_and_the_save_is_refused) {
    SaveOptions binary;
    binary.form = Form::binary;
    Document made;
    set(made.root(), "a", 1);
    ASSERT_TRUE(save(made, folder_.path("stored"), binary).ok());
    set(made.root(), "a", 2);
    const Meanwhile other(writing("stored", "a 5\n"));
    const SaveResult saved = save(made);
    EXPECT_TRUE(says_that_it_changed(saved.reason)) << saved.reason;
    EXPECT_EQ(folder_.read("stored"), "a 5\n");
}

TEST_F(save_meanwhile, a_file_of_a_preview_changes_or_appears_and_is_not_replaced) {
    LoadResult loaded = load(folder_.path("document"));
    set(loaded.document.root(), "a", 2);
    const SavePreview preview = preview_save(loaded.document);
    {
        const Meanwhile other(writing("document", "a 5\n"));
        const std::string reason = replace_files(preview.changes);
        EXPECT_TRUE(says_that_it_changed(reason)) << reason;
    }
    EXPECT_EQ(folder_.read("document"), "a 5\n");

    const FileChange made{folder_.path("new"), {}, "c 1\n", false};
    const Meanwhile other(writing("new", "c 9\n"));
    const std::string reason = replace_files({&made, 1});
    EXPECT_TRUE(says_that_it_changed(reason)) << reason;
    EXPECT_EQ(folder_.read("new"), "c 9\n");
}

TEST_F(save_meanwhile, the_same_bytes_written_again_do_not_matter) {
    LoadResult loaded = load(folder_.path("document"));
    set(loaded.document.root(), "a", 2);
    const Meanwhile other(writing("document", "a 1 // one\n#include \"part\"\n"));
    EXPECT_EQ(save(loaded.document).reason, "");
    EXPECT_EQ(folder_.read("document"), "a 2 // one\n#include \"part\"\n");
}

TEST_F(save_meanwhile, what_a_device_throws_reaches_the_caller_and_every_file_stays) {
    LoadResult loaded = load(folder_.path("document"));
    set(loaded.document.root(), "a", 2);
    const FileChange change{folder_.path("part"), "b 1\n", "b 2\n", true};
    const std::function<void()> operations[] = {
        [&] { static_cast<void>(save(loaded.document)); },
        [&] {
            static_cast<void>(replace_files({&change, 1}));
        },
        [&] { static_cast<void>(replace_file(change.path, "b 2\n")); }};
    for (const std::function<void()>& operate : operations) {
        const Meanwhile broken([] { throw 7; });
        EXPECT_THROW(operate(), int);
    }
    EXPECT_EQ(all(), "a 1 // one\n#include \"part\"\n|b 1\n");
    EXPECT_EQ(files(), 2u);
}

TEST_F(save_meanwhile, a_name_with_a_nul_is_refused_and_the_file_before_it_stays) {
    const std::filesystem::path name(folder_.path("part") + std::string("\0more", 5));
    Document made;
    set(made.root(), "a", 1);
    for (const std::string& reason : {save(made, name).reason, preview_save(made, name).reason,
                                      replace_file(name, "x"), replace_files({})}) {
        EXPECT_TRUE(reason.empty() || reason.ends_with("part\\x00more: a name cannot hold a NUL")) << reason;
    }
    EXPECT_FALSE(save(made, name).ok());
    EXPECT_FALSE(preview_save(made, name).ok());
    EXPECT_NE(replace_file(name, "x"), "");
    const FileChange change{name, {}, "c 1\n", false};
    EXPECT_NE(replace_files({&change, 1}), "");
    EXPECT_TRUE(made.path().empty());
    EXPECT_EQ(folder_.read("part"), "b 1\n");
    EXPECT_EQ(replace_file("", "x"), "there is no path to save to");
}
