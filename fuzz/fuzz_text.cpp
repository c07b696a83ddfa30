#include "fuzz/input.h"
#include "parser/parser_group.h"
#include "parser/parser_read_observer.h"
#include "parser/parser_word.h"
#include "tests/support/counting_log.h"
#include "tests/support/plain_text.h"
#include "tests/support/tree_equal.h"

namespace {

class CheckedProgress : public AppProgressBar {
public:
    void set_value(const float& value) override {
        require(value >= 0.0F && value <= 1.0F, "a progress bar gets fractions");
    }
};

/// Checks that every fault has a place in the text.
class CheckedFaults : public ParserReadObserver {
public:
    explicit CheckedFaults(std::string_view text) : text_(text) {}

    void fault_found(const Fault&, const unsigned int& at, const unsigned int& length,
                     const CoreString& message) override {
        require(at <= text_.size() && length <= text_.size() - at, "a fault stands in the text");
        require(!message.is_empty(), "a fault says what it is");
    }

private:
    std::string_view text_;
};

void read_every_way(const ParserEntry& entry, unsigned int i) {
    const CoreString spelled = entry.get_word(i);
    entry.get_bool(i);
    entry.get_char(i);
    entry.get_int(i);
    entry.get_double(i);
    entry.get_string(i);
    entry.get_binary_data(i);
    entry.get_vec4d(i);
    entry.get_vec2i(i);
    require(entry.get_word(i) == spelled, "reading keeps the spelling");
}

void read_all(const ParserGroup& root) {
    std::vector<const ParserGroup*> pending = {&root};
    while (!pending.empty()) {
        const ParserGroup& group = *pending.back();
        pending.pop_back();
        for (const ParserEntry* entry : group.get_entries()) {
            for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                if (entry->is_value_group(i)) {
                    require(entry->get_group(i)->get_source_entry() == entry, "a group knows its entry");
                    pending.push_back(entry->get_group(i));
                } else {
                    read_every_way(*entry, i);
                }
            }
        }
        root.get_entries(group.get_entries().is_empty() ? "a" : group.get_entries()[0]->get_name(), false);
    }
}

/// Checks that at most one kind accepts the word.
void classify(const CoreString& text, const CoreVersion& version) {
    bool (ParserWord::*const classifiers[])()
        const = {&ParserWord::is_operator,    &ParserWord::is_separator, &ParserWord::is_brace,
                 &ParserWord::is_bool,        &ParserWord::is_int,       &ParserWord::is_double,
                 &ParserWord::is_string,      &ParserWord::is_keyword,   &ParserWord::is_empty_tag,
                 &ParserWord::is_binary_data, &ParserWord::is_identifier};
    for (const auto first : classifiers) {
        ParserWord word(text, true, version);
        int kinds = (word.*first)() ? 1 : 0;
        if (kinds == 1) {
            require(word.get_type() != ParserWord::TYPE_UNKNOWN, "a word that was recognised has a type");
            for (const auto other : classifiers) {
                kinds += other != first && (word.*other)() ? 1 : 0;
            }
            require(kinds == 1, "a word that was recognised is nothing else", plain(text));
        }
        word.get_string();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const CoreVersion version(1.0 + 0.1 * input.choose(3));
    const CoreString text = core(input.rest());
    CountingLog log;
    CheckedProgress progress;
    CheckedFaults faults(input.rest());
    ParserGroup watched("g");
    const bool result = watched.set_text(text, version, &progress, &faults);
    ParserGroup group("g");
    require(group.set_text(text, version, nullptr) == result, "watching does not change the result");
    require_none(tree_difference(watched, group), "watching does not change the tree");

    read_all(group);
    require_none(tree_difference(watched, group), "reading values does not change the tree");
    ParserGroup copy(group);
    require_none(tree_difference(copy, group), "a copy is equal");
    for (const bool pretty : {true, false}) {
        require(written(copy) == written(group), "a copy is written the same");
        CoreString printed;
        group.get_text(printed, true, pretty, 3);
    }
    copy.get_entries("a", true);
    classify(text, version);
    return 0;
}
