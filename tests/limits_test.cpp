#include "parser/parser_limits.h"

#include "tests/support/archive_form.h"
#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace archive_form;
using Messages = std::vector<std::string>;

Reading read_within(const DocumentFolder& folder, const ParserLimits& limits) {
    ParserFile file(core(folder.path("main.bkd")));
    file.set_search_paths({core(folder.path())});
    file.set_limits(limits);
    return DocumentFolder::read_into(file, "");
}

/// `depth` nested groups, with an entry before each.
std::string nested(int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) {
        text += "a 1 g { ";
    }
    for (int i = 0; i < depth; ++i) {
        text += "} ";
    }
    return text;
}

std::string print(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

struct Parsing {
    bool result;
    std::string tree;
    Messages messages;
};

Parsing parse_within(const std::string& text, const ParserLimits& limits,
                     ParserReadObserver* observer = nullptr) {
    RecordingLog log;
    ParserGroup group("root");
    const bool result = group.set_text(core(text), default_parser_serial_version, nullptr, observer, limits);
    Messages messages;
    for (const LoggedMessage& message : log.messages) {
        messages.push_back(message.text);
    }
    return {result, print(group), messages};
}

/// An archive of one word with `count` indices.
ParserArchive repeated(const std::string& word, unsigned int count) {
    return archive({word}, Indices(count, 0));
}

} // namespace

// Includes

TEST(limits, a_chain_of_includes_may_be_as_deep_as_the_host_says) {
    const DocumentFolder folder;
    folder.write("main.bkd", "#include \"1.bkd\"\n");
    folder.write("1.bkd", "#include \"2.bkd\"\n");
    folder.write("2.bkd", "a 1\n");
    ParserLimits limits;
    limits.include_depth = 2;
    EXPECT_EQ(read_within(folder, limits).tree, " a 1");
    limits.include_depth = 1;
    const Reading refused = read_within(folder, limits);
    EXPECT_FALSE(refused.result);
    EXPECT_EQ(refused.messages, Messages{"File '2.bkd' is included too deeply.\n"});
}

TEST(limits, a_chain_of_three_thousand_includes_costs_no_stack) {
    constexpr int depth = 3000;
    const DocumentFolder folder;
    for (int i = 1; i < depth; ++i) {
        folder.write(std::to_string(i), "#include \"" + std::to_string(i + 1) + "\"");
    }
    folder.write(std::to_string(depth), "a 1");
    folder.write("main.bkd", "#include \"1\"");
    ParserLimits limits;
    limits.include_depth = depth;
    EXPECT_EQ(read_within(folder, limits).tree, " a 1");
}

TEST(limits, includes_are_counted_as_often_as_they_are_named) {
    const DocumentFolder folder;
    folder.write("main.bkd", "#include \"x.bkd\"#include \"x.bkd\"#include \"x.bkd\"");
    folder.write("x.bkd", "a 1\n");
    ParserLimits limits;
    limits.include_count = 3;
    EXPECT_EQ(read_within(folder, limits).tree, " a 1 a 1 a 1");
    limits.include_count = 2;
    const Reading refused = read_within(folder, limits);
    EXPECT_FALSE(refused.result);
    EXPECT_EQ(refused.version, 0.0);
    EXPECT_EQ(refused.tree, "");
    EXPECT_EQ(refused.messages, Messages{"File 'x.bkd' is one include too many.\n"});
}

TEST(limits, files_that_double_the_includes_at_every_step_come_to_an_end) {
    const DocumentFolder folder;
    for (int i = 0; i < 60; ++i) {
        const std::string next = "#include \"" + std::to_string(i + 1) + ".bkd\"";
        folder.write(std::to_string(i) + ".bkd", next + next);
    }
    folder.write("60.bkd", "");
    folder.write("main.bkd", "#include \"0.bkd\"");
    ParserLimits limits;
    limits.include_count = 1000;
    const Reading refused = read_within(folder, limits);
    EXPECT_FALSE(refused.result);
    ASSERT_EQ(refused.messages.size(), 1u);
    EXPECT_TRUE(refused.messages[0].ends_with(" is one include too many.\n")) << refused.messages[0];
    EXPECT_EQ(ParserLimits().include_count, 1000000u) << "and so it is without being asked for";
}

TEST(limits, the_bytes_of_all_files_are_counted_with_their_comments) {
    const DocumentFolder folder;
    folder.write("x.bkd", "// ten more"); // 11 bytes
    const std::string text = "a 1 #include \"x.bkd\"\n#include \"x.bkd\"\n";
    folder.write("main.bkd", text);
    ParserLimits limits;
    limits.source_size = text.size() + 22;
    EXPECT_EQ(read_within(folder, limits).tree, " a 1");
    --limits.source_size;
    const Reading refused = read_within(folder, limits);
    EXPECT_FALSE(refused.result);
    EXPECT_EQ(refused.messages, Messages{"File 'x.bkd' is too large.\n"});
}

