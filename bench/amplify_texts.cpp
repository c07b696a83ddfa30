#include "bench/amplify.h"
#include "bench/repeated.h"
#include "parser/parser_file.h"
#include "parser/parser_read_observer.h"
#include "parser/parser_word.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/memory_disk.h"
#include "tests/support/plain_text.h"

#include <memory>
#include <utility>

namespace bench {

namespace {

/// Parses the text and destroys the tree.
Work parse(const std::string& text) {
    return {text.size(), [text = core(text)] {
                ParserGroup group("g");
                group.set_text(text, CoreVersion(1.2), nullptr);
            }};
}

/// Parses the text, prints the tree on one line, and copies it.
Work parse_and_print(const std::string& text) {
    return {text.size(), [text = core(text)] {
                ParserGroup group("g");
                group.set_text(text, CoreVersion(1.2), nullptr);
                const ParserGroup copy(group);
                CoreString printed;
                copy.get_text(printed, true, false, 1);
            }};
}

/// Parses with a progress bar and an observer.
Work parse_watched(const std::string& text) {
    return {text.size(), [text = core(text)] {
                AppProgressBar bar;
                ParserReadObserver observer;
                ParserGroup group("g");
                group.set_text(text, CoreVersion(1.2), &bar, &observer);
            }};
}

Work read_every_way(const std::string& text) {
    const auto group = std::make_shared<ParserGroup>("g");
    return {text.size(),
            [group] {
                ParserEntry& entry = *group->get_entries()[0];
                for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
                    entry.get_int(i);
                    entry.get_double(i);
                    entry.get_word(i);
                }
            },
            [group, text = core(text)] {
                group->clear();
                group->set_text(text, CoreVersion(1.2), nullptr);
            }};
}

Work grow_word(unsigned int count) {
    return {count, [text = core(repeated("n", count))] {
                ParserWord word(text, false, CoreVersion(1.2));
                for (unsigned int i = 0; i < text.get_length(); ++i) {
                    word += i;
                }
                word.is_identifier();
            }};
}

/// Reads the file "a" through the preprocessor, with the other files of the disk.
Work read(const std::vector<std::pair<std::string, std::string>>& files) {
    const auto disk = std::make_shared<MemoryDisk>();
    std::size_t bytes = 0;
    for (const auto& [name, content] : files) {
        disk->files[name] = content;
        bytes += content.size();
    }
    return {bytes, [disk] {
                ParserFile file("a");
                file.set_search_paths({"", "first", "second"});
                file.read("", "lantern", nullptr);
            }};
}

Work read(const std::string& text) {
    return read({{"a", text}});
}

Work include_different(unsigned int count) {
    std::vector<std::pair<std::string, std::string>> files = {{"a", ""}};
    for (unsigned int i = 0; i < count; ++i) {
        const std::string name = "part" + std::to_string(i);
        files.emplace_back(name, "b 1\n");
        files[0].second += "#include \"" + name + "\"\n";
    }
    return read(files);
}

} // namespace

const std::vector<Family>& text_families() {
    static const std::vector<Family> families = {
        {"entries in one line", 20000, [](unsigned int n) { return parse(repeated("a 1 ", n)); }},
        {"lines", 100000, [](unsigned int n) { return parse(repeated("\n", n) + "a 1 "); }},
        {"one long name", 100000, [](unsigned int n) { return parse(repeated("n", n) + " 1 "); }},
        {"one long number, read", 20000,
         [](unsigned int n) {
             return read_every_way("a 0." + repeated("9", n) + " " + repeated("9", n) + " ");
         }},
        {"one long string with escapes", 50000,
         [](unsigned int n) { return parse_and_print("a \"" + repeated("\\n\\\"", n) + "\" "); }},
        {"one long binary literal", 50000,
         [](unsigned int n) { return parse_and_print("a 0x" + repeated("FF", n) + "00000000 "); }},
        {"one long word of backslashes and quotes", 50000,
         [](unsigned int n) { return parse("a " + repeated("\\\"", n) + " b 1 "); }},
        {"one word grown byte by byte", 100000, grow_word},
        {"values in one entry", 20000,
         [](unsigned int n) { return parse_and_print("a " + repeated("1,", n) + "1 "); }},
        {"strings left open", 10000, [](unsigned int n) { return parse("a 1 " + repeated("\"x { \n", n)); }},
        {"arguments", 20000,
         [](unsigned int n) { return parse_and_print("f(" + repeated("1,", n) + "1) "); }},
        {"groups in groups", 5000,
         [](unsigned int n) { return parse_and_print(repeated("a{", n) + "b 1" + repeated("}", n)); }},
        {"groups left open", 5000, [](unsigned int n) { return parse(repeated("a{", n)); }},
        {"templates in templates", 20000,
         [](unsigned int n) { return parse("a" + repeated("<b", n) + repeated(">", n) + " 1 "); }},
        {"array counts", 20000,
         [](unsigned int n) { return parse("a" + repeated("[", n) + repeated("]", n) + " 1 "); }},
        {"faults", 5000, [](unsigned int n) { return parse(repeated(": ", n)); }},
        {"refused names", 5000, [](unsigned int n) { return parse(repeated("yes[] ", n)); }},
        {"faults and groups left open, watched", 5000,
         [](unsigned int n) { return parse_watched(repeated(": a { ", n)); }},
        {"entries and faults in lines, watched", 5000,
         [](unsigned int n) { return parse_watched(repeated("a 1\n: ", n)); }},
        {"comments", 20000, [](unsigned int n) { return read(repeated("// x\n", n)); }},
        {"one long comment", 200000, [](unsigned int n) { return read("//" + repeated("x", n) + "\na 1 "); }},
        {"quotes behind backslashes, in a file", 50000,
         [](unsigned int n) { return read("a \"" + repeated("\\\\\\\"", n) + repeated("\\", n) + "\" "); }},
        {"version lines", 5000,
         [](unsigned int n) { return read(repeated("#Brellwick_Serial_Version 1.2\n", n)); }},
        {"version directives in one enciphered line", 1000,
         [](unsigned int n) {
             return read(cipher_reference::enciphered_file(
                 "a 1 " + repeated("#Brellwick_Serial_Version 1.2 ", n), "lantern"));
         }},
        {"includes of one file", 500,
         [](unsigned int n) {
             return read({{"a", repeated("#include \"b\"\n", n)}, {"b", "c 1\n"}});
         }},
        {"includes of different files", 500, include_different},
    };
    return families;
}

} // namespace bench
