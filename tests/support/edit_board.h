#pragma once

#include "parser/parser_word.h"
#include "tests/support/run_out.h"

#include <sstream>
#include <utility>
#include <vector>

/// One object of each kind that can be edited, and a text that describes their whole observable state.
class EditBoard {
public:
    EditBoard() {
        group.set_text(core_text(text), default_parser_serial_version, nullptr);
        dest.set_text(CoreString("x 1 #y 2 z 3"), default_parser_serial_version, nullptr);
        odd.set_text(CoreString("p 1 q 2 r 3 s 4 t 5"), default_parser_serial_version, nullptr);
        for (unsigned int i = 0; i < 4; ++i) { // these are not in the index
            odd.get_entries()[i]->set_as_raw_text(true);
        }
        values.set_text(core_text(text), default_parser_serial_version, nullptr);
        sharer = *values.get_entry("b");
        fielded.set_template("a_template_of_a_long_name");
        fielded.set_array(true, 7);
        fielded.add_int(1);
        for (const char* added : {"one", "a word that is longer than eleven", "three", "four"}) {
            strings.add(CoreString(added));
            array.resize(array.get_count() + 1);
            set.add(CoreString(added));
            archive += CoreString(added);
        }
        for (int i = 0; i < 5; ++i) { // more than the slots of the other one have room for
            other_set.add(core_text("a long name with the number " + std::to_string(i)));
            other_archive += core_text("a long word with the number " + std::to_string(i));
        }
        list.add(long_text);
        file.set_filename("folder_of_a_name/file_of_a_name.bkd");
        other_file.set_filename("other_folder_of_a_name/file_of_a_name.bkd");
        other_file.set_search_paths(strings);
        other_file.get_root().set(dest);
        archive += long_text;
        while (archive.indices.get_count() <
               archive.indices.get_capacity()) { // so that the next one must allocate
            archive += long_text;
        }
    }

    std::string describe() const {
        out_.str("");
        for (const ParserGroup* one : std::initializer_list<const ParserGroup*>{
                 &group, &dest, &odd, &values, adopted.get(), &file.get_root(), &other_file.get_root(),
                 refused.get()}) {
            put(one);
        }
        for (const ParserEntry* one : std::initializer_list<const ParserEntry*>{
                 &sharer, &fielded, &empty, adopted_entry.get(), adopted_keyword.get()}) {
            put(one);
        }
        put_all(strings);
        put_all(array);
        put_all(list);
        put_all(set);
        for (const CoreString& element : strings) {
            out_ << set.exists(element);
        }
        for (const ParserArchive* one : {&archive, &other_archive}) {
            put_all(one->strings);
            put_all(one->indices);
        }
        for (const ParserFile* one : {&file, &other_file}) {
            out_ << one->get_filename().get_view() << &one->get_root()
                 << one->get_serial_version().get_value();
            put_all(one->get_search_paths());
            put_all(one->get_dependencies());
        }
        for (const ParserWord* one : {&word, &other_word}) {
            out_ << one->get_type() << '.' << one->get_length() << '[' << one->get_array_count() << ']'
                 << one->has_template();
        }
        out_ << string.get_view() << stream.get_message().get_view()
             << string_value.get_as_string().get_view() << int_value.get_as_int();
        return out_.str();
    }

    static inline const std::string text =
        "a 1 #k 2 b 3 \"a string of more than eleven\" 4.5 c { d 4 } #l 5 b 6 e <empty> ";
    const CoreString name{"a_name_longer_than_eleven"};
    const CoreString keyword{"#keyword_longer_than_eleven"};
    const CoreString long_text{"a text that is longer than eleven characters"};
    ParserGroup group{"group"};
    ParserGroup dest{"dest_of_a_long_name"};
    ParserGroup odd{"odd"};
    ParserGroup values{"values"};
    ParserEntry sharer{"sharer", ParserEntry::TYPE_ENTRY, 1, 2};
    ParserEntry fielded{"fielded_of_a_long_name", ParserEntry::TYPE_FUNCTION_CALL, 3, 4};
    ParserEntry empty{"empty", ParserEntry::TYPE_ENTRY, 5, 6};
    std::unique_ptr<ParserEntry> adopted_entry =
        std::make_unique<ParserEntry>(name, ParserEntry::TYPE_ENTRY, 0, 0);
    std::unique_ptr<ParserEntry> adopted_keyword =
        std::make_unique<ParserEntry>(keyword, ParserEntry::TYPE_KEYWORD, 0, 0);
    std::unique_ptr<ParserGroup> adopted = std::make_unique<ParserGroup>(name);
    std::unique_ptr<ParserGroup> refused = std::make_unique<ParserGroup>(keyword);
    ParserValue string_value{CoreString("a value that is longer than eleven")};
    ParserValue int_value{5};
    CoreVector<CoreString> strings;
    CoreArray<CoreString> array;
    CoreList<CoreString> list;
    CoreSet<CoreString> set;
    CoreSet<CoreString> other_set;
    CoreString string{"a string of a certain length"};
    CoreLogStream stream;
    const CoreString word_text{"a_long_identifier<with_a_template[2]>"};
    const CoreString string_word_text{"\"a string \\t that has an escape\""};
    ParserWord word{word_text, true, CoreVersion(1.2)};
    ParserWord other_word{string_word_text, true, CoreVersion(1.2)};
    ParserArchive archive;
    ParserArchive other_archive;
    ParserFile file{CoreString()};
    ParserFile other_file{CoreString()};

private:
    void put(const ParserGroup* one) const {
        if (one == nullptr) {
            out_ << "(none)";
            return;
        }
        out_ << '\n' << one << one->get_name().get_view() << one->get_source_entry() << ':';
        for (unsigned int i = 0; i < one->get_entry_count(); ++i) {
            out_ << one->get_entry(i) << ' ';
        }
        for (const ParserEntry* entry : one->get_entries()) {
            put(entry);
        }
    }
    void put(const ParserEntry* one) const {
        if (one == nullptr) {
            out_ << "(none)";
            return;
        }
        CoreString values_text;
        one->get_text(values_text, false, 1);
        out_ << one << one->get_name().get_view() << one->get_type() << one->get_template().get_view() << '@'
             << one->get_line() << '.' << one->get_column() << '[' << one->get_array_count() << ']'
             << values_text.get_view() << one->get_value_count() << ';';
    }
    template <class Elements>
    void put_all(const Elements& elements) const {
        out_ << '\n';
        for (const auto& element : elements) {
            put_element(element);
        }
    }
    void put_element(const CoreString& element) const { out_ << '\'' << element.get_view() << '\''; }
    void put_element(unsigned int element) const { out_ << element << ' '; }

    mutable std::ostringstream out_;
};
