#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

using Lines = std::vector<std::string>;

/// Records every call as a line of text.
class RecordingObserver : public ParserReadObserver {
public:
    Lines calls;

    void include_found(const unsigned int& offset, const unsigned int& length,
                       const CoreString& name) override {
        note("include", offset, length, plain(name));
    }
    void file_entered(const CoreString& name, const CoreString& path, const CoreString& text) override {
        calls.push_back("enter " + plain(name) + " at " + plain(path) + " with " + plain(text));
    }
    void file_left() override { calls.push_back("leave"); }
    void piece_copied(const unsigned int& offset, const unsigned int& length,
                      const unsigned int& expanded) override {
        note("piece", offset, length, std::to_string(expanded));
    }
    void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                     const CoreString& message) override {
        note("fault " + std::to_string(fault), expanded, length, plain(message));
    }
    void directive_fault_found(const Fault& fault, const unsigned int& offset, const unsigned int& length,
                               const CoreString&) override {
        note("directive " + std::to_string(fault), offset, length, "");
    }

    /// The calls that begin with this text.
    Lines only(const std::string& beginning) const {
        Lines result;
        for (const std::string& call : calls) {
            if (call.starts_with(beginning)) {
                result.push_back(call);
            }
        }
        return result;
    }

private:
    void note(const std::string& what, unsigned int offset, unsigned int length, const std::string& rest) {
        calls.push_back(what + " " + std::to_string(offset) + "+" + std::to_string(length) + " " + rest);
    }
};

/// Maps every byte of the expanded text to the file and offset from which it came.
class SourceMap : public ParserReadObserver {
public:
    struct Source {
        std::string path;
        unsigned int offset = 0;
    };

    std::vector<Source> sources;
    std::string text;
    bool is_gapless = true;

    void file_entered(const CoreString&, const CoreString& path, const CoreString& content) override {
        open_.push_back({plain(path), &content});
    }
    void file_left() override { open_.pop_back(); }
    void piece_copied(const unsigned int& offset, const unsigned int& length,
                      const unsigned int& expanded) override {
        is_gapless = is_gapless && expanded == text.size() && length != 0;
        for (unsigned int i = 0; i < length; ++i) {
            sources.push_back({open_.back().path, offset + i});
            text += open_.back().content->get_view()[offset + i];
        }
    }
    std::size_t open_count() const { return open_.size(); }

private:
    struct Open {
        std::string path;
        const CoreString* content;
    };
    std::vector<Open> open_;
};

Lines calls_of(const DocumentFolder& folder, std::string_view text, bool expected = true) {
    const RecordingLog log;
    RecordingObserver observer;
    ParserFile file(core(folder.write("main.bkd", text)));
    file.set_search_paths({core(folder.path())});
    file.set_read_observer(&observer);
    EXPECT_EQ(file.read("", "", nullptr), expected);
    return observer.calls;
}

/// The faults of a text, each as "fault <number> <offset>+<length> <message>".
Lines faults_of(std::string_view text, int verbosity = 2) {
    const RecordingLog log(verbosity);
    RecordingObserver observer;
    ParserGroup group("g");
    group.set_text(CoreString(text), CoreVersion(1.2), nullptr, &observer);
    EXPECT_EQ(observer.calls.size(), observer.only("fault").size());
    return observer.calls;
}

std::string fault(ParserReadObserver::Fault number, unsigned int offset, unsigned int length,
                  const std::string& message) {
    return "fault " + std::to_string(number) + " " + std::to_string(offset) + "+" + std::to_string(length) +
           " " + message;
}

} // namespace

TEST(read_observer, a_plain_file_is_entered_copied_and_left) {
    const DocumentFolder folder;
    EXPECT_EQ(calls_of(folder, "a 1\n"), (Lines{"enter " + folder.path("main.bkd") + " at " +
                                                    folder.full_path("main.bkd") + " with a 1\n",
                                                "piece 0+4 0", "leave"}));
}

