#include "tests/support/comma_locale.h"
#include "tests/support/recording_log.h"
#include "tests/support/saved_forms.h"

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <cfenv>
#include <functional>
#include <locale>

#if defined(__SSE2__) || defined(_M_X64)
#include <immintrin.h>
#define BK_TEST_HAS_FLUSH_TO_ZERO 1
#endif

// Settings of the host's thread and process do not change a result, and the library does not change these
// settings.

namespace {

std::string bits_of(double value) {
    return std::to_string(std::bit_cast<std::uint64_t>(value)) + " ";
}

const char* const numbers[] = {
    "0.1",
    "2.5",
    "-0.3",
    "1e22",
    "1e23",
    "123456.789e3",
    "9007199254740993",
    "1e-5",
    "0.000001",
    "1.5e300",
    "1e308",
    "1e309",
    "-1e309",
    "5e-324",
    "-5e-324",
    "2.2250738585072011e-308",
    "4.9e-324",
    "2.4e-324",
    "1e-310",
    "1e-400",
    "0x1.8p1",
    "0x1p-1074",
    "3.14159265358979323846264338327950288419716939937510",
    "1234567,5",
    "8.5",
    "0.30000000000000004",
    "179769313486231580793728971405301e276",
};

/// Every result of the library for a document full of numbers, as one text.
std::string everything() {
    std::string result;
    CoreString text("#version 1.2 head yes\n");
    for (const char* number : numbers) {
        text += "entry ";
        text += number;
        text += " ";
    }
    ParserGroup group("root");
    group.set_text(text, default_parser_serial_version, nullptr);
    result += printed(group);
    for (const ParserEntry* entry : group.get_entries()) {
        for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
            if (entry->is_value_double(i) || entry->is_value_bool(i)) {
                result += bits_of(entry->get_double(i)) + std::to_string(entry->get_int(i)) + " " +
                          std::to_string(entry->get_bool(i)) + " " + std::to_string(entry->get_char(i)) + " ";
            }
        }
    }
    // These values are set, not read, so they have no spelling.
    ParserGroup made("root");
    for (const char* number : numbers) {
        const double value = static_cast<double>(CoreString(number));
        result += bits_of(value);
        ParserEntry& entry = *made.add_entry("made", 0, 0);
        entry.add_double(value);
        entry.add_double(value * 3.0);
        entry.add_int(static_cast<int>(CoreString(number)));
        entry.add_bool(entry.get_bool(0));
    }
    result += printed(made);
    const CoreVector<char> data = made.get_binary(false);
    result.append(data.get_data(), data.get_count());
    ParserGroup again("root");
    core_uint64 position = 0;
    again.set_binary(data, position);
    result += printed(again);
    return result;
}

const std::string& expected() {
    static const std::string result = everything();
    return result;
}

/// The control bits of the processor for floating point, without the flags that operations set.
unsigned int control_bits() {
#if defined(BK_TEST_HAS_FLUSH_TO_ZERO)
    return _mm_getcsr() & ~0x3Fu;
#else
    return 0;
#endif
}

class Environment : public testing::Test {
protected:
    Environment() { static_cast<void>(expected()); }
    ~Environment() override {
        std::fesetenv(FE_DFL_ENV);
        std::locale::global(std::locale::classic());
    }
};

/// A decimal comma, and points between groups of digits.
class CommaPunctuation : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

using environment = Environment;

} // namespace

TEST_F(environment, the_locale_of_the_process_does_not_matter) {
    const CommaLocale locale;
    if (!locale.is_set()) {
        GTEST_SKIP() << CommaLocale::reason;
    }
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    const std::string name = std::setlocale(LC_ALL, nullptr);
    EXPECT_TRUE(everything() == expected());
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), name);
}

TEST_F(environment, the_locale_of_the_streams_does_not_matter) {
    const std::locale comma(std::locale::classic(), new CommaPunctuation);
    std::locale::global(comma);
    EXPECT_TRUE(everything() == expected());
    EXPECT_EQ(std::locale(), comma);
}

TEST_F(environment, the_rounding_mode_does_not_matter) {
    const auto read_all = [](int mode) {
        CoreString text;
        for (const char* number : numbers) {
            text += "entry ";
            text += number;
            text += " ";
        }
        ParserGroup group("root");
        std::string result;
        std::fesetround(mode);
        group.set_text(text, default_parser_serial_version, nullptr);
        for (const ParserEntry* entry : group.get_entries()) {
            for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                result += bits_of(entry->get_double(i)) + std::to_string(entry->get_int(i)) + " ";
            }
        }
        EXPECT_EQ(std::fegetround(), mode) << "it is left as it was";
        std::fesetround(FE_TONEAREST);
        return result;
    };
    const std::string nearest = read_all(FE_TONEAREST);
    EXPECT_GT(nearest.size(), 300u);
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        EXPECT_EQ(read_all(mode), nearest) << mode;
    }
}

