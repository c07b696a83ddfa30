#include "tests/support/carried_back.h"
#include "tests/support/example_texts.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// A document with every construct of the syntax, and every document of the example project, in a fixed
/// order.
const std::vector<std::string>& documents() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> texts = example_texts("project");
        texts.emplace_back(every_syntax);
        return texts;
    }();
    return all;
}

std::string print(const ParserGroup& group, bool pretty) {
    CoreString text;
    group.get_text(text, false, pretty, 1);
    return plain(text);
}

/// Makes small texts from pieces of the documents.
class Mutator {
public:
    explicit Mutator(unsigned int seed) : random_(seed) {}

    std::string next() {
        const std::string& document = documents()[below(documents().size())];
        const std::size_t start = below(document.size() + 1);
        std::string text = document.substr(start, below(120));
        for (std::size_t count = 1 + below(5); count > 0; --count) {
            mutate(text);
        }
        return text;
    }

    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

private:
    void mutate(std::string& text) {
        const std::size_t place = below(text.size() + 1);
        switch (below(6)) {
        case 0:
            text.insert(place, 1, static_cast<char>(below(256)));
            break;
        case 1:
            text.erase(place, 1 + below(3));
            break;
        case 2:
            if (place < text.size()) {
                text[place] = static_cast<char>(text[place] ^ (1 << below(8)));
            }
            break;
        case 3:
            text.insert(place, text.substr(below(text.size() + 1), below(20)));
            break;
        default:
            text.insert(place, token());
        }
    }

    const char* token() {
        static constexpr const char* tokens[] = {
            " ",       "\n",    "\r\n", "\t",     "{",        "}",    "(",   ")",         ",",
            "=",       ":",     "\"",   "\\",     "\\\"",     "\\\\", " a ", " #k ",      " yes ",
            " no ",    "[2]",   "[]",   "<t>",    "<yes",     "[2]>", ".",   "<empty>",   " 1 ",
            "-1.5",    "1e3",   "0x12", "0x",     "inf",      "+nan", "' ",  "\\n",       " f(",
            " { b 1 ", "\"s\"", "//",   "\\\"\n", "\\\\\"\n", "1\"",  "\v",  " \"x\\\\\""};
        return tokens[below(std::size(tokens))];
    }

    std::mt19937 random_;
};

/// Reads a text, prints the tree, and reads the print.
struct RoundTrip {
    RoundTrip(std::string_view text, double version, bool pretty) : first("g"), second("g") {
        first.set_text(CoreString(text), CoreVersion(version), nullptr);
        first_print = print(first, pretty);
        second.set_text(core(first_print), CoreVersion(1.2), nullptr);
        second_print = print(second, pretty);
    }

    ParserGroup first;
    ParserGroup second;
    std::string first_print;
    std::string second_print;
};

class Mutations : public testing::TestWithParam<unsigned int> {};

constexpr unsigned int shards = 8;
constexpr unsigned int mutations_a_shard = 25000;

} // namespace

using text_round_trip_of_mutations = Mutations;

TEST_P(text_round_trip_of_mutations, a_tree_reads_back_from_its_print_unless_the_syntax_cannot_carry_it) {
    const RecordingLog quiet(0);
    Mutator mutator(GetParam());
    unsigned int not_carried = 0;
    for (unsigned int i = 0; i < mutations_a_shard; ++i) {
        const std::string text = mutator.next();
        const bool pretty = i % 2 == 0;
        const RoundTrip trip(text, i % 5 == 0 ? 1.0 : 1.2, pretty);
        const std::string difference = tree_difference(trip.first, trip.second);
        const bool is_carried(CarriedBack(trip.first, pretty));
        not_carried += is_carried ? 0 : 1;
        ASSERT_EQ(difference.empty(), is_carried) << testing::PrintToString(text) << "\nprints as\n"
                                                  << trip.first_print << "\n"
                                                  << difference;
        if (is_carried) {
            ASSERT_EQ(trip.first_print, trip.second_print) << testing::PrintToString(text);
        }
    }
    EXPECT_GT(not_carried, 0u);
    EXPECT_LT(not_carried, mutations_a_shard / 10);
}

INSTANTIATE_TEST_SUITE_P(shard, text_round_trip_of_mutations, testing::Range(0u, shards));

TEST(text_round_trip, whole_documents_read_back_from_their_print) {
    const RecordingLog quiet(0);
    EXPECT_GE(documents().size(), 2u);
    for (const std::string& document : documents()) {
        for (const bool pretty : {true, false}) {
            const RoundTrip trip(document, 1.2, pretty);
            EXPECT_GT(trip.first.get_entries().get_count(), 0u);
            EXPECT_EQ(tree_difference(trip.first, trip.second), "");
            EXPECT_EQ(trip.first_print, trip.second_print);
        }
    }
}

TEST(text_round_trip, both_layouts_read_as_the_same_tree) {
    const RecordingLog quiet(0);
    for (const std::string& document : documents()) {
        const RoundTrip pretty(document, 1.2, true);
        const RoundTrip compact(document, 1.2, false);
        EXPECT_EQ(tree_difference(pretty.second, compact.second), "");
    }
}

TEST(text_round_trip, a_print_reads_without_faults) {
    for (const std::string& document : documents()) {
        const RecordingLog quiet(0);
        ParserGroup group("g");
        group.set_text(core(document), CoreVersion(1.2), nullptr);
        const CoreString text = core(print(group, true));
        RecordingLog log;
        ParserGroup again("g");
        again.set_text(text, CoreVersion(1.2), nullptr);
        for (const LoggedMessage& message : log.messages) {
            // A group ends the argument list that it is in.
            EXPECT_TRUE(message.text.ends_with("Closing an argument list without entry\n")) << message.text;
        }
    }
}

TEST(text_round_trip, values_that_stood_together_are_written_one_by_one_after_an_edit) {
    ParserGroup group("root");
    ASSERT_TRUE(group.set_text("a 1 2.50 3 yes 5", CoreVersion(1.2), nullptr));
    const auto printed = [&group] {
        CoreString text;
        group.get_text(text, false, false, 1);
        return std::string(text.get_view());
    };
    EXPECT_EQ(printed(), " a 1 2.50 3 yes 5");
    group.get_entry(0)->remove_value(2u);
    EXPECT_EQ(printed(), " a 1 2.50 yes 5");
    group.get_entry(0)->move_value(0, 1);
    EXPECT_EQ(printed(), " a 2.50 1 yes 5");
    group.get_entry(0)->set_int(7, 2);
    EXPECT_EQ(printed(), " a 2.50 1 7 5");
    group.get_entry(0)->add_int(8);
    EXPECT_EQ(printed(), " a 2.50 1 7 5 8");
}

TEST(text_round_trip, one_blank_is_written_whatever_stood_between_values) {
    ParserGroup group("root");
    ASSERT_TRUE(group.set_text("a 1\t2\n3,4  5\r6 \"seven seven\" 8", CoreVersion(1.2), nullptr));
    CoreString text;
    group.get_text(text, false, false, 1);
    EXPECT_EQ(std::string(text.get_view()), " a 1 2 3 4 5 6 \"seven seven\" 8");
}