TEST(limits, the_expanded_text_may_be_as_large_as_the_host_says) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2 ");
    folder.write("main.bkd", "a 1 #include \"x.bkd\"#include \"x.bkd\"");
    ParserLimits limits;
    limits.expanded_size = 12;
    EXPECT_EQ(read_within(folder, limits).tree, " a 1 b 2 b 2");
    limits.expanded_size = 11;
    const Reading refused = read_within(folder, limits);
    EXPECT_FALSE(refused.result);
    EXPECT_EQ(refused.messages, Messages{"File 'x.bkd' is too large.\n"});
}

// Depth

TEST(limits, groups_may_nest_as_deep_as_the_host_says) {
    ParserLimits limits;
    limits.nesting_depth = 3;
    const Parsing parsed = parse_within(nested(3), limits);
    EXPECT_EQ(parsed.messages, Messages{});
    EXPECT_EQ(parsed.tree, " a 1 g { a 1 g { a 1 g { } } }");
}

TEST(limits, a_group_too_deep_ends_the_parse_and_what_was_read_before_stays) {
    ParserLimits limits;
    limits.nesting_depth = 2;
    const Parsing parsed = parse_within(nested(3) + "b 2 ", limits);
    EXPECT_FALSE(parsed.result);
    EXPECT_EQ(parsed.messages,
              Messages{"ParserGroup.set_text: (1:22) Group is nested too deeply: the text from "
                       "here on is not read\n"});
    EXPECT_EQ(parsed.tree, " a 1 g { a 1 g { a 1 } }");
}

TEST(limits, a_depth_of_zero_refuses_every_group) {
    ParserLimits limits;
    limits.nesting_depth = 0;
    EXPECT_EQ(parse_within("a 1 b 2 g { } ", limits).tree, " a 1 b 2");
}

TEST(limits, a_file_with_a_group_too_deep_is_not_read) {
    const DocumentFolder folder;
    folder.write("main.bkd", nested(2));
    ParserLimits limits;
    limits.nesting_depth = 1;
    const Reading reading = read_within(folder, limits);
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.version, 0.0);
    EXPECT_EQ(reading.tree, " a 1 g { a 1 }");
}

TEST(limits, an_observer_is_told_where_the_group_too_deep_stands) {
    class Observer : public ParserReadObserver {
    public:
        void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                         const CoreString& message) override {
            seen += std::to_string(fault) + " " + std::to_string(expanded) + "+" + std::to_string(length) +
                    " " + plain(message) + ";";
        }
        std::string seen;
    };
    ParserLimits limits;
    limits.nesting_depth = 1;
    Observer observer;
    parse_within("a { b { c 1 } } ", limits, &observer);
    EXPECT_EQ(observer.seen, std::to_string(ParserReadObserver::FAULT_NESTED_TOO_DEEPLY) +
                                 " 6+1 Group is nested too deeply: the text from here on is not read;");
}

TEST(limits, binary_data_may_nest_as_deep_as_the_host_says) {
    ParserFile file{CoreString()};
    file.get_root().set_text(core(nested(3)), default_parser_serial_version, nullptr);
    const CoreVector<char> data = file.get_binary();
    ParserFile again{CoreString()};
    ParserLimits limits;
    limits.nesting_depth = 3;
    again.set_limits(limits);
    EXPECT_TRUE(again.set_binary(data));
    EXPECT_EQ(print(again.get_root()), " a 1 g { a 1 g { a 1 g { } } }");
}

TEST(limits, binary_data_that_nests_deeper_is_read_as_far_as_it_is_allowed) {
    ParserFile file{CoreString()};
    file.get_root().set_text(core(nested(3) + "b 2 "), default_parser_serial_version, nullptr);
    const CoreVector<char> data = file.get_binary();
    ParserFile again{CoreString()};
    ParserLimits limits;
    limits.nesting_depth = 2;
    again.set_limits(limits);
    RecordingLog log;
    EXPECT_FALSE(again.set_binary(data));
    EXPECT_EQ(log.messages, one_warning("ParserGroup.set_binary: Group is nested too deeply\n"));
    EXPECT_EQ(print(again.get_root()), " a 1 g { a 1 g { a 1 } }");
}

// Archives

TEST(limits, an_archive_may_always_make_a_text_of_the_free_size) {
    ParserLimits limits;
    limits.archive_ratio = 1;
    limits.archive_free_size = 40;
    CoreString text;
    EXPECT_TRUE(ParserImpl::get_archive_text(repeated("abc", 10), text, limits));
    EXPECT_EQ(plain(text), "abc abc abc abc abc abc abc abc abc abc ");
    limits.archive_free_size = 39;
    EXPECT_FALSE(ParserImpl::get_archive_text(repeated("abc", 10), text, limits));
    EXPECT_EQ(text.get_length(), 40u) << "it stays as it was";
}

