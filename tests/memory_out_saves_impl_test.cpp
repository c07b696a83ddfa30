#include "tests/support/run_out.h"

#include "document/document.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Memory runs out while documents are saved. The reason says so, the files are old or new, and nothing leaks.

namespace {

using namespace bk_parser;

// Each request takes a save of its own. On Windows, files take ten times as long, and little of the code
// differs. Some of the requests are enough to show that this code frees everything.
#ifdef _WIN32
constexpr std::size_t step = 7;
#else
constexpr std::size_t step = 1;
#endif

class MemoryOutOfSaves : public testing::TestWithParam<bool> {
protected:
    /// Lets request 1, 2, 3 ... of a save fail, until the save makes fewer requests.
    void expect_saving(const SaveOptions& options) const {
        const std::string old_main = "#Brellwick_Serial_Version 1.2\na 1\n#include \"part\"\n" + scene();
        const std::string old_part = "b 1 // and a comment\n";
        const std::filesystem::path path(folder_.path("main"));
        constexpr std::size_t more_than_any_needs = 20000;
        for (std::size_t n = 1; n < more_than_any_needs; n += step) {
            folder_.write("main", old_main);
            folder_.write("part", old_part);
            bool has_failed = false;
            const long live = FailingMemory::live();
            std::optional<LoadResult> held(load(path));
            LoadResult& loaded = *held;
            loaded.document.root().get_entry("a")->set_int(2, 0);
            loaded.document.root().get_entry("b")->set_int(2, 0);
            {
                const CountingLog log;
                FailingMemory::fail_at(n, GetParam());
                const SaveResult result = save(loaded.document, path, options);
                has_failed = FailingMemory::disarm();
                const bool is_old = folder_.read("main") == old_main && folder_.read("part") == old_part;
                EXPECT_TRUE(result.ok() || is_old) << n << ": " << result.reason;
                EXPECT_TRUE(result.ok() || !result.reason.empty());
                EXPECT_TRUE(result.ok() || has_failed) << n << ": " << result.reason;
                EXPECT_TRUE(!result.ok() || folder_.read("main") != old_main) << n;
                if (result.ok() && !options.form) {
                    const auto saved = load(path);
                    EXPECT_EQ(print(saved.document.root()), print(loaded.document.root())) << n;
                }
            }
            held.reset();
            EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
            if (!has_failed || HasFailure()) {
                return;
            }
        }
        FAIL();
    }

    /// Lets request 1, 2, 3 ... of `operate` fail, each time on a new document, until it makes fewer
    /// requests.
    void run_out_of_save(const std::function<std::unique_ptr<LoadResult>()>& make,
                         const std::function<SaveResult(Document&)>& operate,
                         const std::function<void(bool)>& look) const {
        constexpr std::size_t more_than_any_needs = 20000;
        for (std::size_t n = 1; n < more_than_any_needs; n += step) {
            const long live = FailingMemory::live();
            std::unique_ptr<LoadResult> held = make();
            bool has_failed = false;
            bool is_ok = false;
            {
                const CountingLog log;
                FailingMemory::fail_at(n, GetParam());
                const SaveResult result = operate(held->document);
                has_failed = FailingMemory::disarm();
                is_ok = result.ok();
                EXPECT_TRUE(is_ok || has_failed) << n << ": " << result.reason;
            }
            held.reset();
            look(is_ok);
            EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
            if (!has_failed || HasFailure()) {
                EXPECT_GT(n, 1u) << "nothing was asked for";
                return;
            }
        }
        FAIL();
    }

    const ScratchFolder folder_;
};

using memory_out_of_saves = MemoryOutOfSaves;

} // namespace

TEST_P(memory_out_of_saves, while_a_layout_is_kept) {
    expect_saving({});
}

TEST_P(memory_out_of_saves, while_each_form_is_saved_anew) {
    for (const Form form : {Form::text, Form::enciphered, Form::archive}) {
        SaveOptions options;
        options.form = form;
        options.key = "key";
        options.keep_layout = false;
        expect_saving(options);
    }
}

TEST_P(memory_out_of_saves, while_a_form_takes_losses) {
    for (const Form form : {Form::text, Form::enciphered, Form::binary, Form::archive}) {
        const std::filesystem::path path(folder_.path("lossy"));
        SaveOptions options;
        options.form = form;
        options.key = "key";
        options.lossy = true;
        LoadOptions reading;
        reading.key = "key";
        std::size_t whole = 0;
        run_out_of_save(
            [&] {
                folder_.write("lossy", "old");
                auto made = std::make_unique<LoadResult>(parse(scene()));
                made->document.root().add_entry("z", 0, 0)->add_char('x');
                made->document.root().get_entry("last")->set_template("t"); // the binary form cannot carry it
                return made;
            },
            [&](Document& document) { return save(document, path, options); },
            [&](bool is_saved) {
                if (!is_saved) {
                    EXPECT_EQ(folder_.read("lossy"), "old");
                    return;
                }
                const LoadResult again = load(path, reading);
                const std::size_t size = print(again.document.root()).size();
                whole = whole == 0 ? size : whole;
                EXPECT_EQ(size, whole);
                EXPECT_GT(size, 500u);
            });
    }
}

TEST_P(memory_out_of_saves, while_a_save_is_previewed) {
    folder_.write("main", "#Brellwick_Serial_Version 1.2\na 1\n#include \"part\"\n" + scene());
    folder_.write("part", "b 1 // and a comment\n");
    SavePreview whole;
    const auto changed = [&] {
        auto made = std::make_unique<LoadResult>(load(folder_.path("main")));
        made->document.root().get_entry("a")->set_int(2, 0);
        made->document.root().get_entry("b")->set_int(2, 0);
        return made;
    };
    whole = preview_save(changed()->document);
    ASSERT_EQ(whole.changes.size(), 2u);
    SavePreview preview;
    run_out_of_save(
        changed,
        [&](Document& document) {
            preview = preview_save(document);
            SaveResult result;
            result.reason = preview.reason;
            return result;
        },
        [&](bool is_made) {
            ASSERT_EQ(preview.changes.size(), is_made ? 2u : 0u);
            for (std::size_t i = 0; i < preview.changes.size(); ++i) {
                EXPECT_EQ(preview.changes[i].after, whole.changes[i].after);
                EXPECT_EQ(preview.changes[i].before, whole.changes[i].before);
            }
            preview = SavePreview();
        });
}

TEST_P(memory_out_of_saves, while_files_are_replaced_by_name) {
    const std::filesystem::path path(folder_.path("main"));
    const std::string text(100000, 'x');
    const std::vector<FileChange> changes{{path, "old", text, true}, {folder_.path("made"), "", text, false}};
    for (const bool is_single : {true, false}) {
        run_out_of_save(
            [&] {
                folder_.write("main", "old");
                std::filesystem::remove(folder_.path("made"));
                return std::make_unique<LoadResult>();
            },
            [&](Document&) {
                SaveResult result;
                result.reason = is_single ? replace_file(path, text) : replace_files(changes);
                return result;
            },
            [&](bool is_saved) {
                EXPECT_EQ(folder_.read("main"), is_saved ? text : "old");
                EXPECT_EQ(std::filesystem::exists(folder_.path("made")), is_saved && !is_single);
            });
    }
}

INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out_of_saves, testing::Bool());
