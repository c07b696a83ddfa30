#include "document/save/forms/losses_impl.h"

#include "document/path.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/save/edits/layout_print_impl.h"
#include "document/save/record/value_text_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/words/parser_characters_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <optional>
#include <string_view>

namespace bk_parser {

namespace {

constexpr char lost_in_archives = 0x0F;

class LossFinder {
public:
    LossFinder(Form form, bool has_escapes) : form_(form), has_escapes_(has_escapes) {}

    std::vector<Problem> run(const ParserGroup& root) {
        root_ = &root;
        levels_.push_back({&root, 0, 0});
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.entry == level.group->get_entries().get_count()) {
                levels_.pop_back();
                continue;
            }
            const ParserEntry* const entry = level.group->get_entries()[level.entry];
            if (entry != nullptr && level.value == 0) {
                check_entry(*entry);
            }
            if (entry == nullptr || !enter_next_group(level, *entry)) {
                level.value = 0;
                ++level.entry;
            }
        }
        return std::move(losses_);
    }

private:
    struct Level {
        const ParserGroup* group;
        unsigned int entry;
        unsigned int value; // the next value
    };

    bool is_text() const noexcept { return form_ != Form::binary; }

    bool enter_next_group(Level& level, const ParserEntry& entry) {
        while (level.value < entry.get_value_count()) {
            if (const ParserGroup* const group = bk::EntryAccess::value(entry, level.value++).group()) {
                levels_.push_back({group, 0, 0}); // invalidates `level`
                return true;
            }
        }
        return false;
    }

    void lose(std::string_view code, const char* what) {
        Problem problem;
        problem.code = code;
        if (!paths_) {
            paths_.emplace(*root_); // one walk of the tree, however many losses there are
        }
        const Level& level = levels_.back();
        problem.message = on_one_line(paths_->path_of(*level.group->get_entries()[level.entry]));
        problem.message += ": ";
        problem.message += what;
        losses_.push_back(std::move(problem));
    }

