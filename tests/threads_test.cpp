#include "document/access.h"
#include "document/document.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "parser/parser_word.h"
#include "tests/support/recording_log.h"
#include "tests/support/saved_forms.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// Only one thread at a time may use a tree. Different trees may be in use on any number of threads. The
// thread sanitizer checks these tests, too.

namespace {

constexpr int thread_count = 8;

/// Runs the action on eight threads that begin at the same time.
void on_all_threads(const std::function<void(int)>& action) {
    std::barrier start(thread_count);
    std::vector<std::thread> threads;
    for (int i = 0; i < thread_count; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            action(i);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

CoreString scene(int seed) {
    CoreString text("#key \"word\" ");
    for (int i = 0; i < 200; ++i) {
        text += "object<plastic> { number ";
        text += i + seed;
        text += " at 0.5 1e3 0x1p4 call(1, \"two\") data 0x01020306000000 long \"a text that needs a block "
                "of its own\" } ";
    }
    return text;
}

/// Counts messages from any thread.
class CountingLog : public CoreLogHandler {
public:
    CountingLog() : previous_(s_main_log_handler) { s_main_log_handler = this; }
    ~CountingLog() override { s_main_log_handler = previous_; }
    CountingLog(const CountingLog&) = delete;
    CountingLog& operator=(const CountingLog&) = delete;

    void log(const int&, const CoreLogStream&) override { ++count; }

    std::atomic<int> count = 0;

private:
    CoreLogHandler* previous_;
};

} // namespace

// Must be the first test: eight threads at once make what the library makes at its first use.
TEST(threads, the_first_use_of_everything_may_happen_on_all_threads_at_once) {
    const ScratchFolder folder;
    std::atomic<int> whole = 0;
    on_all_threads([&](int i) {
        const CoreString text(
            "#version 1.2 a 1.25 b<t> yes c[2] \"x\\n\" d 0x01020306000000 e(1, 2) f { g 1e300 } ");
        ParserGroup group("root");
        const bool is_clean = group.set_text(text, default_parser_serial_version, nullptr);
        const ParserWord word(text, true, CoreVersion(1.2));
        static_cast<void>(word.is_identifier());
        static_cast<void>(word.is_binary_data());
        ParserArchive archive;
        ParserImpl::archive_group(group, archive, false, nullptr);
        CoreString digits;
        group.get_encrypted_text(digits, "key", false, false, 1);
        const CoreVector<char> data = group.get_binary(true);
        const CoreString path = folder.core_path(std::to_string(i));
        const bool is_saved = ParserImpl::save_archive(archive, path, nullptr).is_empty();
        static_cast<void>(CoreString::get_null_string());
        static_cast<void>(ParserValue::get_type_name(ParserValue::TYPE_WORD));
        whole += is_clean && is_saved && data.get_count() > 100 && digits.get_length() > 100 ? 1 : 0;
    });
    EXPECT_EQ(whole, thread_count);
}

TEST(threads, each_thread_has_documents_of_its_own) {
    std::vector<std::string> printed_texts(thread_count);
    on_all_threads([&](int i) {
        for (int round = 0; round < 5; ++round) {
            ParserGroup group("root");
            group.set_text(scene(i), default_parser_serial_version, nullptr);
            const ParserGroup copy(group);
            group.remove_entry("object");
            const CoreVector<char> data = copy.get_binary(false);
            core_uint64 position = 0;
            group.set_binary(data, position);
            printed_texts[static_cast<std::size_t>(i)] = printed(copy);
        }
    });
    for (int i = 0; i < thread_count; ++i) {
        ParserGroup group("root");
        group.set_text(scene(i), default_parser_serial_version, nullptr);
        EXPECT_EQ(printed_texts[static_cast<std::size_t>(i)], printed(group)) << i;
    }
}

TEST(threads, every_form_is_saved_and_loaded_on_each_thread) {
    const ScratchFolder folder;
    std::atomic<int> whole = 0;
    on_all_threads([&](int i) {
        ParserFile file{CoreString()};
        file.get_root().set_text(scene(i), default_parser_serial_version, nullptr);
        for (const SavedForm& form : saved_forms()) {
            const CoreString path = folder.core_path(form.name + std::to_string(i));
            ParserGroup root("root");
            whole += form.save(file, path) && form.load(root, path) ? 1 : 0;
        }
    });
    EXPECT_EQ(whole, thread_count * static_cast<int>(saved_forms().size()));
    EXPECT_EQ(folder.count(), static_cast<std::size_t>(thread_count) * saved_forms().size());
}

TEST(threads, documents_are_loaded_changed_and_saved_keeping_their_layout_on_each_thread) {
    const ScratchFolder folder;
    std::atomic<int> whole = 0;
    on_all_threads([&](int i) {
        const std::string name = std::to_string(i);
        const std::string path =
            folder.write(name, "// about a\na 1 // one\n#include \"" + name + ".part\"\n");
        folder.write(name + ".part", "g {\n  b 1\n}\n");
        for (int round = 0; round < 5; ++round) {
            bk_parser::LoadResult loaded = bk_parser::load(path);
            const bool is_set = bk_parser::set(loaded.document.root(), "a", round) &&
                                bk_parser::set(loaded.document.root(), "g/b", i);
            whole += is_set && loaded.ok() && bk_parser::save(loaded.document).ok() ? 1 : 0;
        }
    });
    EXPECT_EQ(whole, thread_count * 5);
    for (int i = 0; i < thread_count; ++i) {
        const std::string name = std::to_string(i);
        EXPECT_EQ(folder.read(name), "// about a\na 4 // one\n#include \"" + name + ".part\"\n");
        EXPECT_EQ(folder.read(name + ".part"), "g {\n  b " + name + "\n}\n");
    }
}

TEST(threads, all_threads_may_save_to_one_name_and_one_of_the_documents_is_there) {
    const ScratchFolder folder;
    const CoreString path = folder.core_path("document");
    on_all_threads([&](int i) {
        ParserFile file{CoreString()};
        file.get_root().set_text(scene(i), default_parser_serial_version, nullptr);
        file.write(ParserFile::MODE_TEXT, path, "");
    });
    EXPECT_EQ(folder.count(), 1u);
    ParserFile file{CoreString()};
    ASSERT_TRUE(file.read(path, "", nullptr));
    const std::string got = printed(file.get_root());
    int matches = 0;
    for (int i = 0; i < thread_count; ++i) {
        ParserGroup group("root");
        group.set_text(scene(i), default_parser_serial_version, nullptr);
        matches += printed(group) == got ? 1 : 0;
    }
    EXPECT_EQ(matches, 1);
}

TEST(threads, objects_made_on_one_thread_are_changed_and_destroyed_on_another) {
    std::vector<std::unique_ptr<ParserGroup>> groups(thread_count);
    on_all_threads([&](int i) {
        auto group = std::make_unique<ParserGroup>("root");
        group->set_text(scene(i), default_parser_serial_version, nullptr);
        groups[static_cast<std::size_t>(i)] = std::move(group);
    });
    on_all_threads([&](int i) {
        std::unique_ptr<ParserGroup>& group = groups[static_cast<std::size_t>((i + 1) % thread_count)];
        group->add_entry("added", 0, 0)->add_string("on another thread than the one that made the group");
        group->remove_entry("#key");
        EXPECT_EQ(group->get_entry_count(), 201u);
        group.reset();
    });
}

TEST(threads, single_entries_wander_from_thread_to_thread) {
    std::mutex mutex;
    std::vector<std::unique_ptr<ParserEntry>> pool;
    std::atomic<int> made = 0;
    on_all_threads([&](int i) {
        for (int round = 0; round < 2000; ++round) {
            std::unique_ptr<ParserEntry> mine;
            {
                const std::lock_guard lock(mutex);
                if (!pool.empty() && (round + i) % 2 == 0) {
                    mine = std::move(pool.back());
                    pool.pop_back();
                }
            }
            if (mine == nullptr) {
                mine = std::make_unique<ParserEntry>("wanderer", ParserEntry::TYPE_ENTRY, 0, 0);
                ++made;
            }
            mine->add_string("a text that is long enough for a block of its own");
            if (mine->get_value_count() < 5) {
                const std::lock_guard lock(mutex);
                pool.push_back(std::move(mine));
            }
        }
    });
    EXPECT_GT(made, thread_count);
}

TEST(threads, one_tree_may_be_read_by_all_once_its_numbers_are_converted) {
    ParserGroup group("root");
    group.set_text(scene(0), default_parser_serial_version, nullptr);
    const std::string expected = printed(group);
    const unsigned int size = group.get_binary(false).get_count(); // converts every number
    std::atomic<int> same = 0;
    on_all_threads([&](int) {
        const ParserGroup& shared = group;
        same += printed(shared) == expected && shared.get_binary(false).get_count() == size &&
                        shared.get_entries("number", true).get_count() == 200
                    ? 1
                    : 0;
    });
    EXPECT_EQ(same, thread_count);
}

TEST(threads, strings_of_one_tree_may_be_asked_for_by_all) {
    for (int round = 0; round < 50; ++round) { // each round begins with strings that no thread has asked for
        ParserEntry entry("e", ParserEntry::TYPE_ENTRY, 0, 0);
        entry.add_string("short");
        entry.add_string("a string that is long enough for a block of its own");
        const CoreString* seen[thread_count] = {};
        on_all_threads([&](int i) {
            const ParserEntry& shared = entry;
            seen[i] = &shared.get_string(1);
            EXPECT_EQ(shared.get_string(0), "short");
        });
        entry.add_int(1);
        for (const CoreString* string : seen) {
            EXPECT_EQ(string, &entry.get_string(1));
        }
    }
}

TEST(threads, a_frozen_tree_may_be_asked_by_all_at_once) {
    ParserGroup group("root");
    group.set_text(scene(0), default_parser_serial_version, nullptr);
    bk_parser::freeze(group);
    const bk_parser::Path path("**/object[number>=0]/at@1");
    std::atomic<int> same = 0;
    on_all_threads([&](int) {
        double sum = 0.0;
        for (const bk_parser::Visit& visit : bk_parser::find_visits(group, path)) {
            sum += bk_parser::get_or(visit.entry(), visit.value(), 0.0);
        }
        for (const bk_parser::Visit& visit : bk_parser::walk(group)) {
            for (const double number : bk_parser::values<double>(visit.entry())) {
                sum += number;
            }
        }
        const bool is_said = bk_parser::to_text(group).size() > 1000;
        same += is_said && sum == 200 * 1000 + 199 * 100 + 200 * (0.5 + 1000 + 1) ? 1 : 0;
    });
    EXPECT_EQ(same, thread_count);
}

TEST(threads, faults_are_logged_from_every_thread) {
    CountingLog log;
    on_all_threads([](int) {
        ParserGroup group("root");
        for (int round = 0; round < 100; ++round) {
            group.set_text("1 2 a 1 ", default_parser_serial_version, nullptr);
        }
    });
    EXPECT_EQ(log.count, thread_count * 200);
}

TEST(threads, a_thread_that_ends_leaves_its_memory_to_those_that_begin) {
    for (int round = 0; round < 20; ++round) {
        std::unique_ptr<ParserGroup> group;
        std::thread([&] {
            group = std::make_unique<ParserGroup>("root");
            group->set_text(scene(round), default_parser_serial_version, nullptr);
        }).join();
        std::thread([&] { EXPECT_EQ(group->get_entry_count(), 200u); }).join();
        group.reset();
    }
}
