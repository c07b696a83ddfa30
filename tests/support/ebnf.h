#pragma once

#include <algorithm>
#include <bitset>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// A grammar in EBNF (ISO 14977): `name = terms ;` with "|", ",", "[ ]", "{ }", "( )", "-", quoted terminals, comments in (* *) and
/// special sequences in ? ?. Finds where a text of a rule can end, and makes random texts.
/// A special sequence, and a name that no rule defines, stands for a set of characters that the test gives.
class Ebnf {
public:
    using Set = std::bitset<256>;
    using Sets = std::map<std::string, Set, std::less<>>;
    using Ends = std::vector<std::size_t>; // ascending, each once

    Ebnf(std::string text, Sets sets) : own_(std::move(text)), text_(own_), sets_(std::move(sets)) {
        for (skip(); at_ < text_.size(); skip()) {
            const std::string name = take_name();
            expect("=");
            rules_[name] = alternatives();
            expect(";");
        }
    }

    Ebnf(const Ebnf&) = delete;
    Ebnf& operator=(const Ebnf&) = delete;

    /// Every place where a text of that rule can end when it begins at the beginning of `text`.
    Ends ends(const std::string& rule, std::string_view text) const {
        Memory memory;
        return ends(*resolve(rule), text, 0, memory);
    }
    bool matches(const std::string& rule, std::string_view text) const {
        const Ends found = ends(rule, text);
        return !found.empty() && found.back() == text.size();
    }
    /// The furthest of these places; 0 when no text of that rule begins there.
    std::size_t longest(const std::string& rule, std::string_view text, std::size_t at) const {
        const Ends found = ends(rule, text.substr(at));
        return found.empty() ? 0 : found.back();
    }
    template <class Random>
    std::string random(const std::string& rule, Random& random_number, int depth = 5) const {
        std::string out;
        while (!make(*resolve(rule), random_number, depth, out)) {
            out.clear();
        }
        return out;
    }

private:
    enum class Kind { set, literal, reference, sequence, choice, repeated, optional, difference };
    struct Node {
        Kind kind = Kind::sequence;
        Set set;
        std::string name; // the name of a reference, or the characters of a literal
        std::vector<std::unique_ptr<Node>> parts;
        mutable const Node* target = nullptr;
    };
    using Tree = std::unique_ptr<Node>;
    /// What is known about a rule at a place, so that no rule is tried twice there.
    struct Known {
        const Node* reference;
        Ends ends;
    };
    using Memory = std::vector<std::vector<Known>>; // by place

    // Reading the grammar.