TEST(limits, beyond_that_the_text_is_measured_by_the_file_of_the_archive) {
    // 20 bytes of frame, 4 of the string and 136 of indices are 160 bytes. The text has 544 bytes, 3.4 times
    // as many.
    const ParserArchive archive = repeated("abc", 136);
    ASSERT_EQ(file({"abc"}, Indices(136, 0)).size(), 160u);
    ParserLimits limits;
    limits.archive_free_size = 0;
    CoreString text;
    limits.archive_ratio = 4;
    EXPECT_TRUE(ParserImpl::get_archive_text(archive, text, limits));
    limits.archive_ratio = 3;
    EXPECT_FALSE(ParserImpl::get_archive_text(archive, text, limits));
}

TEST(limits, a_text_of_just_the_ratio_is_within_it) {
    ParserLimits limits;
    limits.archive_free_size = 0;
    CoreString text;
    const Indices indices(8, 0);
    // With a word of 27 letters, the file has 20 + 28 + 8 = 56 bytes, and the text has 8 * 28 = 224 = 4 * 56.
    limits.archive_ratio = 4;
    EXPECT_TRUE(ParserImpl::get_archive_text(archive({std::string(27, 'x')}, indices), text, limits));
    // With one letter more, the file has 57 bytes, and the text has 232, which is more than 4 * 57 = 228.
    EXPECT_FALSE(ParserImpl::get_archive_text(archive({std::string(28, 'x')}, indices), text, limits));
}

TEST(limits, no_archive_makes_more_than_the_absolute_size) {
    ParserLimits limits;
    limits.archive_size = 40;
    CoreString text;
    EXPECT_TRUE(ParserImpl::get_archive_text(repeated("abc", 10), text, limits));
    EXPECT_FALSE(ParserImpl::get_archive_text(repeated("abc", 11), text, limits));
}

TEST(limits, a_small_archive_does_not_become_gigabytes) {
    // An archive of 1.1 MiB with a text of 1 GiB.
    const ParserArchive bomb = repeated(std::string(1023, 'x'), 1u << 20);
    RecordingLog log;
    ParserGroup group("root");
    EXPECT_FALSE(ParserImpl::group_set_archive(group, bomb, nullptr, ParserLimits::untrusted()));
    EXPECT_EQ(log.messages, one_warning("ParserImpl.group_set_archive: text too large\n"));
    EXPECT_EQ(group.get_entries().get_count(), 0u);
}

TEST(limits, a_scene_of_ten_thousand_like_objects_is_far_from_every_limit_of_archives) {
    std::string text;
    for (int i = 0; i < 10000; ++i) {
        text += "object" + std::to_string(i) + " { material \"shared/materials/grey_plastic\" at 1 2 3 } ";
    }
    ParserGroup group("root");
    group.set_text(core(text), default_parser_serial_version, nullptr);
    ParserArchive archive;
    ParserImpl::archive_group(group, archive, false, nullptr);
    ParserLimits limits;
    limits.archive_free_size = 0;
    limits.archive_ratio = 20;
    CoreString made;
    EXPECT_TRUE(ParserImpl::get_archive_text(archive, made, limits));
    EXPECT_LT(limits.archive_ratio, ParserLimits::untrusted().archive_ratio);
}

TEST(limits, an_archive_that_was_saved_is_read_back_by_default_whatever_its_ratio) {
    // A file of 90 KB gives a text of 80 MiB, which is more than untrusted files may have.
    ParserGroup group("root");
    ParserEntry* const entry = group.add_entry("a", 0, 0);
    const CoreString word(std::string(999, 'x'));
    for (unsigned int i = 0; i < 84000; ++i) {
        entry->add_string(word);
    }
    const ScratchFolder folder;
    ParserArchive saved;
    ParserImpl::archive_group(group, saved, false, nullptr);
    ASSERT_EQ(plain(ParserImpl::save_archive(saved, folder.core_path("a.kwaf"), nullptr)), "");
    ASSERT_LT(folder.read("a.kwaf").size(), 90000u);
    ParserArchive loaded;
    ASSERT_EQ(plain(ParserImpl::load_archive(loaded, folder.core_path("a.kwaf"), nullptr)), "");
    ParserGroup again("root");
    ParserImpl::group_set_archive(again, loaded, nullptr);
    ASSERT_EQ(again.get_entries().get_count(), 1u);
    EXPECT_EQ(again.get_entry(0)->get_value_count(), 84000u);
    CoreString text;
    EXPECT_TRUE(ParserImpl::get_archive_text(loaded, text, ParserLimits()));
    EXPECT_FALSE(ParserImpl::get_archive_text(loaded, text, ParserLimits::untrusted()));
}

