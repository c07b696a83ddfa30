#include "tests/support/bkdoc_forms.h"

#include <gtest/gtest.h>

// `convert` to JSON and back. Compares the whole output of the built program.

namespace {

constexpr std::string_view document = "#units \"m\"\n"
                                      "light \"quay_01\" {\n"
                                      "    power 60.0\n"
                                      "    colour 1.0 0.90 0.8\n"
                                      "}\n"
                                      "light<spot> \"quay_02\" {\n"
                                      "    at[2] 1 2.5\n"
                                      "}\n"
                                      "look(yes, 0x01FF00010000)\n"
                                      "empty <empty>\n";

constexpr std::string_view lossless = R"([
  {"#units": "m"},
  {"light": ["quay_01", {
    "power": 60.0,
    "colour": [1.0, 0.90, 0.8]
  }]},
  {"light": {"$template": "spot", "$values": ["quay_02", {
    "at": {"$array": 2, "$values": [1, 2.5]}
  }]}},
  {"look": {"$kind": "call", "$values": [true, {"$binary": "Af8="}]}},
  {"empty": []}
]
)";

constexpr std::string_view lines =
    R"({"#units":"m"}
{"light":["quay_01",{"power":60.0,"colour":[1.0,0.90,0.8]}]}
{"light":{"$template":"spot","$values":["quay_02",{"at":{"$array":2,"$values":[1,2.5]}}]}}
{"look":{"$kind":"call","$values":[true,{"$binary":"Af8="}]}}
{"empty":[]}
)";

constexpr std::string_view plain_shape = R"({
  "#units": "m",
  "light": [["quay_01", {
    "power": 60.0,
    "colour": [1.0, 0.9, 0.8]
  }], ["quay_02", {
    "at": [1, 2.5]
  }]],
  "look": [true, "Af8="],
  "empty": null
}
)";

void expect_output(const BkdocRun& run, int code, std::string_view out, std::string_view err) {
    EXPECT_EQ(run.code, code);
    EXPECT_EQ(run.out, out);
    EXPECT_EQ(run.err, err);
}

} // namespace

TEST(bkdoc_json, a_document_is_written_in_three_shapes) {
    expect_output(run_bkdoc({"convert", "-", "-", "--to", "json"}, document), 0, lossless, "");
    expect_output(run_bkdoc({"convert", "-", "-", "--to", "ndjson"}, document), 0, lines, "");
    expect_output(run_bkdoc({"convert", "-", "-", "--to", "json-plain"}, document), 0, plain_shape, "");
}

TEST(bkdoc_json, json_is_known_by_its_first_characters) {
    const std::string text = run_bkdoc({"cat", "-"}, document).out;
    for (const std::string_view json : {lossless, lines}) {
        const std::string with_mark = "\xEF\xBB\xBF \n" + std::string(json);
        const BkdocRun run = run_bkdoc({"convert", "-", "-", "--to", "json"}, with_mark);
        expect_output(run, 0, lossless, "");
    }
    expect_output(run_bkdoc({"convert", "-", "-", "--to", "json"}, "{}"), 0, "{}\n", "");
    expect_output(run_bkdoc({"convert", "-", "-", "--to", "json"}, "[]"), 0, "{}\n", "");
}

TEST(bkdoc_json, a_text_comes_back_byte_by_byte) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "text", document);
    for (const char* const shape : {"json", "ndjson"}) {
        expect_output(run_bkdoc({"convert", file, folder.path("there"), "--to", shape}), 0, "", "");
        expect_output(run_bkdoc({"convert", folder.path("there"), folder.path("back"), "--to", "text"}), 0,
                      "", "");
        EXPECT_EQ(folder.read("back"), with_plain_line_ends(folder.read("text.bkd")));
    }
}

