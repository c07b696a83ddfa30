#pragma once

#include <random>
#include <string>
#include <utility>
#include <vector>

/// Documents of several files with comments in odd places. Each comment has a text of its own, such as "//c7". Some documents have words
/// that the grammar skips, each with a text of its own, too, such as "%7%".
class OddLayout {
public:
    explicit OddLayout(unsigned int seed) : random_(seed) {
        feed_ = below(4) == 0 ? "\r\n" : "\n";
        unit_ = below(3) == 0 ? "\t" : std::string(1 + below(4), ' ');
        has_faults_ = below(4) == 0;
        const unsigned int parts = below(4);
        for (unsigned int i = 0; i < parts; ++i) {
            files_.emplace_back("part" + std::to_string(i), "");
        }
        // A file includes only later ones, so that none includes itself.
        for (unsigned int i = parts; i-- > 0;) {
            next_part_ = i + 1;
            files_[i].second = file();
        }
        next_part_ = 0;
        std::string text = below(3) == 0 ? "\xEF\xBB\xBF" : "";
        text += "#Brellwick_Serial_Version 1.2" + feed_ + file();
        files_.insert(files_.begin(), {"document", text});
    }

    const std::vector<std::pair<std::string, std::string>>& files() const { return files_; }
    bool has_faults() const { return has_faults_; }
    bool has_shared_part() const { return has_shared_part_; }

private:
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }
    std::string number() { return std::to_string(++last_number_); }

    std::string file() {
        std::string text = entries(3, "");
        if (below(3) == 0) {
            while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
                text.pop_back();
            }
        }
        return text;
    }

    std::string comment() { return (below(3) == 0 ? "// " : "//") + std::string("c") + number(); }

    std::string line_end() {
        std::string text = below(3) == 0 ? " " + comment() : below(6) == 0 ? "  \t" : "";
        text += feed_;
        while (below(4) == 0) {
            text += below(2) == 0 ? feed_ : std::string(below(6), ' ') + comment() + feed_;
        }
        return text;
    }

    /// A separator between two words.
    std::string between(bool in_line) {
        if (!in_line && below(8) == 0) {
            return line_end() + std::string(below(5), ' ');
        }
        return below(4) == 0 ? "  " : below(5) == 0 ? "\t" : " ";
    }

    std::string value() {
        static const char* const words[] = {"1",
                                            "-7",
                                            "0042",
                                            "2.50",
                                            "yes",
                                            "no",
                                            "\"\"",
                                            "\"a { b\"",
                                            "\"x // y\"",
                                            "0x01FF00010000",
                                            "\"it's \\\"q\\\"\""};
        return words[below(11)];
    }

    std::string values(unsigned int count, bool in_line) {
        std::string text;
        for (unsigned int i = 0; i < count; ++i) {
            text += i == 0          ? ""
                    : below(3) == 0 ? std::string(below(2), ' ') + "," + between(in_line)
                                    : between(in_line);
            text += value();
            if (has_faults_ && below(12) == 0) {
                text += " %" + number() + "%";
            }
        }
        return text;
    }

    std::string name() { return std::string(1, static_cast<char>('a' + below(26))); }

    std::string entry(unsigned int depth, const std::string& indent, bool in_line) {
        switch (below(10)) {
        case 0:
            return name() + "(" + values(below(3), in_line) + ")";
        case 1:
            return "#" + name() + " " + values(1 + below(3), in_line);
        case 2:
            return name() + (below(2) == 0 ? "<t>" : "[2]") + between(in_line) +
                   values(1 + below(3), in_line);
        case 3:
            return name() + between(true) + "<empty>";
        case 4:
        case 5:
        case 6:
            if (depth != 0) {
                return name() + (below(4) == 0 ? between(in_line) + value() : "") +
                       group(depth - 1, indent, in_line);
            }
            [[fallthrough]];
        default:
            return name() + (below(5) == 0 ? " =" : "") + between(in_line) + values(1 + below(4), in_line);
        }
    }

    std::string group(unsigned int depth, const std::string& indent, bool in_line) {
        std::string text = between(in_line) + "{";
        if (in_line || below(4) == 0) {
            for (unsigned int i = below(3); i > 0; --i) {
                text += between(in_line) + entry(depth, indent, in_line);
            }
            return text + (below(2) == 0 ? " }" : "}");
        }
        return text + line_end() + entries(depth, indent + unit_) + indent + "}";
    }

    std::string include() {
        if (next_part_ >= files_.size()) {
            return "";
        }
        const auto part = next_part_ + below(static_cast<unsigned int>(files_.size()) - next_part_);
        has_shared_part_ = has_shared_part_ || is_included_[part % 8];
        is_included_[part % 8] = true;
        return "#include \"part" + std::to_string(part) + "\"";
    }

    std::string entries(unsigned int depth, const std::string& indent) {
        std::string text;
        for (unsigned int i = below(6); i > 0; --i) {
            const std::string directive = below(5) == 0 ? include() : "";
            text += indent + (directive.empty() ? entry(depth, indent, false) : directive);
            while (directive.empty() && below(8) == 0) {
                text += " " + entry(depth, indent, true);
            }
            text += has_faults_ && below(8) == 0 ? " %" + number() + "%" : "";
            text += line_end();
        }
        return text;
    }

    std::mt19937 random_;
    std::string feed_;
    std::string unit_;
    bool has_faults_ = false;
    bool has_shared_part_ = false;
    bool is_included_[8] = {};
    unsigned int next_part_ = 0;
    unsigned int last_number_ = 0;
    std::vector<std::pair<std::string, std::string>> files_;
};
