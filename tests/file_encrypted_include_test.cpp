#include "tests/support/enciphered_folder.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

} // namespace

TEST(file_encrypted_include, an_enciphered_file_stands_in_a_plain_one) {
    const EncipheredFolder folder;
    folder.write("main.bkd", "a 1 #include \"x.bkd\"c 3\n");
    folder.write_enciphered("x.bkd", "b 2 // note\n", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.messages, Messages{});
    EXPECT_EQ(reading.expanded, "a 1 b 2 c 3\n");
    EXPECT_EQ(reading.tree, " a 1 b 2 c 3");
    EXPECT_EQ(reading.dependencies, Messages{folder.full_path("x.bkd")});
}

TEST(file_encrypted_include, a_plain_file_stands_in_an_enciphered_one) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a 1 #include \"x.bkd\"c 3\n", "key");
    folder.write("x.bkd", "b 2 // note\n");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.expanded, "a 1 b 2 c 3\n");
    EXPECT_EQ(reading.dependencies, Messages{folder.full_path("x.bkd")});
}

TEST(file_encrypted_include, enciphered_files_include_each_other_at_any_depth) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a { #include \"x.bkd\"} e 5\n", "key");
    folder.write_enciphered("x.bkd", "b 2 #include \"y.bkd\"d 4 ", "key");
    folder.write("y.bkd", "#include \"z.bkd\"");
    folder.write_enciphered("z.bkd", "c 3 ", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.messages, Messages{});
    EXPECT_EQ(reading.tree, " a { b 2 c 3 d 4 } e 5");
    EXPECT_EQ(reading.dependencies,
              (Messages{folder.full_path("x.bkd"), folder.full_path("y.bkd"), folder.full_path("z.bkd")}));
}

TEST(file_encrypted_include, the_same_enciphered_file_is_expanded_twice) {
    const EncipheredFolder folder;
    folder.write("main.bkd", "#include \"x.bkd\"#include \"x.bkd\"");
    folder.write_enciphered("x.bkd", "b 2 ", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_EQ(reading.tree, " b 2 b 2");
    EXPECT_EQ(reading.dependencies, Messages{folder.full_path("x.bkd")});
}

TEST(file_encrypted_include, a_directive_is_expanded_inside_a_string_of_an_enciphered_file) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a \"x #include \"part\" y // z\" \n", "key");
    folder.write_enciphered("part", "1/2", "key");
    EXPECT_EQ(folder.read_with_key("main.bkd", "key").expanded, "a \"x 1/2 y // z\" \n");
}

TEST(file_encrypted_include, what_writing_puts_into_a_string_is_no_directive) {
    const EncipheredFolder folder;
    ParserFile file(CoreString{});
    file.get_root().add_entry("a", 0, 0)->add_string("#include \"missing.bkd\"");
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("main.bkd"), "key"));
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.tree, R"( a "#include \"missing.bkd\"" #Brellwick_Serial_Version 1.2)");
}

TEST(file_encrypted_include, a_file_under_another_key_fails_the_whole_read) {
    const EncipheredFolder folder;
    for (const bool is_top_plain : {false, true}) {
        const std::string text = "a 1 #include \"x.bkd\"c 3\n";
        folder.write("main.bkd", is_top_plain ? text : cipher_reference::enciphered_file(text, "key"));
        folder.write_enciphered("x.bkd", "b 2 ", "another");
        const Reading reading = folder.read_with_key("main.bkd", "key");
        EXPECT_FALSE(reading.result);
        EXPECT_EQ(reading.version, 0.0);
        EXPECT_EQ(reading.messages, Messages{unreadable("x.bkd")});
        EXPECT_EQ(reading.tree, "");
        EXPECT_EQ(reading.dependencies, Messages{folder.full_path("x.bkd")}) << "it was found";
    }
}

TEST(file_encrypted_include, a_file_that_is_cut_fails_the_whole_read) {
    const EncipheredFolder folder;
    const std::string whole = cipher_reference::enciphered_file("b 2 ", "key");
    folder.write("main.bkd", "a 1 #include \"x.bkd\"c 3\n");
    for (std::size_t size = 5; size < whole.size(); ++size) {
        folder.write("x.bkd", whole.substr(0, size));
        const Reading reading = folder.read_with_key("main.bkd", "key");
        EXPECT_FALSE(reading.result) << size;
        const bool has_length = size >= 8; // 4 bytes of text, which is less than the file
        EXPECT_EQ(reading.messages, Messages{has_length ? incompatible("x.bkd") : unreadable("x.bkd")})
            << size;
    }
}

TEST(file_encrypted_include, without_a_key_it_fails_the_whole_read) {
    const EncipheredFolder folder;
    folder.write("main.bkd", "a 1 #include \"x.bkd\"c 3\n");
    folder.write_enciphered("x.bkd", "b 2 ", "key");
    EXPECT_EQ(folder.read_document("main.bkd").messages, Messages{unreadable("x.bkd")});
}

TEST(file_encrypted_include, a_file_missing_in_an_enciphered_one_is_reported_by_its_name) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a 1 #include \"missing.bkd\"", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, not_found("missing.bkd", 2));
}

TEST(file_encrypted_include, a_directive_left_open_in_an_enciphered_file_fails_without_a_message) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a 1 #include \"x.bkd", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.version, 0.0);
    EXPECT_EQ(reading.messages, Messages{});
}

TEST(file_encrypted_include, a_file_that_includes_itself_is_refused_enciphered_too) {
    const EncipheredFolder folder;
    folder.write_enciphered("main.bkd", "a 1 #include \"x.bkd\"", "key");
    folder.write_enciphered("x.bkd", "#include \"main.bkd\"", "key");
    const Reading reading = folder.read_with_key("main.bkd", "key");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, Messages{"File 'main.bkd' includes itself.\n"});
}

TEST(file_encrypted_include, a_chain_of_200_enciphered_includes_is_expanded_and_a_deeper_one_refused) {
    const EncipheredFolder folder;
    for (unsigned int i = 0; i <= 201; ++i) {
        const std::string next = "#include \"" + std::to_string(i + 1) + ".bkd\"";
        folder.write_enciphered(std::to_string(i) + ".bkd", i == 201 ? "a 1 " : next, "key");
    }
    EXPECT_EQ(folder.read_with_key("1.bkd", "key").tree, " a 1");
    EXPECT_EQ(folder.read_with_key("0.bkd", "key").messages,
              Messages{"File '201.bkd' is included too deeply.\n"});
}
