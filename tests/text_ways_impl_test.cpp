#include "parser/text/parser_grammar_impl.h"
#include "parser/text/parser_tree_sink_impl.h"
#include "tests/support/counting_log.h"
#include "tests/support/example_texts.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <sstream>

// The parser reads texts in two ways: it cuts whole entries where that is safe, and reads word by word
// elsewhere. Both must give the same tree, places of entries, faults with their places, and result for every
// text. A number in BK_PARSER_MUTANTS is the number of texts of the last test, and makes the first test use
// every place: BK_PARSER_MUTANTS=1000000 build/text_ways_impl_test

namespace {

/// Builds the tree. Has only the calls for parts of entries, also for entries that were cut whole.
class PartSink {
public:
    PartSink(ParserGroup& root, bool has_escapes, ParserReadObserver* observer, const ParserLimits& limits)
        : tree_(root, has_escapes, observer, limits) {}

    bool begin_entry(const bk::EntryHead& head, const bk::Token& token) {
        return tree_.begin_entry(head, token);
    }
    void add_value(ParserWord::Type kind, std::string_view word) { tree_.add_value(kind, word); }
    void make_function_call() { tree_.make_function_call(); }
    bool open_group(const bk::Token& brace) { return tree_.open_group(brace); }
    void close_group() { tree_.close_group(); }
    void report_fault(ParserReadObserver::Fault fault, const bk::Token& token, std::string_view word) {
        tree_.report_fault(fault, token, word);
    }
    void finish() { tree_.finish(); }

private:
    bk::TreeSink tree_;
};

/// Has a call for each word, so that the parser skips none.
class WordSink : public PartSink {
public:
    using PartSink::PartSink;

    void see_word(std::string_view) noexcept {}
};

class FaultNotes : public ParserReadObserver {
public:
    void fault_found(const Fault& fault, const unsigned int& at, const unsigned int& length,
                     const CoreString& message) override {
        notes_ << static_cast<int>(fault) << ' ' << at << ' ' << length << ' ' << message.get_view() << '\n';
    }
    std::string get() const { return notes_.str(); }

private:
    std::ostringstream notes_;
};

struct Read {
    ParserGroup root{"root"};
    bool is_clean = false;
    std::string faults;
};

template <class Sink>
void read(Read& into, std::string_view text, bool has_escapes, bool is_watched) {
    FaultNotes notes;
    ParserLimits limits;
    limits.nesting_depth = 8;
    Sink sink(into.root, has_escapes, &notes, limits);
    bk::Grammar<Sink> grammar(text, sink);
    if (is_watched) {
        grammar.watch_outermost();
    }
    into.is_clean = grammar.run([](const bk::WordStream&, bool) {});
    sink.finish();
    into.faults = notes.get();
}

/// The first entry whose place differs, in trees that are otherwise equal.
std::string place_difference(const ParserGroup& left, const ParserGroup& right) {
    for (unsigned int i = 0; i < left.get_entries().get_count(); ++i) {
        const ParserEntry& a = *left.get_entries()[i];
        const ParserEntry& b = *right.get_entries()[i];
        if (a.get_line() != b.get_line() || a.get_column() != b.get_column()) {
            return std::string(a.get_name().get_view());
        }
        for (unsigned int k = 0; k < a.get_value_count(); ++k) {
            const std::string inside =
                a.is_value_group(k) ? place_difference(*a.get_group(k), *b.get_group(k)) : std::string();
            if (!inside.empty()) {
                return inside;
            }
        }
    }
    return {};
}

template <class Sink>
void expect_same(const CoreString& text, bool has_escapes, bool is_watched) {
    Read fast;
    Read slow;
    read<Sink>(fast, text.get_view(), has_escapes, is_watched);
    read<WordSink>(slow, text.get_view(), has_escapes, is_watched);
    ASSERT_EQ(fast.is_clean, slow.is_clean) << text.get_view();
    ASSERT_EQ(fast.faults, slow.faults) << text.get_view();
    ASSERT_EQ(tree_difference(fast.root, slow.root), "") << text.get_view();
    ASSERT_EQ(place_difference(fast.root, slow.root), "") << text.get_view();
}

void expect_same(const std::string& text) {
    const CoreString copied(text);
    for (const bool has_escapes : {true, false}) {
        ASSERT_NO_FATAL_FAILURE(expect_same<bk::TreeSink>(copied, has_escapes, false));
    }
    ASSERT_NO_FATAL_FAILURE(expect_same<bk::TreeSink>(copied, true, true));
    ASSERT_NO_FATAL_FAILURE(expect_same<PartSink>(copied, true, false));
}

const std::vector<std::string>& documents() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> texts = example_texts(".");
        texts.emplace_back(every_syntax);
        texts.emplace_back(
            "matrix 1 0 0 0  0 1 0 0\n  0 0 1 0\t0.25 -1.5e2 -17 1234567.875 12345678901234567890 2\r\n  "
            "size[3] 1 "
            "2 3\nname \"a string that is longer than a block of sixty-four characters, and then some\" next "
            "no last yes group<base> { visible yes size -1 } } behind 1");
        return texts;
    }();
    return all;
}

