#include "core/reports/app_progress_impl.h"
#include "core/reports/core_guard_impl.h"
#include "parser/archive/parser_archive_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "parser/text/parser_text_reader_impl.h"
#include "parser/text/parser_text_writer_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <deque>
#include <optional>
#include <string_view>
#include <utility>

namespace {

/// Adds the words of trees to an archive, walking with an explicit stack.
class Archiver {
public:
    Archiver(ParserArchive& archive, AppProgressBar* progress) : archive_(archive), progress_(progress) {}

    void add_group(const ParserGroup& group, bool with_braces) {
        open_group(group, with_braces);
        run();
    }
    void add_entry(const ParserEntry& entry) {
        const ParserEntry* const one = &entry;
        open_level(&one, 1);
        run();
    }
    void add_value(const bk::StoredValue& value) {
        if (const ParserGroup* group = value.group()) {
            add_group(*group, true);
        } else {
            add_word_of(value);
        }
    }

private:
    /// A run of entries that is being added, and how far it has come.
    struct Level {
        const ParserEntry* const* entries = nullptr;
        unsigned int entry_count = 0;
        unsigned int next_entry = 0;
        unsigned int next_value = 0;
        bool has_braces = false;
        bool has_tasks = false; // each entry is a task of its own
        bool is_in_entry = false;
        std::optional<bk::ProgressTask> task;
    };

    void open_group(const ParserGroup& group, bool with_braces) {
        if (with_braces) {
            if (!group.get_name().is_empty()) {
                archive_ += group.get_name();
            }
            archive_ += "{";
        }
        const CoreVector<ParserEntry*>& entries = group.get_entries();
        Level& level = open_level(entries.get_data(), entries.get_count());
        level.has_braces = with_braces;
        level.has_tasks = true;
    }

    Level& open_level(const ParserEntry* const* entries, unsigned int entry_count) {
        Level& level = levels_.emplace_back();
        level.entries = entries;
        level.entry_count = entry_count;
        return level;
    }

    void run() {
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.is_in_entry) {
                if (add_values(level)) {
                    end_task(level);
                    level.is_in_entry = false;
                }
            } else if (level.next_entry < level.entry_count) {
                if (const ParserEntry* entry = level.entries[level.next_entry++]) {
                    begin_entry(level, *entry);
                }
            } else {
                if (level.has_braces) {
                    archive_ += "}";
                }
                levels_.pop_back();
            }
        }
    }

    static void end_task(Level& level) {
        if (level.task.has_value()) {
            level.task->end();
            level.task.reset();
        }
    }

    void begin_entry(Level& level, const ParserEntry& entry) {
        if (level.has_tasks) {
            level.task.emplace(progress_, 1.0f / static_cast<float>(level.entry_count));
        }
        level.next_value = 0;
        level.is_in_entry = true;
        add_head(entry);
        if (entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL) {
            archive_ += "(";
        } else if (!entry.has_value()) {
            archive_ += CoreString(bk::empty_tag);
        }
    }

    void add_head(const ParserEntry& entry) {
        if (!entry.is_template() && !entry.is_array()) {
            archive_ += entry.get_name();
            return;
        }
        CoreString head = entry.get_name();
        if (entry.is_template()) {
            head += '<';
            head += entry.get_template();
            head += '>';
        }
        if (entry.is_array()) {
            head += '[';
            if (entry.get_array_count() != 0) {
                head += entry.get_array_count();
            }
            head += ']';
        }
        archive_ += head;
    }

    /// Returns false at a group, which has to be added before the values after it.
    bool add_values(Level& level) {
        const ParserEntry& entry = *level.entries[level.next_entry - 1];
        const bool is_call = entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL;
        while (level.next_value < entry.get_value_count()) {
            if (is_call && level.next_value != 0) {
                archive_ += ",";
            }
            const bk::StoredValue& value = bk::EntryAccess::value(entry, level.next_value++);
            if (const ParserGroup* group = value.group()) {
                open_group(*group, true);
                return false;
            }
            add_word_of(value);
        }
        if (is_call) {
            archive_ += ")";
        }
        return true;
    }

    void add_word_of(const bk::StoredValue& value) {
        CoreString word;
        {
            bk::TextWriter writer(word, false);
            writer.write_value(value, 0);
            writer.finish();
        }
        archive_ += word;
    }

    ParserArchive& archive_;
    bk::Progress progress_;
    std::deque<Level> levels_; // a deque does not move its elements, and a task cannot be moved
};

/// Adds all words, or none when memory runs out or the host throws.
template <class Action>
void add_all_or_none(ParserArchive& archive, const char* operation, Action action) {
    const unsigned int string_count = archive.strings.get_count();
    const unsigned int index_count = archive.indices.get_count();
    bk::completed(operation, [&] {
        try {
            action();
        } catch (...) {
            archive.strings.truncate(string_count);
            archive.indices.truncate(index_count);
            throw;
        }
    });
}

} // namespace

void bk::add_words(ParserArchive& archive, const ParserGroup& group) {
    Archiver(archive, nullptr).add_group(group, false);
}

void ParserImpl::archive_group(ParserGroup& group, ParserArchive& archive, const bool& with_braces,
                               AppProgressBar* progress) {
    add_all_or_none(archive, "ParserImpl.archive_group",
                    [&] { Archiver(archive, progress).add_group(group, with_braces); });
}

void ParserImpl::archive_entry(ParserEntry& entry, ParserArchive& archive, AppProgressBar* progress) {
    add_all_or_none(archive, "ParserImpl.archive_entry",
                    [&] { Archiver(archive, progress).add_entry(entry); });
}

void ParserImpl::archive_value(ParserValue& value, ParserArchive& archive, AppProgressBar* progress) {
    add_all_or_none(archive, "ParserImpl.archive_value",
                    [&] { Archiver(archive, progress).add_value(bk::StoredValue::of(value)); });
}

void ParserImpl::group_set_archive(ParserGroup& group, const ParserArchive& archive,
                                   AppProgressBar* progress) {
    group_set_archive(group, archive, progress, ParserLimits());
}

bool ParserImpl::group_set_archive(ParserGroup& group, const ParserArchive& archive, AppProgressBar*,
                                   const ParserLimits& limits) {
    if (!bk::is_text_within(archive, limits)) {
        bk::report_warning("ParserImpl.group_set_archive: text too large\n");
        return false;
    }
    CoreString text;
    return get_archive_text(archive, text, limits) &&
           bk::read_text(group, text, default_parser_serial_version, bk::Progress(nullptr), nullptr,
                         limits) != bk::TextResult::stopped;
}

bool ParserImpl::get_archive_text(const ParserArchive& archive, CoreString& text,
                                  const ParserLimits& limits) {
    return bk::is_text_within(archive, limits) &&
           bk::completed("ParserImpl.get_archive_text", [&] { text = bk::join_words(archive, nullptr); });
}