TEST(read_observer, an_include_is_found_then_entered_by_its_name_and_left) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2\n");
    const std::string x = folder.full_path("x.bkd");
    const std::string text = "a 1 #include \"x.bkd\" c 3";
    const std::string main = folder.path("main.bkd");
    EXPECT_EQ(calls_of(folder, text),
              (Lines{"enter " + main + " at " + folder.full_path("main.bkd") + " with " + text, "piece 0+4 0",
                     "include 4+16 x.bkd", "enter x.bkd at " + x + " with b 2\n", "piece 0+4 4", "leave",
                     "piece 20+4 8", "leave"}));
}

TEST(read_observer, what_is_dropped_is_in_no_piece) {
    const DocumentFolder folder;
    const Lines calls = calls_of(folder, "#Brellwick_Serial_Version 1.2\na 1 // note\nb 2");
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[1], "piece 30+4 0");
    EXPECT_EQ(calls[2], "piece 42+3 4");
}

TEST(read_observer, an_include_that_is_not_there_is_found_and_never_entered) {
    const DocumentFolder folder;
    const Lines calls = calls_of(folder, "#include \"missing\"", false);
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[1], "include 0+18 missing");
    EXPECT_EQ(calls[2], "leave");
}

TEST(read_observer, an_include_left_open_is_a_fault_of_the_file_that_it_is_in) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2 #include \"y");
    const Lines calls = calls_of(folder, "a 1 #include \"x.bkd\"", false);
    const std::string directive = "directive " + std::to_string(ParserReadObserver::FAULT_INCLUDE_LEFT_OPEN);
    ASSERT_GE(calls.size(), 3u);
    EXPECT_EQ(calls[calls.size() - 3].substr(0, directive.size() + 3), directive + " 4+");
    EXPECT_EQ(calls[calls.size() - 2], "leave");
    EXPECT_EQ(calls[calls.size() - 1], "leave");
}

TEST(read_observer, a_file_that_is_not_found_is_never_entered) {
    const RecordingLog log;
    RecordingObserver observer;
    ParserFile file(CoreString("/nowhere/x"));
    file.set_read_observer(&observer);
    EXPECT_FALSE(file.read("", "", nullptr));
    EXPECT_EQ(observer.calls, Lines{});
}

TEST(read_observer, null_ends_the_watch) {
    const DocumentFolder folder;
    RecordingObserver observer;
    ParserFile file(core(folder.write("main.bkd", "a 1\n")));
    file.set_read_observer(&observer);
    file.set_read_observer(nullptr);
    EXPECT_TRUE(file.read("", "", nullptr));
    EXPECT_EQ(observer.calls, Lines{});
}

TEST(read_observer, the_operations_of_the_base_do_nothing) {
    const RecordingLog log;
    ParserReadObserver observer;
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2 :\n");
    ParserFile file(core(folder.write("main.bkd", "#include \"x.bkd\" : a 1")));
    file.set_search_paths({core(folder.path())});
    file.set_read_observer(&observer);
    EXPECT_TRUE(file.read("", "", nullptr));
    EXPECT_NE(file.get_root().get_entry("a"), nullptr);
}

// Faults

TEST(read_observer, each_fault_has_its_number_place_and_message) {
    using Observer = ParserReadObserver;
    EXPECT_EQ(faults_of("a 1 = "),
              Lines{fault(Observer::FAULT_WRONGLY_PLACED, 4, 1, "Entry '=' wrongly placed.")});
    EXPECT_EQ(faults_of("a bcd 1 "),
              Lines{fault(Observer::FAULT_NO_VALUE, 2, 3, "Entry 'bcd' has no value.")});
    EXPECT_EQ(faults_of(" 12 "),
              Lines{fault(Observer::FAULT_VALUE_WITHOUT_ENTRY, 1, 2, "Value without entry: 12")});
    EXPECT_EQ(faults_of(" { "),
              Lines{fault(Observer::FAULT_GROUP_WITHOUT_ENTRY, 1, 1, "Group without entry")});
    EXPECT_EQ(faults_of(" ( "),
              Lines{fault(Observer::FAULT_ARGUMENTS_WITHOUT_ENTRY, 1, 1, "Argument list without entry")});
    EXPECT_EQ(faults_of("a 1( "), Lines{fault(Observer::FAULT_ARGUMENTS_AFTER_VALUES, 3, 1,
                                              "Cannot mix argument list with entry values")});
    EXPECT_EQ(faults_of("f(( "), Lines{fault(Observer::FAULT_ARGUMENTS_INSIDE_ARGUMENTS, 2, 1,
                                             "Argument list inside an argument list")});
    EXPECT_EQ(faults_of("#k( "),
              Lines{fault(Observer::FAULT_ARGUMENTS_ON_KEYWORD, 2, 1, "Function call on keyword")});
    EXPECT_EQ(faults_of(" ) "), Lines{fault(Observer::FAULT_CLOSING_WITHOUT_ENTRY, 1, 1,
                                            "Closing an argument list without entry")});
    EXPECT_EQ(faults_of("a 1) "), Lines{fault(Observer::FAULT_CLOSING_NO_ARGUMENTS, 3, 1,
                                              "Closing an argument list in a non function call")});
    EXPECT_EQ(faults_of(" ?! "), Lines{fault(Observer::FAULT_UNKNOWN_WORD, 1, 2, "Unknown word type: '?!'")});
}