    void skip() {
        for (;;) {
            at_ = std::min(text_.find_first_not_of(" \t\n", at_), text_.size());
            if (!text_.substr(at_).starts_with("(*")) {
                return;
            }
            at_ = text_.find("*)", at_) + 2;
        }
    }
    bool take(std::string_view sign) {
        skip();
        const bool found = text_.substr(at_).starts_with(sign);
        at_ += found ? sign.size() : 0;
        return found;
    }
    void expect(std::string_view sign) {
        if (!take(sign)) {
            throw std::runtime_error("'" + std::string(sign) + "' expected before '" +
                                     std::string(text_.substr(at_, 40)) + "'");
        }
    }
    std::string take_until(std::string_view sign) {
        const std::size_t end = text_.find(sign, at_);
        const std::string found(text_.substr(at_, end - at_));
        at_ = end + sign.size();
        return found;
    }
    std::string take_name() {
        skip();
        const std::size_t begin = at_;
        while (at_ < text_.size() &&
               (std::isalnum(static_cast<unsigned char>(text_[at_])) != 0 || text_[at_] == ' ')) {
            ++at_;
        }
        std::string name(text_.substr(begin, at_ - begin));
        name.erase(name.find_last_not_of(' ') + 1);
        if (name.empty()) {
            throw std::runtime_error("a name expected before '" + std::string(text_.substr(at_, 40)) + "'");
        }
        return name;
    }
    static Tree made(Kind kind, Tree first = nullptr) {
        auto node = std::make_unique<Node>();
        node->kind = kind;
        if (first) {
            node->parts.push_back(std::move(first));
        }
        return node;
    }
    static Tree made_of(const Set& set) {
        Tree node = made(Kind::set);
        node->set = set;
        return node;
    }
    Tree alternatives() {
        Tree first = sequence();
        if (!take("|")) {
            return first;
        }
        Tree all = made(Kind::choice, std::move(first));
        do {
            all->parts.push_back(sequence());
        } while (take("|"));
        return merged(std::move(all));
    }
    /// Turns a choice of single characters into one set.
    static Tree merged(Tree choice) {
        Set set;
        for (const Tree& part : choice->parts) {
            if (part->kind != Kind::set) {
                return choice;
            }
            set |= part->set;
        }
        return made_of(set);
    }
    Tree sequence() {
        Tree first = difference();
        if (!take(",")) {
            return first;
        }
        Tree all = made(Kind::sequence, std::move(first));
        do {
            all->parts.push_back(difference());
        } while (take(","));
        return all;
    }
    Tree difference() {
        Tree first = primary();
        if (!take("-")) {
            return first;
        }
        Tree without = primary();
        if (first->kind == Kind::set && without->kind == Kind::set) {
            return made_of(first->set & ~without->set);
        }
        Tree both = made(Kind::difference, std::move(first));
        both->parts.push_back(std::move(without));
        return both;
    }
    Tree primary() {
        if (take("(")) {
            Tree inner = alternatives();
            expect(")");
            return inner;
        }
        if (take("[")) {
            Tree node = made(Kind::optional, alternatives());
            expect("]");
            return node;
        }
        if (take("{")) {
            Tree node = made(Kind::repeated, alternatives());
            expect("}");
            return node;
        }
        if (take("?")) {
            std::string words = take_until("?");
            words.erase(0, words.find_first_not_of(' '));
            words.erase(words.find_last_not_of(' ') + 1);
            return named(words);
        }
        for (const char* quote : {"'", "\""}) {
            if (take(quote)) {
                return literal(take_until(quote));
            }
        }
        return named(take_name());
    }
    static Tree literal(const std::string& characters) {
        if (characters.size() == 1) {
            return made_of(Set().set(static_cast<unsigned char>(characters[0])));
        }
        Tree node = made(Kind::literal);
        node->name = characters;
        return node;
    }
    /// A set, a rule before this one that is a set, or a rule anywhere.
    Tree named(const std::string& name) {
        if (const auto set = sets_.find(name); set != sets_.end()) {
            return made_of(set->second);
        }
        if (const auto rule = rules_.find(name); rule != rules_.end() && rule->second->kind == Kind::set) {
            return made_of(rule->second->set);
        }
        Tree node = made(Kind::reference);
        node->name = name;
        return node;
    }
    const Node* resolve(const std::string& name) const {
        const auto rule = rules_.find(name);
        if (rule == rules_.end()) {
            throw std::runtime_error("no rule '" + name + "'");
        }
        return rule->second.get();
    }
    const Node& target(const Node& reference) const {
        if (reference.target == nullptr) {
            reference.target = resolve(reference.name);
        }
        return *reference.target;
    }

    // Reading a text.

