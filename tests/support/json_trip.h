#pragma once

#include "document/json.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

/// Writes trees as JSON and reads them back.
namespace json_trip {

using namespace bk_parser;

inline std::string all_texts(const ParserGroup& group) {
    std::string texts;
    for (const bool pretty : {true, false}) {
        CoreString text;
        group.get_text(text, false, pretty, 1);
        texts += plain(text) + "\n---\n";
    }
    const CoreVector<char> bytes = group.get_binary(false);
    return texts + std::string(bytes.get_data() == nullptr ? "" : bytes.get_data(), bytes.get_count());
}

/// Expects the same tree back, in every layout of the JSON.
inline void expect_back(const ParserGroup& group) {
    const RecordingLog log;                // raw text of values that are no strings
    ParserGroup named(CoreString("root")); // the name of a document's root
    named.set(group);
    ParserGroup tree(CoreString("root"));
    named.move_entries(tree, 0u);
    const std::string texts = all_texts(tree);
    for (const JsonOptions& options :
         {JsonOptions{JsonShape::lossless, 2}, JsonOptions{JsonShape::lossless, 0},
          JsonOptions{JsonShape::lines, 2}}) {
        const std::string json = to_json(tree, options);
        JsonReadOptions read;
        read.shape = options.shape;
        LoadResult result = from_json(json, read);
        for (const Problem& problem : result.problems) {
            EXPECT_EQ(problem.severity, Severity::warning) << problem.message << "\n" << json;
        }
        EXPECT_EQ(tree_difference(result.document.root(), tree), "") << json;
        EXPECT_TRUE(all_texts(result.document.root()) == texts) << json;
        EXPECT_EQ(to_json(result.document, options), json);
    }
}

} // namespace json_trip
