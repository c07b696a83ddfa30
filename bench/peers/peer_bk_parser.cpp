#include "bench/peers/peer_list.h"
#include "bench/peers/turns.h"
#include "core/core_version.h"
#include "parser/parser_group.h"

#include <algorithm>

namespace bench {

namespace {

void walk_value(const ParserEntry& entry, unsigned int i, Checksum& sum) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_BOOL:
        sum.flag(entry.get_bool(i));
        break;
    case ParserValue::TYPE_INT:
        sum.integer(entry.get_int(i));
        break;
    case ParserValue::TYPE_DOUBLE:
        sum.decimal(entry.get_double(i));
        break;
    case ParserValue::TYPE_STRING:
        sum.string(entry.get_string(i).get_view());
        break;
    default:
        break;
    }
}

void walk_group(const ParserGroup& group, Checksum& sum) {
    for (const ParserEntry* entry : group.get_entries()) {
        if (entry->is_group()) {
            if (entry->is_template()) {
                sum.string(entry->get_template().get_view());
            }
            walk_group(*entry->get_group(0), sum);
            continue;
        }
        const unsigned int count = entry->get_value_count();
        for (unsigned int i = 0; i < count; ++i) {
            walk_value(*entry, i, sum);
        }
    }
}

void add_value(ParserEntry& to, const ParserEntry& from, unsigned int i) {
    switch (from.get_value_type(i)) {
    case ParserValue::TYPE_BOOL:
        to.add_bool(from.get_bool(i));
        break;
    case ParserValue::TYPE_INT:
        to.add_int(from.get_int(i));
        break;
    case ParserValue::TYPE_DOUBLE:
        to.add_double(from.get_double(i));
        break;
    default:
        to.add_string(from.get_string(i));
    }
}

void build_group(ParserGroup& to, const ParserGroup& from) {
    for (const ParserEntry* entry : from.get_entries()) {
        ParserEntry* made = to.add_entry(*new ParserEntry(entry->get_name(), entry->get_type(), 0, 0));
        made->set_array(entry->is_array(), entry->get_array_count());
        made->set_template(entry->get_template());
        if (entry->is_group()) {
            build_group(*made->add_group(nullptr), *entry->get_group(0));
            continue;
        }
        for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
            add_value(*made, *entry, i);
        }
    }
}

/// Edits trees. Removes all entries of a group in one call. Collects what to remove and move in two lists, which nested groups share.
class Editor {
public:
    explicit Editor(Turns& turns) : turns_(turns) {}

    void edit(ParserGroup& group) {
        const std::size_t first_removed = removed_.size();
        const std::size_t first_moved = moved_.size();
        const unsigned int count = group.get_entries().get_count();
        for (unsigned int i = 0; i < count; ++i) {
            ParserEntry& entry = *group.get_entries()[i];
            if (entry.is_group()) {
                edit(*entry.get_group(0));
            } else {
                change(group, entry, i, static_cast<unsigned int>(removed_.size() - first_removed));
            }
        }
        remove(group, first_removed);
        move(group, first_moved);
    }

private:
    void change(ParserGroup& group, ParserEntry& entry, unsigned int position, unsigned int removed_before) {
        switch (turns_.next()) {
        case Turns::RENAME:
            entry.rename("renamed");
            break;
        case Turns::ADD:
            group.add_entry("added", 0, 0)->add_int(7);
            break;
        case Turns::REMOVE:
            removed_.push_back(position);
            break;
        case Turns::MOVE:
            moved_.push_back(position - removed_before);
            break;
        case Turns::NOTHING:
            break;
        }
    }

    void remove(ParserGroup& group, std::size_t first) {
        const auto count = static_cast<unsigned int>(removed_.size() - first);
        if (count == 1) {
            group.remove_entry(removed_.back());
        } else if (count != 0) {
            CoreBasicArray<unsigned int> positions(count);
            std::copy_n(removed_.data() + first, count, positions.begin());
            group.remove_entries(positions);
        }
        removed_.resize(first);
    }

    void move(ParserGroup& group, std::size_t first) {
        const unsigned int last = group.get_entries().get_count() - 1;
        for (std::size_t i = first; i < moved_.size(); ++i) {
            group.move_entry(moved_[i] - static_cast<unsigned int>(i - first), last);
        }
        moved_.resize(first);
    }

    Turns& turns_;
    std::vector<unsigned int> removed_;
    std::vector<unsigned int> moved_; // positions after the removal
};

class BkParser : public Peer {
public:
    explicit BkParser(const Source& source) : text_(source.text) {}

    bool parse() override {
        root_ = std::make_unique<ParserGroup>("root");
        return root_->set_text(text_, CoreVersion(1.2), nullptr);
    }
    Checksum walk() const override {
        Checksum sum;
        walk_group(*root_, sum);
        return sum;
    }
    bool build() override {
        auto built = std::make_unique<ParserGroup>("root");
        build_group(*built, *root_);
        root_ = std::move(built);
        return true;
    }
    std::size_t edit() override {
        Turns turns;
        Editor(turns).edit(*root_);
        return turns.changes();
    }
    std::size_t print(bool pretty) override {
        root_->get_text(printed_, false, pretty, 1);
        return printed_.get_length();
    }
    void forget() override { printed_ = CoreString(); }
    std::size_t encode() override {
        encoded_ = root_->get_binary(false);
        return encoded_.get_count();
    }
    bool decode() override {
        root_ = std::make_unique<ParserGroup>("root");
        core_uint64 position = 0;
        return root_->set_binary(encoded_, position);
    }
    void destroy() override { root_.reset(); }
    void drop_text() override { text_ = CoreString(); }

private:
    CoreString text_;
    std::unique_ptr<ParserGroup> root_;
    CoreString printed_;
    CoreVector<char> encoded_;
};

} // namespace

void add_bk_parser(PeerList& peers) {
    peers.push_back({"bk_parser", Form::text, PeerKind::STORES_NO_TEMPLATES,
                     reads | edits | prints | built_prints | stores, make_peer<BkParser>});
}

} // namespace bench