    static void add_all(Ends& all, const Ends& more) {
        if (more.empty()) {
            return;
        }
        if (all.empty() || all.back() < more.front()) {
            all.insert(all.end(), more.begin(), more.end());
            return;
        }
        const auto middle = static_cast<std::ptrdiff_t>(all.size());
        all.insert(all.end(), more.begin(), more.end());
        std::inplace_merge(all.begin(), all.begin() + middle, all.end());
        all.erase(std::unique(all.begin(), all.end()), all.end());
    }
    Ends ends(const Node& node, std::string_view text, std::size_t at, Memory& memory) const {
        switch (node.kind) {
        case Kind::set:
            return at < text.size() && node.set[static_cast<unsigned char>(text[at])] ? Ends{at + 1} : Ends{};
        case Kind::literal:
            return text.substr(at).starts_with(node.name) ? Ends{at + node.name.size()} : Ends{};
        case Kind::reference: {
            if (memory.size() <= at) {
                memory.resize(at + 1);
            }
            for (const Known& known : memory[at]) {
                if (known.reference == &node) {
                    return known.ends;
                }
            }
            Ends found = ends(target(node), text, at, memory);
            memory[at].push_back({&node, found});
            return found;
        }
        case Kind::sequence: {
            Ends found{at};
            for (const Tree& part : node.parts) {
                Ends next;
                for (const std::size_t from : found) {
                    add_all(next, ends(*part, text, from, memory));
                }
                found = std::move(next);
            }
            return found;
        }
        case Kind::choice: {
            Ends found;
            for (const Tree& part : node.parts) {
                add_all(found, ends(*part, text, at, memory));
            }
            return found;
        }
        case Kind::optional: {
            Ends found{at};
            add_all(found, ends(*node.parts[0], text, at, memory));
            return found;
        }
        case Kind::repeated:
            return repeated_ends(*node.parts[0], text, at, memory);
        default: {
            Ends found = ends(*node.parts[0], text, at, memory);
            const Ends without = ends(*node.parts[1], text, at, memory);
            std::erase_if(found, [&](std::size_t end) {
                return std::binary_search(without.begin(), without.end(), end);
            });
            return found;
        }
        }
    }
    Ends repeated_ends(const Node& part, std::string_view text, std::size_t at, Memory& memory) const {
        Ends found{at};
        if (part.kind == Kind::set) {
            for (; at < text.size() && part.set[static_cast<unsigned char>(text[at])]; ++at) {
                found.push_back(at + 1);
            }
            return found;
        }
        Ends news = found;
        while (!news.empty()) {
            Ends next;
            for (const std::size_t from : news) {
                add_all(next, ends(part, text, from, memory));
            }
            news.clear();
            std::set_difference(next.begin(), next.end(), found.begin(), found.end(),
                                std::back_inserter(news));
            add_all(found, news);
        }
        return found;
    }

    // Making a text.

    template <class Random>
    static unsigned int below(unsigned int limit, Random& random_number) {
        return static_cast<unsigned int>(random_number() % limit);
    }
    /// Returns false when the text that was made is one that an exception ("-") excludes.
    template <class Random>
    bool make(const Node& node, Random& random_number, int depth, std::string& out) const {
        switch (node.kind) {
        case Kind::set:
            out += random_of(node.set, random_number);
            return true;
        case Kind::literal:
            out += node.name;
            return true;
        case Kind::reference:
            return make(target(node), random_number, depth - 1, out);
        case Kind::sequence:
            return std::all_of(node.parts.begin(), node.parts.end(),
                               [&](const Tree& part) { return make(*part, random_number, depth, out); });
        case Kind::choice:
            return make(*node.parts[below(static_cast<unsigned int>(node.parts.size()), random_number)],
                        random_number, depth, out);
        case Kind::optional:
            return below(2, random_number) == 0 || depth < 0 ||
                   make(*node.parts[0], random_number, depth, out);
        case Kind::repeated:
            while (depth >= 0 && below(2, random_number) != 0) {
                if (!make(*node.parts[0], random_number, depth, out)) {
                    return false;
                }
            }
            return true;
        default: {
            std::string made;
            const bool is_made = make(*node.parts[0], random_number, depth, made);
            Memory memory;
            const Ends without = ends(*node.parts[1], made, 0, memory);
            out += made;
            return is_made && (without.empty() || without.back() != made.size());
        }
        }
    }
    /// A character, mostly a printable one.
    template <class Random>
    static char random_of(const Set& set, Random& random_number) {
        for (int attempt = 0;; ++attempt) {
            const unsigned int character =
                attempt < 50 ? 32 + below(95, random_number) : below(256, random_number);
            if (set[character]) {
                return static_cast<char>(character);
            }
        }
    }

    std::string own_;
    std::string_view text_;
    Sets sets_;
    std::map<std::string, Tree> rules_;
    std::size_t at_ = 0;
};