TEST(bkdoc_json, every_form_goes_to_json_and_comes_back_as_it_was) {
    const ScratchFolder folder;
    for (const std::string& form : bkdoc_forms()) {
        const std::string file = write_in_form(folder, form, document);
        const std::string stored = folder.read(form + ".bkd");
        const std::string before = form == "text" ? with_plain_line_ends(stored) : stored;
        expect_output(run_with_key({"convert", file, folder.path("j.json"), "--to", "json"}), 0, "", "");
        expect_output(run_with_key({"convert", folder.path("j.json"), folder.path("back"), "--to", form}), 0,
                      "", "");
        EXPECT_TRUE(folder.read("back") == before) << form;
    }
}

TEST(bkdoc_json, a_name_tells_that_a_file_is_json) {
    const ScratchFolder folder;
    const std::string empty = folder.write("a.ndjson", "");
    expect_output(run_bkdoc({"convert", empty, "-", "--to", "json"}), 0, "{}\n", "");
    expect_output(run_bkdoc({"convert", folder.write("a.jsonl", "\n"), "-", "--to", "ndjson"}), 0, "", "");
    const std::string bad = folder.write("a.json", "a 1\n");
    expect_output(run_bkdoc({"convert", bad, "-", "--to", "text"}), 2, "",
                  bad + ":1:1: error: 'a' is not a JSON word [json-syntax]\na 1\n^\nbkdoc: " + bad +
                      ": could be read only up to this place; nothing is written\n");
}

TEST(bkdoc_json, from_says_what_the_document_is) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "{\"a\": 1}\n{\"a\": 2}\n");
    expect_output(run_bkdoc({"convert", file, "-", "--from", "ndjson", "--to", "ndjson"}), 0,
                  "{\"a\":1}\n{\"a\":2}\n", "");
    expect_output(
        run_bkdoc({"convert", file, "-", "--from", "json", "--to", "ndjson"}), 2, "",
        file + ":2:1: error: there is more after the end of the value [json-syntax]\n{\"a\": 2}\n^\nbkdoc: " +
            file + ": could be read only up to this place; nothing is written\n");
    expect_output(run_bkdoc({"convert", "-", "-", "--from", "paper", "--to", "text"}), 2, "",
                  "bkdoc: --from needs one of json, ndjson, not 'paper'\n");
}

TEST(bkdoc_json, json_that_is_no_document_is_refused_with_its_place) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.json", "{\n  \"power\": null\n}\n");
    const std::string target = folder.write("target.bkd", "what was there");
    expect_output(
        run_bkdoc({"convert", file, target, "--to", "text"}), 2, "",
        file +
            ":2:12: error: null is not a value: an entry without values has an empty array [json-shape]\n"
            "  \"power\": null\n"
            "           ^~~~\n"
            "bkdoc: " +
            file + ": could be read only up to this place; nothing is written\n");
    EXPECT_EQ(folder.read("target.bkd"), "what was there");
}

TEST(bkdoc_json, what_no_text_can_say_is_a_loss) {
    const BkdocRun run = run_bkdoc({"convert", "-", "-", "--to", "text"}, R"({"two words": 1})");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(
        run.err.starts_with("bkdoc: this form cannot hold the document (--lossy converts it anyway): at"))
        << run.err;
}

TEST(bkdoc_json, numbers_out_of_range_are_warnings) {
    expect_output(
        run_bkdoc({"convert", "-", "-", "--to", "ndjson"}, "{\"a\": 99999999999}"), 0,
        "{\"a\":99999999999}\n",
        "<stdin>:1:7: warning: '99999999999' is read as 2147483647: an int has 32 bits; write a point to "
        "make it a double [number-out-of-range]\n{\"a\": 99999999999}\n      ^~~~~~~~~~~\n");
}

TEST(bkdoc_json, other_verbs_take_no_json) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.json", lossless);
    expect_output(run_bkdoc({"cat", file}), 2, "",
                  "bkdoc: " + file + " is JSON, not a document; bkdoc convert reads it\n");
}
