#include "document/save.h"
#include "tests/support/loaded_document.h"
#include "tests/support/stored_forms.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

using bk_parser::load;
using bk_parser::LoadOptions;
using bk_parser::LoadResult;

namespace {

/// Large documents of different shapes, each about a megabyte.
struct Shape {
    const char* name;
    std::function<std::string()> text;
};

std::string repeated(const std::string& piece, std::size_t size) {
    std::string text;
    while (text.size() < size) {
        text += piece;
    }
    return text;
}

constexpr std::size_t large = 1 << 20;

const Shape shapes[] = {
    {"many entries", [] { return repeated("entry 1 2.5 \"text\"\n", large); }},
    {"one entry", [] { return "numbers " + repeated("1234 ", large); }},
    {"one group", [] { return "group { " + repeated("entry 1 2.5 \"text\"\n", large) + " }"; }},
};

class Watch {
public:
    std::vector<double> values;
    /// Cancels at this call.
    std::size_t cancel_at = 0;

    LoadOptions options() {
        LoadOptions options;
        options.key = "k";
        options.progress = [this](double value) {
            values.push_back(value);
            return values.size() != cancel_at;
        };
        return options;
    }
    void expect_about_a_hundred(const std::string& what) const {
        ASSERT_GE(values.size(), 50u) << what;
        EXPECT_LE(values.size(), 200u) << what;
        EXPECT_EQ(values.front(), 0.0) << what;
        EXPECT_EQ(values.back(), 1.0) << what;
        double widest = 0;
        for (std::size_t i = 1; i < values.size(); ++i) {
            EXPECT_GE(values[i], values[i - 1]) << what;
            widest = std::max(widest, values[i] - values[i - 1]);
        }
        EXPECT_LE(widest, 0.2) << what;
    }
};

} // namespace

TEST(document_progress, is_told_about_a_hundred_times_in_every_form_and_shape) {
    const ScratchFolder folder;
    for (const Shape& shape : shapes) {
        StoredForms forms(shape.text());
        const std::string stored[] = {shape.text(), forms.binary(), forms.archive(), forms.enciphered("k")};
        for (std::size_t i = 0; i < std::size(stored); ++i) {
            const std::string what = std::string(shape.name) + ", form " + std::to_string(i);
            Watch of_memory;
            EXPECT_TRUE(bk_parser::parse(stored[i], of_memory.options()).ok()) << what;
            of_memory.expect_about_a_hundred(what);
            Watch of_file;
            EXPECT_TRUE(load(folder.write("x", stored[i]), of_file.options()).ok()) << what;
            of_file.expect_about_a_hundred(what);
        }
    }
}

TEST(document_progress, is_told_of_comments_too) {
    Watch watch;
    EXPECT_TRUE(bk_parser::parse(repeated("entry 1 // a comment\n\n", large), watch.options()).ok());
    watch.expect_about_a_hundred("comments");
}

TEST(document_progress, is_told_of_includes_too) {
    const ScratchFolder folder;
    folder.write("part.bkd", repeated("entry 1 2.5 \"text\"\n", large / 16));
    folder.write("large.bkd", repeated("entry 1 2.5 \"text\"\n", large));
    Watch many;
    EXPECT_TRUE(load(folder.write("a", repeated("#include \"part.bkd\"\n", 320)), many.options()).ok());
    many.expect_about_a_hundred("sixteen includes");
    Watch one;
    EXPECT_TRUE(
        load(folder.write("b", repeated("x 1\n", large) + "#include \"large.bkd\"\n"), one.options()).ok());
    one.expect_about_a_hundred("one include");
}

TEST(document_progress, goes_on_after_an_include_that_is_not_followed) {
    const std::string text = repeated("entry 1 // a comment\n\n", large);
    Watch without;
    EXPECT_TRUE(bk_parser::parse(text, without.options()).ok());
    Watch with;
    LoadOptions options = with.options();
    options.follow_includes = false;
    EXPECT_TRUE(bk_parser::parse("#include \"part.bkd\"\n" + text, options).ok());
    with.expect_about_a_hundred("an include that is not followed");
    EXPECT_GE(with.values.size() + 5, without.values.size());
}

TEST(document_progress, of_a_small_document_ends_at_one) {
    Watch watch;
    EXPECT_TRUE(bk_parser::parse("a 1", watch.options()).ok());
    EXPECT_EQ(watch.values.front(), 0.0);
    EXPECT_EQ(watch.values.back(), 1.0);
    Watch missing;
    EXPECT_FALSE(load("/nowhere/x.bkd", missing.options()).ok());
    EXPECT_EQ(missing.values, (std::vector<double>{0.0, 1.0}));
}

TEST(document_progress, cancels_at_every_call_and_leaves_nothing) {
    const ScratchFolder folder;
    folder.write("part.bkd", repeated("entry 1 \"text\" g { x 1 } ]\n", 50000));
    StoredForms forms(repeated("entry 1 \"text\" g { x 1 }\n", 50000));
    for (const std::string& bytes :
         {repeated("#include \"part.bkd\"\n", 60), forms.binary(), forms.archive(), forms.enciphered("k")}) {
        const std::string path = folder.write("main.bkd", bytes);
        Watch whole;
        const LoadResult loaded = load(path, whole.options());
        EXPECT_FALSE(loaded.cancelled);
        for (std::size_t n = 1; n <= whole.values.size(); ++n) {
            Watch watch;
            watch.cancel_at = n;
            const LoadResult result = load(path, watch.options());
            EXPECT_TRUE(result.cancelled);
            EXPECT_FALSE(result.ok());
            EXPECT_EQ(watch.values.size(), n) << "no further call";
            EXPECT_TRUE(result.problems.empty());
            EXPECT_EQ(result.document.root().get_entries().get_count(), 0u);
            EXPECT_TRUE(result.document.path().empty());
        }
    }
}

TEST(document_progress, what_was_cancelled_is_not_saved_over_the_file) {
    const ScratchFolder folder;
    const std::string text = repeated("entry 1 // kept\n", 50000);
    const std::string path = folder.write("main.bkd", text);
    Watch watch;
    watch.cancel_at = 3;
    LoadResult result = load(path, watch.options());
    ASSERT_TRUE(result.cancelled);
    const bk_parser::SaveResult saved = bk_parser::save(result.document, path);
    EXPECT_FALSE(saved.ok());
    ASSERT_EQ(saved.losses.size(), 1u);
    EXPECT_EQ(saved.losses[0].message, "all of it, as the load was cancelled");
    bk_parser::SaveOptions lossy;
    lossy.lossy = true;
    EXPECT_FALSE(bk_parser::save(result.document, path, lossy).ok());
    EXPECT_EQ(folder.read("main.bkd"), text);
}

TEST(document_progress, passes_on_what_it_throws) {
    StoredForms forms(repeated("entry 1 \"text\" g { x 1 }\n", 50000));
    for (const std::string& bytes : {forms.text(), forms.binary(), forms.archive(), forms.enciphered("k")}) {
        std::size_t calls = 0;
        LoadOptions options;
        options.key = "k";
        options.progress = [&calls](double) -> bool {
            if (++calls == 30) {
                throw std::runtime_error("stop");
            }
            return true;
        };
        EXPECT_THROW(static_cast<void>(bk_parser::parse(bytes, options)), std::runtime_error);
        EXPECT_EQ(calls, 30u);
    }
}
