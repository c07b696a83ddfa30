#include "tests/support/run_out.h"

#include "document/document.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

// Memory runs out while JSON is written and read. This throws, leaks nothing and logs nothing.

namespace {

using namespace bk_parser;

class MemoryOutOfJson : public testing::TestWithParam<bool> {
protected:
    /// Lets request 1, 2, 3 ... fail, until the operation makes fewer requests.
    static void expect_running(const std::function<void()>& operate) {
        constexpr std::size_t more_than_any_needs = 20000;
        for (std::size_t n = 1; n < more_than_any_needs; ++n) {
            const long live = FailingMemory::live();
            bool is_whole = false;
            bool has_failed = false;
            {
                const CountingLog log;
                FailingMemory::fail_at(n, GetParam());
                try {
                    operate();
                    is_whole = true;
                } catch (const std::bad_alloc&) {
                    is_whole = false;
                }
                has_failed = FailingMemory::disarm();
                EXPECT_EQ(log.out_of_memory, 0) << n;
            }
            EXPECT_TRUE(is_whole || has_failed) << n;
            EXPECT_EQ(FailingMemory::live(), live) << "request " << n << " left blocks behind";
            if (!has_failed || HasFailure()) {
                EXPECT_GT(n, 5u); // checks that requests were counted
                return;
            }
        }
        FAIL();
    }
};

using memory_out_of_json = MemoryOutOfJson;

} // namespace

TEST_P(memory_out_of_json, while_each_shape_is_written) {
    const LoadResult loaded = parse(scene());
    for (const JsonShape shape : {JsonShape::lossless, JsonShape::lines, JsonShape::plain}) {
        expect_running([&] { static_cast<void>(to_json(loaded.document, {shape})); });
    }
}

TEST_P(memory_out_of_json, while_it_is_read) {
    const std::string json = to_json(parse(scene()).document);
    expect_running([&] { static_cast<void>(from_json(json)); });
}

TEST_P(memory_out_of_json, while_names_values_and_faults_are_read) {
    const std::string json =
        R"({"$:\\xE9 and a name that is long": {"$template": {"$string": "\\xE9 and long, too"},)"
        R"("$values": [{"$group": "a name of a group", "$entries": [{"a": 99999999999}]},)"
        R"({"$entries": {}, "$group": "a name that comes late"}, {"$binary": "AQI="},)"
        R"({"$type": 9}, {"$word": "a word of more than one block"}, {"$word": nope}]}})";
    expect_running([&] { static_cast<void>(from_json(json)); });
}

INSTANTIATE_TEST_SUITE_P(one_request_or_all_from_there, memory_out_of_json, testing::Bool());
