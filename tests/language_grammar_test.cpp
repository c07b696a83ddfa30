#include "core/core_log.h"
#include "parser/parser_file.h"
#include "parser/parser_read_observer.h"
#include "tests/support/ebnf.h"
#include "tests/support/page_blocks.h"
#include "tests/support/plain_text.h"
#include "tests/support/sanitizer.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

// Compares the grammar of docs/language.md with the parser.

namespace {

#if defined(BK_PARSER_SANITIZED_MEMORY) || !defined(NDEBUG)
constexpr unsigned int text_count = 2000;
#else
constexpr unsigned int text_count = 100000;
#endif

using Random = std::mt19937;

class CountedFaults : public ParserReadObserver {
public:
    void fault_found(const Fault&, const unsigned int&, const unsigned int&,
                     const CoreString& message) override {
        first_ = count_++ == 0 ? plain(message) : first_;
    }
    unsigned int count() const { return count_; }
    const std::string& first() const { return first_; }

private:
    unsigned int count_ = 0;
    std::string first_;
};

/// Suppresses all messages while it lives.
class Silence {
public:
    Silence() { CoreLogHandler::s_main_log_handler->set_verbosity(0); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { CoreLogHandler::s_main_log_handler->set_verbosity(verbosity_); }

private:
    int verbosity_ = CoreLogHandler::s_main_log_handler->get_verbosity();
};

/// The first fault that the parser reports, if any.
std::optional<std::string> fault_of(const std::string& text) {
    CountedFaults faults;
    ParserGroup group("root");
    group.set_text(core(text), default_parser_serial_version, nullptr, &faults);
    return faults.count() == 0 ? std::nullopt : std::optional(faults.first());
}

Ebnf::Set set_of(std::string_view characters) {
    Ebnf::Set set;
    for (const char character : characters) {
        set.set(static_cast<unsigned char>(character));
    }
    return set;
}

constexpr std::string_view white = " \t\n\r";
constexpr std::string_view delimiters = "{}(),:=";
/// The kinds of runs. In the grammar of entries, kinds[n] is the character n + 1.
constexpr std::string_view kinds[] = {"name", "keyword", "bool", "int", "double", "string", "data", "empty"};
constexpr char name_code = 1;
constexpr char keyword_code = 2;

class PageGrammar {
public:
    PageGrammar()
        : words_(block("words"), {{"any byte", Ebnf::Set().set()},
                                  {"blank, tab, line feed, carriage return", set_of(white)},
                                  {"line feed, carriage return", set_of("\n\r")}}),
          kinds_(block("kinds"),
                 {{"any byte", Ebnf::Set().set()},
                  {"A to Z and a to z", set_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")},
                  {"0 to 9", set_of("0123456789")},
                  {"hexadecimal digit", set_of("0123456789ABCDEFabcdef")},
                  {"vertical tab, form feed", set_of("\v\f")}}),
          entries_(block("entries"), kind_sets()) {}

    bool accepts(std::string_view text) const {
        std::string codes;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = words_.longest("run", text, at);
            if (length == 0) {
                if (white.find(text[at]) == std::string_view::npos) {
                    codes += text[at];
                }
                ++at;
                continue;
            }
            const char code = kind_of(text.substr(at, length));
            at += length;
            if (code == 0 || ((code == name_code || code == keyword_code) && is_last(text, at))) {
                return false;
            }
            codes += code;
        }
        return entries_.matches("document", codes);
    }

