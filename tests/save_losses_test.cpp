#include "document/document.h"
#include "tests/support/losses.h"
#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_content.h"

#include <gtest/gtest.h>

// What a form cannot carry is named before anything is written, and nothing is written then.

using namespace bk_parser;

namespace {

class SaveLosses : public testing::TestWithParam<Loss> {};

using save_losses = SaveLosses;

SaveOptions options_for(Form form) {
    SaveOptions options;
    options.form = form;
    options.key = "key";
    return options;
}

std::string codes_of(const SaveResult& result) {
    std::string codes;
    for (const Problem& problem : result.losses) {
        codes += problem.code + " (" + problem.message + ") ";
    }
    return codes;
}

} // namespace

TEST_P(save_losses, are_named_and_nothing_is_written_unless_the_host_takes_them) {
    const ScratchFolder folder;
    Document document;
    GetParam().make(document.root());
    SaveOptions options = options_for(GetParam().form);
    const SaveResult refused = save(document, folder.path("file"), options);
    EXPECT_FALSE(refused.ok());
    EXPECT_NE(codes_of(refused).find(GetParam().code), std::string::npos)
        << codes_of(refused) << refused.reason;
    EXPECT_FALSE(folder.exists("file"));
    options.lossy = true;
    const SaveResult taken = save(document, folder.path("file"), options);
    EXPECT_TRUE(taken.ok()) << taken.reason;
    EXPECT_FALSE(taken.losses.empty());
    EXPECT_TRUE(folder.exists("file"));
}

INSTANTIATE_TEST_SUITE_P(each_loss, save_losses, testing::ValuesIn(all_losses()),
                         [](const auto& loss) { return std::string(loss.param.name); });

TEST(save_losses_kept, a_loss_in_a_kept_layout_is_named) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "#Brellwick_Serial_Version 1.2\n// c\na \"x\" 1\n");
    LoadResult loaded = load(path);
    loaded.document.root().get_entry(0)->set_string("C:\\", 0);
    const SaveResult result = save(loaded.document);
    EXPECT_FALSE(result.ok());
    EXPECT_NE(codes_of(result).find("string-ends-in-backslash (a: "), std::string::npos)
        << codes_of(result) << result.reason;
    EXPECT_EQ(folder.read("file"), "#Brellwick_Serial_Version 1.2\n// c\na \"x\" 1\n");
}

TEST(save_losses_kept, a_version_without_escapes_has_no_line_ends_in_strings) {
    const ScratchFolder folder;
    const std::string path = folder.write("file", "a \"x\"\n");
    LoadResult loaded = load(path);
    loaded.document.root().get_entry(0)->set_string("two\nlines", 0);
    const SaveResult result = save(loaded.document);
    EXPECT_NE(codes_of(result).find("string-needs-escapes"), std::string::npos)
        << codes_of(result) << result.reason;
    EXPECT_EQ(folder.read("file"), "a \"x\"\n");
}

TEST(save_losses_kept, a_group_left_open_cannot_move_before_another_entry) {
    const ScratchFolder folder;
    const std::string before = "a 1\nb 1\ng {\n  c 1\n";
    const std::string path = folder.write("file", before);
    LoadResult loaded = load(path);
    ParserGroup& root = loaded.document.root();
    root.get_entry(2)->get_group(0)->add_entry("d", 0, 0)->add_int(2);
    root.move_entry(2, 0);
    const SaveResult result = save(loaded.document);
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(folder.read("file"), before);
}

TEST(save_forms, each_form_is_saved_and_becomes_the_documents_own) {
    for (const Form form : {Form::text, Form::enciphered, Form::binary, Form::archive}) {
        const ScratchFolder folder;
        Document document;
        document.root().set_text("a 1 2.5 \"x y\" g { b yes c 0x01FF00010000 } d <empty> e 1",
                                 CoreVersion(1.2), nullptr);
        const SaveResult result = save(document, folder.path("file"), options_for(form));
        ASSERT_TRUE(result.ok()) << result.reason << codes_of(result);
        EXPECT_EQ(document.form(), form);
        EXPECT_EQ(document.path().generic_string(), folder.path("file"));
        LoadOptions options;
        options.key = "key";
        const LoadResult again = load(folder.path("file"), options);
        EXPECT_EQ(again.document.form(), form);
        EXPECT_EQ(content_difference(document.root(), again.document.root()), "") << static_cast<int>(form);
        EXPECT_TRUE(save(document).ok()) << "in its own form, with its own key";
    }
}
