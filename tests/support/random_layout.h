#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

/// Random documents of several files in the layouts that people use: comments, blank lines, line ends of both kinds, tabs, commas and "=",
/// groups on one line. Also makes random changes of their trees, and says how many lines each change may touch.
class RandomLayout {
public:
    explicit RandomLayout(unsigned int seed) : random_(seed) {
        feed_ = below(3) == 0 ? "\r\n" : "\n";
        indent_ = below(2) == 0 ? "\t" : std::string(1 + below(4), ' ');
        const unsigned int includes = below(3);
        std::string text = below(2) == 0 ? "#Brellwick_Serial_Version 1.2" + feed_ : "";
        for (unsigned int i = 0; i <= includes; ++i) {
            text += entries(2, 0);
            if (i < includes) {
                const std::string name = "part" + std::to_string(i);
                text += "#include \"" + name + "\"" + (below(2) == 0 ? " // it" : "") + feed_;
                files_.emplace_back(name, entries(2, 0));
            }
        }
        if (below(3) == 0 && text.ends_with(feed_)) {
            text.resize(text.size() - feed_.size());
        }
        files_.insert(files_.begin(), {"document", text});
    }

    const std::vector<std::pair<std::string, std::string>>& files() const { return files_; }

    /// Changes the tree once. Returns how many lines of the files the change may remove and add.
    unsigned int edit(ParserGroup& root) {
        ParserGroup& group = any_group(root);
        const unsigned int count = group.get_entries().get_count();
        if (count == 0 || below(5) == 0) {
            return add(group);
        }
        const unsigned int at = below(count);
        ParserEntry& entry = *group.get_entries()[at];
        switch (below(6)) {
        case 0:
            group.remove_entry(at);
            return lines_of(entry_lines_);
        case 1: {
            const unsigned int to = below(count);
            group.move_entry(at, to);
            return lines_of(entry_lines_);
        }
        case 2:
            entry.rename(core(entry.get_type() == ParserEntry::TYPE_KEYWORD ? "#renamed" : "renamed"));
            return 2;
        case 3:
            if (entry.has_value() && !entry.is_value_group(entry.get_value_count() - 1)) {
                entry.add_int(static_cast<int>(below(100)));
                return 2;
            }
            return 0;
        case 4:
            if (entry.has_value() && !entry.is_value_group(0)) {
                entry.remove_value(0u);
                return 2 + 2 * 3;
            }
            return 0;
        default:
            if (entry.has_value() && !entry.is_value_group(0)) {
                entry.set_string(core("new \\\" text" + std::to_string(below(100))), 0);
                if (files_[0].second.find("Version 1.2") == std::string::npos) {
                    entry.set_int(static_cast<int>(below(1000)), 0);
                }
                return 2;
            }
            return 0;
        }
    }

private:
    static constexpr unsigned int entry_lines_ = 400;

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }
    static unsigned int lines_of(unsigned int lines) { return 2 * lines; }

    ParserGroup& any_group(ParserGroup& root) {
        ParserGroup* group = &root;
        while (below(3) != 0) {
            std::vector<ParserGroup*> inner;
            for (ParserEntry* const entry : group->get_entries()) {
                const unsigned int last = entry->get_value_count() - 1;
                if (entry->has_value() && entry->is_value_group(last)) {
                    inner.push_back(entry->get_group(last));
                }
            }
            if (inner.empty()) {
                break;
            }
            group = inner[below(static_cast<unsigned int>(inner.size()))];
        }
        return *group;
    }

    unsigned int add(ParserGroup& group) {
        const unsigned int count = group.get_entries().get_count();
        if (below(3) == 0) {
            ParserGroup& made = *group.add_group("made");
            made.add_entry("one", 0, 0)->add_int(1);
            made.add_entry("two", 0, 0)->add_bool(true);
            group.move_entry(count, below(count + 1));
            return 4 + 2;
        }
        group.add_entry("made", 0, 0)->add_int(1);
        group.move_entry(count, below(count + 1));
        return 1 + 2; // the line before may get a line end
    }

    std::string blank() { return below(4) == 0 ? "  " : below(6) == 0 ? "\t" : " "; }

    std::string line_end() {
        std::string result = below(4) == 0 ? " // it's a \"comment\" { of 1 }" : below(8) == 0 ? "  " : "";
        result += feed_;
        while (below(6) == 0) {
            result += below(2) == 0 ? feed_ : "// a line" + feed_;
        }
        return result;
    }

    std::string value() {
        static const char* const words[] = {
            "1",    "-7",        "0042",       "2.50",           "1e5",     "yes", "no",
            "\"\"", "\"a { b\"", "\"x // y\"", "0x01FF00010000", "\"it's\""};
        return words[below(12)];
    }

    std::string entry(unsigned int depth, const std::string& indent, bool in_line) {
        std::string text(1, static_cast<char>('a' + below(26)));
        if (below(8) == 0) {
            text = "#" + text;
        } else if (below(8) == 0) {
            return text + "(" + (below(2) == 0 ? value() + " , " + value() : "") + ")";
        } else if (below(6) == 0) {
            text += below(2) == 0 ? "<t>" : "[3]";
        }
        if (below(10) == 0) {
            return text + blank() + "<empty>";
        }
        const bool has_group = depth != 0 && below(3) == 0;
        const unsigned int count = has_group ? (below(4) == 0 ? 1 : 0) : 1 + below(4);
        for (unsigned int i = 0; i < count; ++i) {
            text += i == 0 ? (below(5) == 0 ? " =" + blank() : blank()) : below(3) == 0 ? ", " : blank();
            if (i != 0 && !in_line && below(12) == 0) {
                text += "// why" + feed_ + indent + "   ";
            }
            text += value();
        }
        if (!has_group) {
            return text;
        }
        text += below(5) == 0 ? "{" : " {";
        if (in_line || below(4) == 0) {
            for (unsigned int i = below(3); i > 0; --i) {
                text += blank() + entry(depth - 1, indent, true);
            }
            return text + " }";
        }
        return text + line_end() +
               entries(depth - 1, static_cast<unsigned int>(indent.size() / indent_.size()) + 1) + indent +
               "}";
    }

    std::string entries(unsigned int depth, unsigned int level) {
        std::string indent;
        for (unsigned int i = 0; i < level; ++i) {
            indent += indent_;
        }
        std::string text;
        for (unsigned int i = below(6); i > 0; --i) {
            text += indent + entry(depth, indent, false);
            while (below(8) == 0) {
                text += blank() + entry(depth, indent, true);
            }
            text += line_end();
        }
        return text;
    }

    std::mt19937 random_;
    std::string feed_;
    std::string indent_;
    std::vector<std::pair<std::string, std::string>> files_;
};