TEST(limits, documents_of_strangers_are_bounded_in_what_their_archives_become) {
    const ParserLimits defaults;
    EXPECT_GE(defaults.archive_size, core_uint64{CoreString::max_length});
    const ParserLimits untrusted = ParserLimits::untrusted();
    EXPECT_EQ(untrusted.archive_ratio, 256u);
    EXPECT_EQ(untrusted.archive_free_size, core_uint64{64} << 20);
    EXPECT_EQ(untrusted.archive_size, core_uint64{2} << 30);
    EXPECT_EQ(untrusted.include_count, 100000u);
    EXPECT_EQ(untrusted.source_size, defaults.source_size);
}

TEST(limits, an_archive_is_read_within_the_limits_that_it_is_given) {
    const ParserArchive document = archive({"a", "{", "}"}, {0, 1, 0, 1, 2, 2});
    RecordingLog log;
    ParserGroup group("root");
    EXPECT_TRUE(ParserImpl::group_set_archive(group, document, nullptr, ParserLimits()));
    EXPECT_EQ(print(group), " a { a { } }");
    ParserLimits limits;
    limits.nesting_depth = 1;
    ParserGroup shallow("root");
    EXPECT_FALSE(ParserImpl::group_set_archive(shallow, document, nullptr, limits));
    EXPECT_EQ(print(shallow), " a { }");
    limits.archive_size = 3;
    EXPECT_FALSE(ParserImpl::group_set_archive(shallow, document, nullptr, limits));
    EXPECT_EQ(log.messages.size(), 2u);
}

TEST(limits, a_fault_of_the_syntax_is_no_failure_of_an_archive) {
    RecordingLog log;
    ParserGroup group("root");
    EXPECT_TRUE(ParserImpl::group_set_archive(group, archive({"1"}, {0}), nullptr, ParserLimits()));
    EXPECT_EQ(log.messages.size(), 1u);
}

// Messages

TEST(limits, every_fault_is_logged_when_nothing_else_is_asked_for) {
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += "1 ";
    }
    EXPECT_EQ(parse_within(text, ParserLimits()).messages.size(), 3000u);
}

TEST(limits, beyond_the_limit_messages_are_only_counted) {
    ParserLimits limits;
    limits.message_count = 2;
    const std::string first = "ParserGroup.set_text: (1:1) Value without entry: 1\n";
    const std::string second = "ParserGroup.set_text: (1:3) Value without entry: 2\n";
    EXPECT_EQ(parse_within("1 2 ", limits).messages, (Messages{first, second}));
    EXPECT_EQ(parse_within("1 2 3 ", limits).messages,
              (Messages{first, second, "ParserGroup.set_text: 1 more messages\n"}));
    EXPECT_EQ(parse_within("1 2 3 4 5 6 7 ", limits).messages,
              (Messages{first, second, "ParserGroup.set_text: 5 more messages\n"}));
}

TEST(limits, messages_are_counted_for_each_text_by_itself) {
    ParserLimits limits;
    limits.message_count = 1;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(parse_within("1 ", limits).messages.size(), 1u);
    }
}

TEST(limits, what_ends_the_parse_is_logged_whatever_came_before) {
    ParserLimits limits;
    limits.message_count = 0;
    limits.nesting_depth = 0;
    const Parsing parsed = parse_within("1 2 a { } ", limits);
    EXPECT_EQ(parsed.messages,
              (Messages{"ParserGroup.set_text: (1:6) Group is nested too deeply: the text from here "
                        "on is not read\n",
                        "ParserGroup.set_text: 2 more messages\n"}));
}

TEST(limits, observers_are_told_of_every_fault) {
    class Counter : public ParserReadObserver {
    public:
        void fault_found(const Fault&, const unsigned int&, const unsigned int&, const CoreString&) override {
            ++count;
        }
        int count = 0;
    };
    ParserLimits limits;
    limits.message_count = 1;
    Counter counter;
    parse_within("1 2 3 4 ", limits, &counter);
    EXPECT_EQ(counter.count, 4);
}

TEST(limits, copies_of_a_file_have_its_limits) {
    ParserFile file{CoreString()};
    ParserLimits limits;
    limits.nesting_depth = 7;
    file.set_limits(limits);
    const ParserFile copy(file);
    EXPECT_EQ(copy.get_limits().nesting_depth, 7u);
    ParserFile assigned{CoreString()};
    assigned = file;
    EXPECT_EQ(assigned.get_limits().nesting_depth, 7u);
}
