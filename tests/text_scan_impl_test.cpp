#include "parser/parser_text_scan_impl.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

constexpr unsigned int told_classes = bk::CHAR_NOT_IN_NAME | bk::CHAR_DOUBLE_MARK;

/// Compares what the scans find from every place of a text with what the slow ones find.
void expect_same_from_everywhere(const std::string& text) {
    const char* const end = text.data() + text.size();
    for (const char* p = text.data(); p <= end; ++p) {
        const bk::TextRun run = bk::scan_run(p, end);
        const bk::TextRun expected = bk::portable::scan_run(p, end);
        ASSERT_EQ(run.end - p, expected.end - p) << "from " << p - text.data() << " of " << text;
        ASSERT_EQ(run.classes & told_classes, expected.classes & told_classes)
            << "from " << p - text.data() << " of " << text;
        ASSERT_EQ(bk::skip_spaces(p, end), bk::portable::skip_spaces(p, end));
        ASSERT_EQ(bk::find_string_stop(p, end), bk::portable::find_string_stop(p, end));
    }
}

} // namespace

TEST(text_scan, every_byte_is_seen_at_every_place_of_a_block) {
    for (int byte = 0; byte < 256; ++byte) {
        for (std::size_t place = 0; place < 20; ++place) {
            std::string text(40, 'a');
            text[place] = static_cast<char>(byte);
            expect_same_from_everywhere(text);
        }
    }
}

TEST(text_scan, every_byte_among_spaces_is_seen) {
    for (int byte = 0; byte < 256; ++byte) {
        std::string text(37, ' ');
        text[17] = static_cast<char>(byte);
        expect_same_from_everywhere(text);
    }
}

TEST(text_scan, every_byte_tells_its_classes) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string text = std::string("x") + static_cast<char>(byte) + "x                    ";
        if (bk::is_char(text[1], bk::CHAR_ENDS_RUN)) {
            continue;
        }
        const bk::TextRun run = bk::scan_run(text.data(), text.data() + text.size());
        EXPECT_EQ(run.end - text.data(), 3) << byte;
        EXPECT_EQ(run.classes & told_classes, bk::classes_of(text[1]) & told_classes) << byte;
    }
}

TEST(text_scan, what_stands_behind_a_run_tells_nothing_of_it) {
    const std::string text = "nama 1.5e+3 #%$ 1e5 \"a.b\" 0.5";
    const bk::TextRun run = bk::scan_run(text.data(), text.data() + text.size());
    EXPECT_EQ(run.end - text.data(), 4);
    EXPECT_EQ(run.classes & told_classes, 0u);
}

TEST(text_scan, texts_of_every_length_end_where_they_end) {
    for (std::size_t length = 0; length < 70; ++length) {
        expect_same_from_everywhere(std::string(length, '7'));
        expect_same_from_everywhere(std::string(length, ' '));
        expect_same_from_everywhere(std::string(length, '\\'));
    }
}

TEST(text_scan, random_texts_are_scanned_alike) {
    const std::string alphabet =
        std::string("aez AEZ_059.-+#\"\\'{}(),:=<>[]/\t\n\r\v\f|~\x01\x7f\x80\xff") + '\0';
    std::mt19937 random(20240607);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 80, ' ');
        const std::size_t few =
            1 + random() % alphabet.size(); // some texts are of few characters, with long runs
        for (char& character : text) {
            character = alphabet[random() % few];
        }
        expect_same_from_everywhere(text);
    }
}
