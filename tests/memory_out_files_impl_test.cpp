#include "tests/support/run_out.h"

#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

// Memory runs out while documents are read from files, and while they are saved.

namespace {

class MemoryOutOfFiles : public MemoryOut {
protected:
    void SetUp() override {
        MemoryOut::SetUp();
        folder_.write("part.bkd", "part 1 // and a comment\n");
        folder_.write("main.bkd", "#Brellwick_Serial_Version 1.2\n#include \"part.bkd\"\n" + scene());
        paths_.add(CoreString("/nowhere/that/there/is/a/folder"));
        paths_.add(folder_.core_path(""));
    }
    void expect_reading(const char* name, const char* key) const {
        const CoreString path = folder_.core_path(name);
        std::unique_ptr<ParserFile> file;
        ParserFile source{CoreString()};
        source.set_search_paths(paths_);
        ASSERT_TRUE(source.read(path, key, nullptr));
        const std::string whole = print(source.get_root());
        run_out_everywhere(
            GetParam(),
            [&] {
                file = std::make_unique<ParserFile>(CoreString());
                file->set_search_paths(paths_);
            },
            [&] { return file->read(path, key, nullptr); },
            [&](bool is_whole) {
                EXPECT_EQ(file->get_serial_version().get_value(), is_whole ? 1.2 : 0.0);
                EXPECT_TRUE(!is_whole || print(file->get_root()) == whole);
                file->clear();
                EXPECT_TRUE(file->read(path, key, nullptr)) << "the file can be read later";
                EXPECT_EQ(print(file->get_root()), whole);
            },
            [&] { file.reset(); });
    }
    /// Saves in place of an old file.
    void expect_saving(const std::function<void(ParserFile&, const CoreString&)>& save) const {
        const CoreString path = folder_.core_path("out");
        std::unique_ptr<ParserFile> file;
        const auto make_file = [&] {
            file = std::make_unique<ParserFile>(CoreString());
            file->get_root().set(tree_);
        };
        make_file();
        save(*file, path);
        file.reset();
        const std::string whole = folder_.read("out");
        ASSERT_GT(whole.size(), 500u);
        const std::size_t files = folder_.count();
        run_out_everywhere(
            GetParam(),
            [&] {
                make_file();
                folder_.write("out", "the old document");
            },
            [&] {
                save(*file, path);
                FailingMemory::pause();
                const bool is_whole = folder_.read("out") == whole;
                return is_whole;
            },
            [&](bool is_whole) {
                EXPECT_EQ(folder_.read("out"), is_whole ? whole : "the old document");
                EXPECT_EQ(folder_.count(), files) << "nothing stands beside it";
            },
            [&] { file.reset(); });
    }

    const ScratchFolder folder_;
    CoreVector<CoreString> paths_;
};

using memory_out_of_files = MemoryOutOfFiles;

} // namespace

TEST_P(memory_out_of_files, while_a_document_with_an_include_is_read) {
    expect_reading("main.bkd", "");
}

TEST_P(memory_out_of_files, while_an_enciphered_document_is_read) {
    ParserFile file(CoreString{});
    file.get_root().set(tree_);
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder_.core_path("cipher.bkd"), "key"));
    expect_reading("cipher.bkd", "key");
}

TEST_P(memory_out_of_files, while_a_binary_document_is_read) {
    ParserFile source(CoreString{});
    source.get_root().set(tree_);
    const CoreVector<char> data = source.get_binary();
    std::unique_ptr<ParserFile> file;
    run_out_everywhere(
        GetParam(), [&] { file = std::make_unique<ParserFile>(CoreString()); },
        [&] { return file->set_binary(data); }, [](bool) {}, [&] { file.reset(); });
}

TEST_P(memory_out_of_files, while_an_archive_is_loaded) {
    ParserArchive source;
    ParserImpl::archive_group(tree_, source, false, nullptr);
    const CoreString path = folder_.core_path("scene.archive");
    ASSERT_TRUE(ParserImpl::save_archive(source, path, nullptr).is_empty());
    expect_making<ParserArchive>(
        [&](ParserArchive& archive) { return ParserImpl::load_archive(archive, path, nullptr).is_empty(); },
        [&](const ParserArchive& archive, bool is_whole) {
            if (is_whole) {
                EXPECT_EQ(archive.strings.get_count(), source.strings.get_count());
                EXPECT_EQ(archive.indices.get_count(), source.indices.get_count());
            }
        });
}

TEST_P(memory_out_of_files, while_each_form_is_saved) {
    expect_saving(
        [](ParserFile& file, const CoreString& path) { file.write(ParserFile::MODE_TEXT, path, ""); });
    expect_saving(
        [](ParserFile& file, const CoreString& path) { file.write(ParserFile::MODE_TEXT, path, "key"); });
    expect_saving(
        [](ParserFile& file, const CoreString& path) { file.write(ParserFile::MODE_BINARY, path, ""); });
    ParserArchive archive;
    ParserImpl::archive_group(tree_, archive, false, nullptr);
    expect_saving(
        [&](ParserFile&, const CoreString& path) { ParserImpl::save_archive(archive, path, nullptr); });
}

TEST_P(memory_out_of_files, while_a_file_object_is_made) {
    std::unique_ptr<ParserFile> file;
    const CoreString path = folder_.core_path("main.bkd");
    for (std::size_t n = 1;; ++n) {
        const long live = FailingMemory::live();
        FailingMemory::fail_at(n, GetParam());
        try {
            file = std::make_unique<ParserFile>(path);
        } catch (const std::bad_alloc&) { // a constructor can report it only by an exception
            EXPECT_EQ(file, nullptr);
        }
        const bool has_failed = FailingMemory::disarm();
        file.reset();
        EXPECT_EQ(FailingMemory::live(), live) << n;
        if (!has_failed) {
            EXPECT_GT(n, 3u);
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out_of_files, testing::Bool());