TEST(read_observer, a_fault_of_a_name_with_a_suffix_points_at_the_whole_word) {
    using Observer = ParserReadObserver;
    EXPECT_EQ(faults_of("a 1 x<y<z>> 2 "),
              Lines{fault(Observer::FAULT_TEMPLATE_INSIDE_TEMPLATE, 4, 7,
                          "Entry 'x' has template inside template declaration.")});
    EXPECT_EQ(faults_of(" yes[2] <empty> ")[0],
              fault(Observer::FAULT_INVALID_NAME, 1, 6, "'yes' is not a valid entry name"));
}

TEST(read_observer, a_fault_of_a_string_points_at_its_characters_in_the_text) {
    EXPECT_EQ(faults_of(R"( "a\tb" )"), Lines{fault(ParserReadObserver::FAULT_VALUE_WITHOUT_ENTRY, 1, 6,
                                                    "Value without entry: \"a\tb\"")});
}

TEST(read_observer, text_after_the_end_is_a_fault_that_is_not_logged) {
    const RecordingLog log;
    RecordingObserver observer;
    ParserGroup group("g");
    EXPECT_TRUE(group.set_text("a 1 } b 2", CoreVersion(1.2), nullptr, &observer));
    EXPECT_TRUE(log.is_empty());
    ASSERT_EQ(observer.calls.size(), 1u);
    EXPECT_TRUE(observer.calls[0].starts_with(
        "fault " + std::to_string(ParserReadObserver::FAULT_TEXT_AFTER_END) + " 4+1 "));
}

TEST(read_observer, a_group_left_open_is_a_fault_that_is_not_logged) {
    const RecordingLog log;
    RecordingObserver observer;
    ParserGroup group("g");
    EXPECT_TRUE(group.set_text("a { b 1", CoreVersion(1.2), nullptr, &observer));
    EXPECT_TRUE(log.is_empty());
    ASSERT_EQ(observer.calls.size(), 1u);
    EXPECT_TRUE(observer.calls[0].starts_with(
        "fault " + std::to_string(ParserReadObserver::FAULT_GROUP_LEFT_OPEN) + " 2+1 "));
}

TEST(read_observer, a_sound_text_has_no_faults) {
    EXPECT_EQ(faults_of("a 1 { b 2 } f(1, 2) c <empty> #k \"s\" d<t> 1 e[2] yes no "), Lines{});
}

TEST(read_observer, faults_are_found_whatever_the_log_takes) {
    EXPECT_EQ(faults_of("a 1 = : ) ( { 2 ", 0), faults_of("a 1 = : ) ( { 2 ", 2));
    EXPECT_FALSE(faults_of("a 1 = ", 0).empty());
}

