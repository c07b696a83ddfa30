#if !defined(_WIN32)

#include "tests/support/document_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

using Messages = std::vector<std::string>;

void make_pipe(const std::string& path) {
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
}

/// A reader that blocks would wait for ever. An alarm then ends the process.
class preprocess_special_file : public testing::Test {
protected:
    preprocess_special_file() { ::alarm(20); }
    ~preprocess_special_file() override { ::alarm(0); }

    DocumentFolder folder;
};

TEST_F(preprocess_special_file, an_include_that_names_a_pipe_is_not_found_there) {
    make_pipe(folder.path("x.bkd"));
    const Reading reading = folder.read_text("#include \"x.bkd\"\na 1\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, not_found("x.bkd", 2));
    EXPECT_EQ(reading.dependencies, Messages());
}

TEST_F(preprocess_special_file, the_search_goes_on_behind_a_pipe) {
    folder.make_folder("one");
    make_pipe(folder.path("one/x.bkd"));
    folder.write("two/x.bkd", "from 2\n");
    folder.write("main.bkd", "#include \"x.bkd\"\n");
    EXPECT_EQ(folder.read_document("main.bkd", {"one", "two"}).tree, " from 2");
}

TEST_F(preprocess_special_file, an_include_that_names_a_socket_is_not_found_there) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder.path("x.bkd");
    ASSERT_LT(path.size(), sizeof(address.sun_path));
    path.copy(address.sun_path, path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(folder.read_text("#include \"x.bkd\"\n").messages, not_found("x.bkd", 2));
    ::close(socket);
}

TEST_F(preprocess_special_file, an_include_that_names_a_device_is_not_found_there) {
    for (const std::string device : {"/dev/null", "/dev/zero", "/dev/tty", "/dev/ptmx"}) {
        EXPECT_EQ(folder.read_text("#include \"" + device + "\"\n").messages.front(),
                  "File '" + device + "' not found.\n");
    }
}

TEST_F(preprocess_special_file, an_include_may_be_a_link_to_a_regular_file_and_no_link_to_a_pipe) {
    folder.write("real.bkd", "from 1\n");
    std::filesystem::create_symlink(folder.path("real.bkd"), folder.path("x.bkd"));
    EXPECT_EQ(folder.read_text("#include \"x.bkd\"\n").tree, " from 1");
    make_pipe(folder.path("pipe"));
    std::filesystem::create_symlink(folder.path("pipe"), folder.path("y.bkd"));
    EXPECT_EQ(folder.read_text("#include \"y.bkd\"\n").messages, not_found("y.bkd", 2));
}

TEST_F(preprocess_special_file, a_top_level_file_may_be_a_pipe) {
    const std::string path = folder.path("main.bkd");
    make_pipe(path);
    folder.write("x.bkd", "from 1\n");
    std::thread writer([&path] {
        const std::string text = "#include \"x.bkd\"\na 1\n";
        const int pipe = ::open(path.c_str(), O_WRONLY);
        EXPECT_EQ(::write(pipe, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        ::close(pipe);
    });
    EXPECT_EQ(folder.read_document("main.bkd").tree, " from 1 a 1");
    writer.join();
}

} // namespace

#endif
