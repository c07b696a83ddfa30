#include "tests/support/enciphered_folder.h"
#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;
using Calls = std::vector<std::string>;

Reading reading_of(std::string_view text, std::string_view key = "key") {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", text, key);
    return folder.read_with_key("main.bkd", key);
}

} // namespace

TEST(file_encrypted_read, the_text_is_deciphered_and_scanned) {
    const Reading reading = reading_of("a 1 // note\nb \"x // y\" 0x01FF00010000\n");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.0);
    EXPECT_EQ(reading.expanded, "a 1 b \"x // y\" 0x01FF00010000\n");
    EXPECT_EQ(reading.tree, " a 1 b \"x // y\" 0x01FF00010000");
    EXPECT_EQ(reading.messages, Messages{});
}

TEST(file_encrypted_read, the_empty_key_is_a_key) {
    EXPECT_EQ(reading_of("a 1\n", "").tree, " a 1");
}

TEST(file_encrypted_read, an_empty_text_is_an_empty_document) {
    const Reading reading = reading_of("");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.version, 1.0);
    EXPECT_EQ(reading.tree, "");
    EXPECT_EQ(reading.messages, Messages{});
}

TEST(file_encrypted_read, line_ends_and_every_other_byte_are_taken_as_they_are) {
    std::string bytes = "a \"";
    for (int code = 0; code < 256; ++code) {
        if (code != '"' && code != '\\' && code != '/') {
            bytes += static_cast<char>(code);
        }
    }
    bytes += "\"\r\nb 1\r\n";
    EXPECT_EQ(reading_of(bytes).expanded, bytes);
}

TEST(file_encrypted_read, an_old_text_has_no_escapes) {
    EXPECT_EQ(reading_of("a \"x\\ty\" \n").tree, " a \"x\\\\ty\"");
    EXPECT_EQ(reading_of("a \"x\\ty\"\n#Brellwick_Serial_Version 1.2\n").tree,
              " a \"x\\ty\" #Brellwick_Serial_Version 1.2");
}

TEST(file_encrypted_read, whole_words_after_the_text_are_ignored) {
    const EncipheredFolder folder;
    folder.write("main.bkd", cipher_reference::enciphered_file("a 1\n", "key") + "12345678");
    EXPECT_EQ(folder.read_with_key("main.bkd", "key").tree, " a 1");
}

TEST(file_encrypted_read, a_file_of_the_magic_alone_is_a_plain_text) {
    const EncipheredFolder folder;
    folder.write("main.bkd", "KWBF");
    ParserFile file(CoreString{});
    const Reading reading = folder.read_into(file, "main.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded, "KWBF");
    EXPECT_EQ(reading.messages, Messages{"ParserGroup.set_text: (1:0) Entry 'KWBF' has no value.\n"});
    EXPECT_FALSE(file.is_encrypted());
}

TEST(file_encrypted_read, the_magic_must_stand_at_the_very_beginning) {
    for (const char* text : {" KWBF 1\n", "kwbf 1 2 3 4\n", "KWB 1 2 3 4\n", "KWAF 1 2 3\n"}) {
        const EncipheredFolder folder;
        folder.write("main.bkd", text);
        const Reading reading = folder.read_with_key("main.bkd", "key");
        EXPECT_TRUE(reading.result);
        EXPECT_EQ(reading.expanded, text);
    }
}

TEST(file_encrypted_read, a_plain_text_that_begins_with_the_magic_is_taken_for_an_enciphered_one) {
    const EncipheredFolder folder;
    folder.write("main.bkd", "KWBF 1 2 3\n");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, Messages{unreadable(folder.path("main.bkd"))});
}

TEST(file_encrypted_read, the_magic_inside_an_enciphered_text_is_a_word) {
    EXPECT_EQ(reading_of("KWBF 1 2 3\n").tree, " KWBF 1 2 3");
}

TEST(file_encrypted_read, the_key_is_ignored_for_a_plain_text) {
    const EncipheredFolder folder;
    folder.write("main.bkd", "a 12345\n");
    ParserFile file(CoreString{});
    EXPECT_EQ(folder.read_into(file, "main.bkd", "key").tree, " a 12345");
    EXPECT_FALSE(file.is_encrypted());
}

TEST(file_encrypted_read, progress_is_that_of_a_file_that_is_read_once) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a 1 ", "key");
    RecordingProgress progress;
    ParserFile file(CoreString{});
    EXPECT_TRUE(folder.read_into(file, "main.bkd", "key", &progress).result);
    EXPECT_EQ(progress.calls, (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "set_value(0.3)",
                                     "begin_task(\"\", 0.7, false)", "set_step_count(4)", "step(1)",
                                     "step(2)", "step(3)", "step(4)", "end_task()", "end_task()",
                                     "begin_task(false)", "set_value(0)", "set_value(0.5)", "end_task()"}));
}