TEST(read_observer, faults_are_told_as_they_are_logged) {
    const RecordingLog log;
    RecordingObserver observer;
    ParserGroup group("g");
    group.set_text("1 = : a b ( ) , x<y<z>> yes[2] { (", CoreVersion(1.2), nullptr, &observer);
    ASSERT_EQ(observer.calls.size(), log.messages.size());
    for (std::size_t i = 0; i < log.messages.size(); ++i) {
        const std::string& logged = log.messages[i].text;
        const std::string told = observer.calls[i].substr(observer.calls[i].find('+'));
        EXPECT_TRUE(logged.ends_with(told.substr(told.find(' ') + 1) + "\n")) << logged << told;
    }
}

TEST(read_observer, a_text_parsed_without_an_observer_gives_the_same_tree) {
    const RecordingLog log;
    RecordingObserver observer;
    ParserGroup watched("g");
    ParserGroup unwatched("g");
    const CoreString text("1 = : a b ( ) , x<y<z>> yes[2] { c 1 } d 2 e");
    EXPECT_EQ(watched.set_text(text, CoreVersion(1.2), nullptr, &observer),
              unwatched.set_text(text, CoreVersion(1.2), nullptr));
    EXPECT_EQ(written(watched), written(unwatched));
}

// Places

TEST(read_observer, a_fault_in_an_included_file_maps_back_to_its_word_there) {
    class Locator : public SourceMap {
    public:
        std::string found;
        void fault_found(const Fault&, const unsigned int& expanded, const unsigned int& length,
                         const CoreString&) override {
            const Source& source = sources.at(expanded);
            found += source.path.substr(source.path.find_last_of("/\\") + 1) + ":" +
                     std::to_string(source.offset) + "+" + std::to_string(length) + " ";
        }
    };
    const DocumentFolder folder;
    const RecordingLog log;
    folder.write("x.bkd", "// a comment\nb 1 ?? 2\n");
    folder.write("main.bkd", "#Brellwick_Serial_Version 1.2\na 1 // c\n#include \"x.bkd\"\nc 2 @@@ 3\n");
    ParserFile file(folder.core_path("main.bkd"));
    file.set_search_paths({core(folder.path())});
    Locator locator;
    file.set_read_observer(&locator);
    EXPECT_TRUE(file.read("", "", nullptr));
    EXPECT_EQ(locator.found, "x.bkd:17+2 main.bkd:60+3 ");
}

TEST(read_observer, every_byte_of_the_expanded_text_maps_back_to_its_source) {
    const std::vector<std::string> parts = {"a 1 ",
                                            "// note\n",
                                            "\"s // t\" ",
                                            "\\\"",
                                            "0x12AF",
                                            "\n",
                                            "#Brellwick_Serial_Version 1.2\n",
                                            "\"",
                                            "{ b 2 } ",
                                            "#include \"x.bkd\"",
                                            "#inclu ",
                                            "/",
                                            "#include \"y.bkd\""};
    std::mt19937 random(20240521);
    const DocumentFolder folder;
    for (int round = 0; round < 300; ++round) {
        std::map<std::string, std::string> contents;
        for (const char* name : {"y.bkd", "x.bkd", "main.bkd"}) {
            const std::size_t usable = parts.size() - (name[0] == 'y' ? 4 : name[0] == 'x' ? 1 : 0);
            std::string text;
            for (auto i = random() % 12; i > 0; --i) {
                const std::string& part = parts[random() % usable];
                text += name[0] == 'x' && part == parts[9] ? parts[12] : part;
            }
            folder.write(name, text);
            contents[folder.full_path(name)] = text;
        }
        SCOPED_TRACE(contents[folder.full_path("main.bkd")]);

        const RecordingLog log;
        SourceMap map;
        ParserFile file(folder.core_path("main.bkd"));
        file.set_search_paths({core(folder.path())});
        file.set_read_observer(&map);
        ASSERT_TRUE(file.read("", "", nullptr));

        EXPECT_EQ(map.open_count(), 0u);
        EXPECT_TRUE(map.is_gapless);
        for (std::size_t i = 0; i < map.text.size(); ++i) {
            ASSERT_EQ(contents[map.sources[i].path][map.sources[i].offset], map.text[i]);
        }
        ParserGroup again("root");
        again.set_text(core(map.text), file.get_serial_version(), nullptr);
        EXPECT_EQ(written(again), written(file.get_root()));
    }
}