    void check_entry(const ParserEntry& entry) {
        if (is_text()) {
            check_text_head(entry);
        } else {
            check_binary_head(entry);
        }
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            const bk::StoredValue& value = bk::EntryAccess::value(entry, i);
            if (value.type() == ParserValue::TYPE_GROUP) {
                check_group(entry, value, i);
            } else if (is_text()) {
                check_text_value(entry, value, i);
            } else {
                check_binary_value(value);
            }
        }
    }

    void check_text_head(const ParserEntry& entry) {
        const std::string_view name = entry.get_name().get_view();
        bool is_keyword = false;
        if (entry.get_type() == ParserEntry::TYPE_RAW_TEXT) {
            lose("raw-text", "raw text reads back as whatever it spells");
            return;
        }
        bk::NameParts parts;
        bk::NameParts template_parts;
        const bool is_name =
            bk::is_entry_name(name, is_keyword) &&
            (is_keyword || (bk::classify_name(name, parts, template_parts) == bk::NameKind::identifier &&
                            parts.base.size() == name.size()));
        const bool is_kind = is_keyword == (entry.get_type() == ParserEntry::TYPE_KEYWORD);
        if (!is_name || !is_kind) {
            lose("name-changes", "the name reads back as something else");
        } else if (is_keyword && (entry.is_template() || entry.is_array())) {
            lose("name-changes", "a keyword has neither template nor array count in a text");
        } else if (entry.is_template() && entry.is_array()) {
            lose("template-with-array", "a name has a template or an array count in a text, not both");
        } else if (entry.is_template() && !is_plain_name(entry.get_template().get_view())) {
            lose("name-changes", "the template is no name");
        }
        if (levels_.size() == 1 && name == bk::version_keyword) {
            lose("directive", "an entry of this name states the version, and is no part of the document");
        }
        if (form_ != Form::archive && name == "#include" && entry.has_value() && entry.is_value_string(0)) {
            lose("directive", "reads back as an include");
        }
    }

    static bool is_plain_name(std::string_view name) {
        bool is_keyword = false;
        bk::NameParts parts;
        bk::NameParts template_parts;
        return bk::is_entry_name(name, is_keyword) && !is_keyword &&
               bk::classify_name(name, parts, template_parts) == bk::NameKind::identifier &&
               parts.base.size() == name.size();
    }

    void check_binary_head(const ParserEntry& entry) {
        const std::string_view name = entry.get_name().get_view();
        if (name.empty() || name.find('\0') != std::string_view::npos) {
            lose("name-changes", "the binary form has no such name");
        }
        if (entry.get_type() != ParserEntry::TYPE_ENTRY) {
            lose("kind-lost", "the binary form keeps no kind: it reads back as a plain entry");
        }
        if (entry.is_template()) {
            lose("template-lost", "the binary form keeps no template");
        }
        if (entry.is_array()) {
            lose("array-lost", "the binary form keeps no array count");
        }
    }

    void check_group(const ParserEntry& entry, const bk::StoredValue& value, unsigned int i) {
        const ParserGroup* const group = value.group();
        if (group == nullptr) {
            lose("value-empty", "a value that was cleared");
            return;
        }
        if (!group->get_name().is_empty()) {
            lose("group-name-lost", "the name of a group that is a value");
        }
        if (is_text() && i + 1 < entry.get_value_count()) {
            lose("value-behind-group", "a text has no value after a group");
        }
        if (is_text() && entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL) {
            lose("group-in-arguments", "a text has no group in an argument list");
        }
    }

    void check_text_value(const ParserEntry& entry, const bk::StoredValue& value, unsigned int i) {
        const ParserValue::Type type = value.type();
        if (type == ParserValue::TYPE_STRING) {
            check_text_string(entry, value.held_string().get_view(), i);
            return;
        }
        if (type == ParserValue::TYPE_CHAR) {
            lose("char-becomes-int", "a character reads back as an int");
            return;
        }
        const std::string word = print_value(value, {});
        const bool is_name = type != ParserValue::TYPE_BOOL && !word.empty() &&
                             bk::is_char(word.front(), bk::CHAR_NAME_START); // nan, for example
        if (is_name || !reads_as(bk::classify_value(word), word, value, has_escapes_)) {
            lose("value-changes", "a value reads back as another one, or as none");
        }
    }

    void check_text_string(const ParserEntry& entry, std::string_view text, unsigned int i) {
        const bool is_last =
            i + 1 == entry.get_value_count() && entry.get_type() != ParserEntry::TYPE_FUNCTION_CALL;
        const bool stands_alone = is_last && form_ != Form::archive;
        if (text.ends_with('\\') && !stands_alone) {
            lose("string-ends-in-backslash", "a string that ends in a backslash takes in what follows it");
        }
        if (!has_escapes_ && text.find_first_of("\"\n\r") != std::string_view::npos) {
            lose("string-needs-escapes", "texts of this version have no quotes and line ends in strings");
        }
        if (form_ == Form::archive) {
            if (text.find(lost_in_archives) != std::string_view::npos) {
                lose("string-cut", "an archive ends a string at the byte 0x0F");
            }
        } else if (text.find(bk::version_directive) != std::string_view::npos || spells_include(text)) {
            lose("directive", "a string with a directive, which is found there, too");
        }
    }

    /// Whether the printed string contains the beginning of an include directive. In a text with escapes, only the quote that ends the
    /// string can begin the name of the file: a quote inside is escaped.
    bool spells_include(std::string_view text) const {
        const std::string quoted = std::string(text) + '"';
        return has_escapes_ ? quoted.ends_with(bk::include_directive)
                            : quoted.find(bk::include_directive) != std::string::npos;
    }

    void check_binary_value(const bk::StoredValue& value) {
        const ParserValue::Type type = value.type();
        if (type == ParserValue::TYPE_WORD) {
            lose("value-empty", "a bare word");
        } else if (type == ParserValue::TYPE_STRING &&
                   value.held_string().get_view().find('\0') != std::string_view::npos) {
            lose("string-cut", "the binary form ends a string at a NUL");
        }
    }

    Form form_;
    bool has_escapes_;
    const ParserGroup* root_ = nullptr;
    std::optional<PathIndex> paths_; // made for the first loss
    std::vector<Level> levels_;
    std::vector<Problem> losses_;
};

} // namespace

std::vector<Problem> find_losses(const ParserGroup& root, Form form, bool has_escapes) {
    return LossFinder(form, has_escapes).run(root);
}

} // namespace bk_parser