TEST_F(environment, doubles_are_printed_alike_in_every_rounding_mode) {
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        for (const char* number : numbers) {
            const double value = static_cast<double>(CoreString(number));
            CoreString nearest;
            nearest += value;
            std::fesetround(mode);
            CoreString text;
            text += value;
            std::fesetround(FE_TONEAREST);
            EXPECT_EQ(text.get_view(), nearest.get_view());
        }
    }
}

#if defined(BK_TEST_HAS_FLUSH_TO_ZERO)
TEST_F(environment, a_processor_that_flushes_small_numbers_to_zero_does_not_matter) {
    _MM_SET_FLUSH_ZERO_MODE(_MM_FLUSH_ZERO_ON);
    _mm_setcsr(_mm_getcsr() | 0x40u); // treats denormals as zeros
    const unsigned int before = control_bits();
    std::string result;
    {
        // The test itself must not use arithmetic here.
        ParserGroup group("root");
        group.add_entry("a", 0, 0)->add_double(std::bit_cast<double>(std::uint64_t{1}));
        group.add_entry("b", 0, 0)->add_double(std::bit_cast<double>(std::uint64_t{0x000FFFFFFFFFFFFFu}));
        group.set_text("c 5e-324 d -1e-310 e 2.2250738585072011e-308 ", default_parser_serial_version,
                       nullptr);
        result = printed(group);
        for (const ParserEntry* entry : group.get_entries()) {
            EXPECT_TRUE(entry->get_bool(0)) << "it is not zero";
            result += " " + bits_of(entry->get_double(0));
        }
    }
    const unsigned int after = control_bits();
    _mm_setcsr(_mm_getcsr() & ~0x8040u);
    EXPECT_EQ(after, before);
    EXPECT_EQ(result, " a 5e-324 b 2.225073858507201e-308 c 5e-324 d -1e-310 e 2.2250738585072011e-308 " +
                          bits_of(5e-324) + " " + bits_of(2.225073858507201e-308) + " " + bits_of(5e-324) +
                          " " + bits_of(-1e-310) + " " + bits_of(2.2250738585072011e-308));
}
#endif

TEST_F(environment, no_number_raises_an_exception_that_a_host_may_have_made_fatal) {
    constexpr int fatal = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW;
    std::feclearexcept(FE_ALL_EXCEPT);
    ParserGroup group("root");
    group.set_text("a nan b inf c -inf d 1e999 e 1e-999 f 5e-324 g nan(1) h 0x1p9999 i 1e308 ",
                   default_parser_serial_version, nullptr);
    for (const ParserEntry* entry : group.get_entries()) {
        for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
            static_cast<void>(entry->get_int(i) + entry->get_char(i) + entry->get_bool(i));
            static_cast<void>(entry->get_double(i));
        }
    }
    ParserEntry& entry = *group.add_entry("made", 0, 0);
    for (const std::uint64_t bits : std::initializer_list<std::uint64_t>{
             0x7FF8000000000000u, 0x7FF0000000000001u, 0x7FF0000000000000u, 0xFFF0000000000000u,
             0xFFF8000000000000u, 0x0000000000000001u}) {
        entry.add_double(std::bit_cast<double>(bits));
        const CoreVersion version(std::bit_cast<double>(bits));
        static_cast<void>(version.is_set());
        static_cast<void>(version.is_older_than(version));
        group.set_text("x \"y\" ", version, nullptr);
    }
    const CoreVector<char> data = group.get_binary(false);
    core_uint64 position = 0;
    ParserGroup("root").set_binary(data, position);
    static_cast<void>(printed(group));
    EXPECT_EQ(std::fetestexcept(fatal), 0);
}

TEST_F(environment, errno_is_left_as_it_was) {
    const ScratchFolder folder;
    RecordingLog log;
    const auto expect_kept = [](const char* what, const std::function<void()>& action) {
        errno = 4711;
        action();
        EXPECT_EQ(errno, 4711) << what;
    };
    ParserFile file{CoreString()};
    expect_kept("parse", [&] {
        file.get_root().set_text("a 1 b { c 1e999 } ", default_parser_serial_version, nullptr);
    });
    expect_kept("typed reads", [&] { file.get_root().get_entry("a")->get_string(0); });
    const CoreString path = folder.core_path("document");
    for (const SavedForm& form : saved_forms()) {
        expect_kept(form.name, [&] { form.save(file, path); });
        ParserGroup root("root");
        expect_kept(form.name, [&] { form.load(root, path); });
        expect_kept(form.name, [&] { form.load(root, folder.core_path("missing")); });
        expect_kept(form.name, [&] { form.save(file, folder.core_path("missing/document")); });
    }
    expect_kept("questions", [&] {
        SysFilesystem::file_exists(folder.core_path("missing"));
        SysFilesystem::get_full_file_path("x");
    });
    expect_kept("an abandoned file", [&] {
        SysFile abandoned;
        abandoned.open(path, SysFile::MODE_WRITE, SysFile::TYPE_BINARY);
    });
    expect_kept("a large tree", [&] {
        ParserGroup large("root");
        for (int i = 0; i < 100000; ++i) {
            large.add_entry("entry", 0, 0)->add_int(i);
        }
    });
}