TEST(file_encrypted_read, tasks_that_were_begun_are_ended_when_a_file_cannot_be_deciphered) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a 1 ", "key");
    RecordingProgress progress;
    ParserFile file(CoreString{});
    EXPECT_FALSE(folder.read_into(file, "main.bkd", "another", &progress).result);
    EXPECT_EQ(progress.calls,
              (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "set_value(0.3)", "end_task()"}));
}

TEST(file_encrypted_read, tasks_that_were_begun_are_ended_when_an_include_cannot_be_deciphered) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a 1 #include \"x.bkd\"", "key");
    folder.write_enciphered("x.bkd", "b 2 ", "another");
    RecordingProgress progress;
    ParserFile file(CoreString{});
    EXPECT_FALSE(folder.read_into(file, "main.bkd", "key", &progress).result);
    EXPECT_EQ(progress.open_tasks(), 0);
}

TEST(file_encrypted_state, is_that_of_the_first_file_read) {
    const EncipheredFolder folder;
    folder.write("plain.bkd", "a 12345\n");
    folder.write_enciphered("secret.bkd", "b 2 ", "key");
    ParserFile plain_first(CoreString{});
    EXPECT_FALSE(plain_first.is_encrypted());
    EXPECT_TRUE(folder.read_into(plain_first, "plain.bkd", "key").result);
    EXPECT_TRUE(folder.read_into(plain_first, "secret.bkd", "key").result);
    EXPECT_FALSE(plain_first.is_encrypted());
    ParserFile secret_first(CoreString{});
    EXPECT_TRUE(folder.read_into(secret_first, "secret.bkd", "key").result);
    EXPECT_TRUE(secret_first.is_encrypted());
    EXPECT_TRUE(folder.read_into(secret_first, "plain.bkd", "key").result);
    EXPECT_TRUE(secret_first.is_encrypted());
}

TEST(file_encrypted_state, of_a_short_plain_file_is_plain) {
    const EncipheredFolder folder;
    folder.write("plain.bkd", "a 1");
    folder.write_enciphered("secret.bkd", "b 2 ", "key");
    ParserFile file(CoreString{});
    EXPECT_TRUE(folder.read_into(file, "plain.bkd", "key").result);
    EXPECT_TRUE(folder.read_into(file, "secret.bkd", "key").result);
    EXPECT_FALSE(file.is_encrypted());
}

TEST(file_encrypted_state, is_not_changed_by_included_files) {
    const EncipheredFolder folder;
    folder.write("plain.bkd", "a 1 #include \"secret_part.bkd\"");
    folder.write("plain_part.bkd", "b 2 c 3\n");
    folder.write_enciphered("secret.bkd", "a 1 #include \"plain_part.bkd\"", "key");
    folder.write_enciphered("secret_part.bkd", "b 2 ", "key");
    ParserFile plain_top(CoreString{});
    EXPECT_TRUE(folder.read_into(plain_top, "plain.bkd", "key").result);
    EXPECT_FALSE(plain_top.is_encrypted());
    ParserFile secret_top(CoreString{});
    EXPECT_TRUE(folder.read_into(secret_top, "secret.bkd", "key").result);
    EXPECT_TRUE(secret_top.is_encrypted());
}

TEST(file_encrypted_state, is_not_decided_by_a_file_that_could_not_be_loaded) {
    const EncipheredFolder folder;
    folder.write("plain.bkd", "a 12345\n");
    folder.write_enciphered("secret.bkd", "b 2 ", "key");
    ParserFile file(CoreString{});
    EXPECT_FALSE(folder.read_into(file, "missing.bkd", "key").result);
    EXPECT_FALSE(folder.read_into(file, "secret.bkd", "another").result);
    EXPECT_FALSE(file.is_encrypted());
    ParserFile copy(file);
    EXPECT_TRUE(folder.read_into(file, "plain.bkd", "key").result);
    EXPECT_FALSE(file.is_encrypted());
    EXPECT_TRUE(folder.read_into(copy, "secret.bkd", "key").result);
    EXPECT_TRUE(copy.is_encrypted());
}

TEST(file_encrypted_state, is_decided_by_a_file_whose_include_fails) {
    const EncipheredFolder folder;
    folder.write_enciphered("secret.bkd", "a 1 #include \"missing.bkd\"", "key");
    ParserFile file(CoreString{});
    EXPECT_FALSE(folder.read_into(file, "secret.bkd", "key").result);
    EXPECT_TRUE(file.is_encrypted());
}

TEST(file_encrypted_state, is_copied_and_kept_when_the_document_is_cleared) {
    const EncipheredFolder folder;
    folder.write_enciphered("secret.bkd", "b 2 ", "key");
    ParserFile file(CoreString{});
    EXPECT_TRUE(folder.read_into(file, "secret.bkd", "key").result);
    file.clear();
    EXPECT_TRUE(file.is_encrypted());
    const ParserFile copy(file);
    EXPECT_TRUE(copy.is_encrypted());
    ParserFile assigned(CoreString{});
    assigned = file;
    EXPECT_TRUE(assigned.is_encrypted());
}