/// Entries of the shapes that are cut whole, and similar ones, with a few changed characters.
std::string mutant(std::mt19937& random) {
    static const std::vector<std::string> pieces = {
        "a ",
        "name ",
        "yes ",
        "no ",
        "n ",
        "y ",
        "{ ",
        "} ",
        "{",
        "}",
        "1 ",
        "-2.5 ",
        "1e5 ",
        "1E5 ",
        "12x ",
        "-",
        "0xFF ",
        "0x0000000000",
        "\"s\" ",
        "\"a \\\" b\" ",
        "\"",
        "b[2] ",
        "b[] ",
        "b[1234567890] ",
        "c<t> ",
        "c<yes> ",
        "yes[1] ",
        "d.e ",
        "d. ",
        "#key ",
        "= ",
        ", ",
        "(",
        ") ",
        ": ",
        "<empty> ",
        "inf ",
        "nan ",
        "\n",
        "\r\n",
        "\t",
        "    ",
        "matrix 1 2 3 4 5 6 7 8 9 10 11 12 13.5 14.25 15 16 17 18 19 20 21 22 23 24 ",
        "text \"a string of more than sixty-four characters, which goes on behind its block, and on\" ",
        "a_name_of_more_than_sixty_four_characters_which_goes_on_behind_its_block_and_on 1 "};
    std::string text;
    if (random() % 2 == 0) {
        const std::string& document = documents()[random() % documents().size()];
        text = document.substr(random() % (document.size() + 1), random() % 400);
    } else {
        for (std::size_t count = random() % 40; count != 0; --count) {
            text += pieces[random() % pieces.size()];
        }
    }
    for (std::size_t count = random() % 4; count != 0; --count) {
        const std::size_t place = random() % (text.size() + 1);
        if (random() % 2 == 0) {
            text.insert(place, pieces[random() % pieces.size()]);
        } else if (place < text.size()) {
            text[place] = random() % 3 == 0 ? static_cast<char>(random()) : " 1}\n\"-"[random() % 6];
        }
    }
    return text;
}

const char* wanted() {
    return std::getenv("BK_PARSER_MUTANTS");
}

} // namespace

TEST(text_ways, documents_read_the_same_both_ways_wherever_they_end) {
    const CountingLog log;
    for (const std::string& document : documents()) {
        for (std::size_t size = 0; size <= document.size();
             size += wanted() == nullptr ? 1 + size / 300 : 1) {
            ASSERT_NO_FATAL_FAILURE(expect_same(document.substr(0, size)));
        }
    }
}

TEST(text_ways, documents_read_the_same_both_ways_wherever_their_blocks_begin) {
    const CountingLog log;
    for (const std::string& document : documents()) {
        for (std::size_t size = 0; size < 130; ++size) {
            ASSERT_NO_FATAL_FAILURE(expect_same(std::string(size, size % 3 == 0 ? '\n' : ' ') + document));
        }
        ASSERT_NO_FATAL_FAILURE(expect_same("a " + std::string(5000, ' ') + document));
    }
}

TEST(text_ways, rows_of_any_length_read_the_same_both_ways) {
    const CountingLog log;
    for (unsigned int count = 0; count < 400; ++count) {
        std::string text = "row";
        for (unsigned int i = 0; i < count; ++i) {
            text += (i % 7 == 0 ? "\n " : " ") + std::to_string(i * 37 % 1001) + (i % 3 == 0 ? ".5" : "");
        }
        ASSERT_NO_FATAL_FAILURE(expect_same(text + " next 1 end"));
        ASSERT_NO_FATAL_FAILURE(expect_same(text + ", 2"));
    }
}

TEST(text_ways, mutants_read_the_same_both_ways) {
    const CountingLog log;
    const std::size_t count = wanted() == nullptr ? 10000 : std::strtoul(wanted(), nullptr, 10);
    std::mt19937 random(1);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_NO_FATAL_FAILURE(expect_same(mutant(random)));
    }
}
