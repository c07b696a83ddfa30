#include "core/files/sys_file_input_impl.h"
#include "core/files/sys_file_output_impl.h"
#include "core/files/sys_line_ends_impl.h"
#include "tests/support/counted_faults.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

// Text files with the line ends of Windows, on every platform.

namespace {

std::string read_in_pieces(std::string_view bytes, std::size_t piece) {
    std::string out;
    bk::LineEndReader reader;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
        reader.append(out, bytes.substr(at, piece));
    }
    reader.finish(out);
    return out;
}

std::string read_all(bk::FileInput& input) {
    std::string text(1000000, '\0');
    text.resize(input.read(text.data(), text.size()));
    return text;
}

} // namespace

TEST(line_ends, a_line_feed_is_written_with_a_carriage_return_before_it) {
    std::string out = "> ";
    bk::append_with_cr_lf(out, "a\nb\n\nc");
    EXPECT_EQ(out, "> a\r\nb\r\n\r\nc");
    bk::append_with_cr_lf(out, "");
    bk::append_with_cr_lf(out, "\n");
    EXPECT_EQ(out, "> a\r\nb\r\n\r\nc\r\n");
}

TEST(line_ends, a_pair_is_read_as_one_wherever_a_piece_ends) {
    for (std::size_t piece = 1; piece < 12; ++piece) {
        EXPECT_EQ(read_in_pieces("a\r\nb\r\n\r\nc\n", piece), "a\nb\n\nc\n") << piece;
    }
}

TEST(line_ends, a_carriage_return_alone_stays) {
    for (std::size_t piece = 1; piece < 8; ++piece) {
        EXPECT_EQ(read_in_pieces("a\rb\r\r\nc\r", piece), "a\rb\r\nc\r") << piece;
    }
}

TEST(text_files, what_is_written_with_translation_is_read_back_with_it) {
    const ScratchFolder folder;
    std::string text;
    for (int i = 0; i < 30000; ++i) {
        text += "line " + std::to_string(i) + "\n";
    }
    bk::FileOutput output;
    ASSERT_TRUE(output.open(folder.path("data"), true));
    EXPECT_EQ(output.write(text.data(), text.size()), text.size());
    ASSERT_TRUE(output.close());
    const std::string bytes = folder.read("data");
    EXPECT_EQ(bytes.size(), text.size() + 30000);
    EXPECT_TRUE(bytes.starts_with("line 0\r\nline 1\r\n"));

    bk::FileInput input;
    ASSERT_TRUE(input.open(folder.path("data"), true));
    EXPECT_TRUE(read_all(input) == text);
    EXPECT_EQ(input.left(), 30000) << "the size is that of the file";
    EXPECT_TRUE(input.close());
}

TEST(text_files, a_write_that_fails_ends_the_translation) {
    const ScratchFolder folder;
    const std::string text(200000, '\n');
    for (int n = 1; n < 5; ++n) {
        class FullSoon : public ForwardingDevice {
        public:
            explicit FullSoon(int good) : good_(good) {}
            std::unique_ptr<SysHandle> create_beside(const std::string& target,
                                                     std::string& created) override {
                return std::make_unique<Handle>(good_, ForwardingDevice::create_beside(target, created));
            }

        private:
            class Handle : public ForwardingHandle {
            public:
                Handle(int good, std::unique_ptr<SysHandle> inner)
                    : ForwardingHandle(std::move(inner)), good_(good) {}
                core_int64 write(const char* data, std::size_t size) override {
                    return good_-- > 0 ? ForwardingHandle::write(data, size) : -1;
                }

            private:
                int good_;
            };
            int good_;
        };
        const FullSoon device(n - 1);
        bk::FileOutput output;
        ASSERT_TRUE(output.open(folder.path("data"), true));
        const std::size_t taken = output.write(text.data(), text.size());
        EXPECT_EQ(taken, n <= 4 ? static_cast<std::size_t>(n - 1) * 65536 : text.size()) << n;
        EXPECT_EQ(output.write("x", 1), 0u) << "nothing more is taken";
        EXPECT_FALSE(output.close());
        EXPECT_EQ(folder.count(), 0u);
    }
}

TEST(text_files, a_read_that_fails_is_told_when_the_file_is_closed) {
    const ScratchFolder folder;
    folder.write("data", "a\r\nb");
    for (const bool translates : {false, true}) {
        const FaultAtCall device(3); // the call after the look at the file and its opening
        bk::FileInput input;
        ASSERT_TRUE(input.open(folder.path("data"), translates));
        EXPECT_EQ(read_all(input), "");
        EXPECT_FALSE(input.close());
    }
}

TEST(text_files, a_file_that_fails_without_a_read_is_told_too) {
    const ScratchFolder folder;
    folder.write("data", "a");
    bk::FileInput input;
    ASSERT_TRUE(input.open(folder.path("data"), false));
    input.fail();
    EXPECT_FALSE(input.close());
}