    std::string random_text(Random& random) const {
        std::string text;
        std::string codes;
        do {
            codes = entries_.random("document", random);
        } while (codes.size() < 4 && random() % 16 != 0);
        for (const char code : codes) {
            text += random() % 8 == 0 ? random_white(random) : std::string();
            text += delimiters.find(code) != std::string_view::npos ? std::string(1, code)
                                                                    : random_run(code, random);
        }
        return text + random_white(random) + " \n";
    }

private:
    static std::string block(std::string_view mark) {
        for (const PageBlock& block : blocks_of_page("docs/language.md")) {
            if (block.kind == "ebnf" && block.mark == mark) {
                return block.text;
            }
        }
        throw std::runtime_error("no block ebnf " + std::string(mark));
    }
    static Ebnf::Sets kind_sets() {
        Ebnf::Sets sets;
        for (std::size_t i = 0; i < std::size(kinds); ++i) {
            sets[std::string(kinds[i])] = Ebnf::Set().set(i + 1);
        }
        return sets;
    }
    /// Whether the text ends at that place, or after one white character there.
    static bool is_last(std::string_view text, std::size_t at) {
        return at == text.size() || (at + 1 == text.size() && white.find(text[at]) != std::string_view::npos);
    }
    /// The kind of a run; 0 if it has none.
    char kind_of(std::string_view run) const {
        char found = 0;
        for (std::size_t i = 0; i < std::size(kinds); ++i) {
            if (kinds_.matches(std::string(kinds[i]), run)) {
                EXPECT_EQ(found, 0) << "of two kinds: " << run;
                found = static_cast<char>(i + 1);
            }
        }
        return found;
    }
    static std::string random_white(Random& random) {
        std::string text;
        do {
            text += white[random() % white.size()];
        } while (random() % 4 == 0);
        return text;
    }
    /// A run and white space after it. A string without its end extends to the end of the line.
    std::string random_run(char code, Random& random) const {
        for (;;) {
            const std::string run = kinds_.random(std::string(kinds[code - 1]), random);
            if (words_.longest("run", run + ' ', 0) == run.size()) {
                return run + random_white(random);
            }
            if (words_.longest("run", run + '\n', 0) == run.size()) {
                return run + '\n';
            }
        }
    }

    Ebnf words_;
    Ebnf kinds_;
    Ebnf entries_;
};

std::string near_miss(std::string text, Random& random) {
    constexpr std::string_view pieces[] = {"{", "}",  "(", ")",   ",",       "=",  ":",  "\"", "\\",
                                           " ", "\n", "#", "<",   ">",       "[",  "]",  ".",  "e",
                                           "x", "-",  "0", "yes", "<empty>", "a ", "1 ", "inf"};
    for (auto edits = 1 + random() % 3; edits != 0; --edits) {
        const std::size_t at = random() % (text.size() + 1);
        switch (random() % 4) {
        case 0:
            text.insert(at, pieces[random() % std::size(pieces)]);
            break;
        case 1:
            text.erase(at, 1 + random() % 3);
            break;
        case 2:
            text.replace(at, 1, pieces[random() % std::size(pieces)]);
            break;
        default: // often a copied piece, sometimes after the text was truncated
            text.resize(random() % 4 == 0 ? at : text.size());
            text.insert(at % (text.size() + 1), text.substr(random() % (text.size() + 1), 1 + random() % 6));
        }
    }
    return text;
}

} // namespace

TEST(language_grammar, accepts_and_refuses_what_it_should) {
    const PageGrammar grammar;
    for (const char* text :
         {"", "a 1 ", "a = 1, 2 ", "a { b 1 } = c 2", "f(1,)", "a\n\n", "a <empty> (2)", "f(1 g(2)"}) {
        EXPECT_TRUE(grammar.accepts(text)) << text;
    }
    for (const char* text :
         {"a", "a\n", "a 1,, 2", "a b 1", "{ }", "a 1 }", "a {", "yes[2] 1", "a: 1", "-infi"}) {
        EXPECT_FALSE(grammar.accepts(text)) << text;
    }
}

TEST(language_grammar, what_it_generates_is_read_without_a_fault) {
    const Silence silence;
    const PageGrammar grammar;
    Random random(19);
    for (unsigned int i = 0; i < text_count; ++i) {
        const std::string text = grammar.random_text(random);
        const auto fault = fault_of(text);
        ASSERT_FALSE(fault) << *fault << " of " << ::testing::PrintToString(text);
    }
}

TEST(language_grammar, near_misses_have_a_fault_exactly_when_it_does_not_accept_them) {
    const Silence silence;
    const PageGrammar grammar;
    Random random(1919);
    unsigned int accepted = 0;
    for (unsigned int i = 0; i < text_count; ++i) {
        const std::string text = near_miss(grammar.random_text(random), random);
        const auto fault = fault_of(text);
        const bool is_accepted = grammar.accepts(text);
        accepted += is_accepted ? 1 : 0;
        ASSERT_EQ(is_accepted, !fault)
            << fault.value_or("no fault") << ": " << ::testing::PrintToString(text);
    }
    EXPECT_GT(accepted, text_count / 10);
    EXPECT_LT(accepted, text_count - text_count / 10);
}
