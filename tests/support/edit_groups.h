#pragma once

#include "parser/parser_archive.h"
#include "tests/support/binary_form.h"
#include "tests/support/edit_state.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

/// Every edit of a group. Never puts a group into itself, and passes only valid positions to functions that do not check them.
class GroupEdits : protected EditState {
protected:
    using EditState::EditState;

    void renew_root() { renew(roots_[choose(std::size(roots_))]); }

    void add_entry() {
        model::Group& to = group();
        const std::string added = name();
        const core_ulong line = choose(9);
        ParserEntry* const real = to.real->add_entry(core(added), line, 7);
        to.append(std::make_shared<model::Entry>(model::Entry{
            real, added, added[0] == '#' ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY, line, 7}));
    }

    void refuse_entry() {
        static constexpr const char* refused[] = {"", "1a", "yes", "a b", "#", "a<", "b[x]"};
        model::Group& to = group();
        check_.same("a name that is none",
                    to.real->add_entry(core(refused[choose(std::size(refused))]), 0, 0) == nullptr);
    }

    void adopt_entry() {
        static constexpr ParserEntry::Type types[] = {ParserEntry::TYPE_ENTRY, ParserEntry::TYPE_KEYWORD,
                                                      ParserEntry::TYPE_FUNCTION_CALL,
                                                      ParserEntry::TYPE_RAW_TEXT};
        model::Group& to = group();
        const std::string added = name();
        const ParserEntry::Type type = types[choose(std::size(types))];
        auto* const real = new CountedEntry(added, type);
        check_.same("adopting", to.real->add_entry(*real) == real);
        model::Entry known{real, added, type};
        known.is_counted = true;
        to.append(std::make_shared<model::Entry>(known));
    }

    void add_group() {
        model::Group& to = group();
        const std::string added = name();
        auto* const nested = chance() ? new CountedGroup(added) : nullptr;
        ParserGroup* const made =
            nested == nullptr ? to.real->add_group(core(added)) : to.real->add_group(nested);
        ParserEntry* const real = to.real->get_entries()[to.count()];
        const auto known = std::make_shared<model::Entry>(
            model::Entry{real, added, added[0] == '#' ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY});
        know_group(*known, made, nested);
        to.append(known);
    }

    /// A new group of a host's own class, or of the library's own when `counted` is null.
    static void know_group(model::Entry& entry, ParserGroup* real, const CountedGroup* counted) {
        model::Group made{real, counted == nullptr ? "" : plain(counted->get_name())};
        made.source = counted == nullptr ? entry.real : nullptr;
        made.is_counted = counted != nullptr;
        model::Value value{ParserValue::TYPE_GROUP, "", std::make_shared<model::Group>(made)};
        entry.values.push_back(std::make_shared<model::Value>(value));
    }

    void set_source_entry() {
        model::Group& changed = group();
        changed.source = chance() ? entry().real : nullptr;
        changed.real->set_source_entry(const_cast<ParserEntry*>(changed.source));
    }

    void clear_group() {
        model::Group& cleared = group();
        cleared.real->clear();
        cleared.slots.clear();
    }

    void move_within() {
        model::Group& changed = group();
        if (changed.slots.empty()) {
            return;
        }
        const unsigned int from = choose(changed.count());
        const unsigned int to = choose(changed.count());
        changed.real->move_entry(from, to);
        const model::Slot moved = changed.slots[from];
        changed.erase(from);
        changed.slots.insert(changed.slots.begin() + to, moved);
        changed.rebuild();
    }

    void move_one() {
        model::Group& from = group();
        const model::GroupPointer to = some_group();
        if (from.slots.empty()) {
            return;
        }
        const unsigned int position = choose(from.count());
        const model::EntryPointer moved = from.slots[position].entry;
        from.real->move_entry(position, *to->real);
        if (model::reaches(moved, to.get()) && &from != to.get()) {
            return; // refused
        }
        from.erase(position);
        from.rebuild();
        to->append(moved);
    }

    /// Detaches an entry by its ordinal.
    void detach() {
        model::Group& from = group();
        const model::GroupPointer to = some_group();
        std::vector<unsigned int> positions;
        for (unsigned int i = 0; i < from.count(); ++i) {
            if (from.slots[i].has_ordinal) {
                positions.push_back(i);
            }
        }
        const unsigned int ordinal = choose(positions.size());
        if (positions.empty() || model::reaches(from.slots[positions[ordinal]].entry, to.get())) {
            return;
        }
        const model::EntryPointer moved = from.slots[positions[ordinal]].entry;
        from.real->detach_entry(ordinal);
        check_.same("a slot that was emptied", from.real->get_entry(ordinal) == nullptr);
        from.real->remove_entry(positions[ordinal]);
        from.erase(positions[ordinal]);
        from.rebuild();
        to->real->add_entry(*moved->real);
        to->append(moved);
    }

    static bool any_reaches(const model::Group& group, const void* to) {
        return std::any_of(group.slots.begin(), group.slots.end(),
                           [=](const model::Slot& slot) { return model::reaches(slot.entry, to); });
    }

    void move_ordinary() {
        model::Group& from = group();
        const model::GroupPointer to = some_group();
        from.real->move_entries(*to->real);
        const bool is_refused =
            std::any_of(from.slots.begin(), from.slots.end(), [&](const model::Slot& slot) {
                return slot.entry->type == ParserEntry::TYPE_ENTRY && model::reaches(slot.entry, to.get());
            });
        if (is_refused && &from != to.get()) {
            return;
        }
        std::vector<model::Slot> kept;
        std::vector<model::EntryPointer> moved;
        for (const model::Slot& slot : from.slots) {
            if (slot.entry->type == ParserEntry::TYPE_ENTRY) {
                moved.push_back(slot.entry);
            } else {
                kept.push_back({slot.entry, false});
            }
        }
        from.slots = kept;
        for (const model::EntryPointer& one : moved) {
            to->append(one);
        }
    }

    void move_all() {
        const model::GroupPointer from = some_group();
        const model::GroupPointer to = some_group();
        const unsigned int position = choose(to->slots.size() + 1);
        from->real->move_entries(*to->real, position);
        if (from != to && !any_reaches(*from, to.get())) {
            to->slots.insert(to->slots.begin() + position, from->slots.begin(), from->slots.end());
            to->rebuild();
            from->slots.clear();
        }
    }

    void remove_entries() {
        model::Group& changed = group();
        CoreArray<unsigned int> positions(choose(5));
        std::set<unsigned int> gone;
        for (unsigned int& position : positions) {
            position = choose(changed.slots.size() + 2);
            gone.insert(position);
        }
        changed.real->remove_entries(positions);
        erase_all(changed.slots, gone);
        changed.rebuild();
    }

    void remove_entry() {
        model::Group& changed = group();
        const unsigned int position = choose(changed.slots.size() + 2);
        changed.real->remove_entry(position);
        erase_all(changed.slots, {position});
        changed.rebuild();
    }

    /// The argument may be the name of an entry that is removed.
    void remove_named() {
        model::Group& changed = group();
        std::string gone = name();
        if (!changed.slots.empty() && chance()) {
            const model::EntryPointer one = changed.slots[choose(changed.count())].entry;
            gone = one->name;
            changed.real->remove_entry(one->real->get_name());
        } else {
            changed.real->remove_entry(core(gone));
        }
        std::erase_if(changed.slots, [&](const model::Slot& slot) { return slot.entry->name == gone; });
        changed.rebuild();
    }

    void copy_group() {
        const model::GroupPointer to = some_group();
        const model::GroupPointer from = some_group();
        to->real->set(*from->real);
        if (to != from) {
            to->slots = model::copied_slots(*from, *to->real);
            to->name = from->name;
        }
    }

    void copy_root() {
        Root& to = roots_[choose(std::size(roots_))];
        const model::GroupPointer from = some_group();
        auto real = std::make_unique<ParserGroup>(*from->real);
        to.known = std::make_shared<model::Group>(
            model::Group{real.get(), from->name, nullptr, false, model::copied_slots(*from, *real)});
        to.real = std::move(real);
    }

    /// Afterwards both groups list the same entries.
    void assign_group() {
        const model::GroupPointer to = some_group();
        const model::GroupPointer from = some_group();
        if (to == from || !any_reaches(*from, to.get())) {
            *to->real = *from->real;
            to->name = from->name;
            to->source = from->source;
            const std::vector<model::Slot> shared = from->slots;
            to->slots = shared;
        }
    }

    // Reading and writing

    void take_in(model::Group& changed, bool is_parsed) {
        const CoreVector<ParserEntry*>& entries = changed.real->get_entries();
        for (unsigned int i = changed.count(); i < entries.get_count(); ++i) {
            changed.slots.push_back(
                {model::known(*entries[i]), !is_parsed || model::parsed_ordinal(*entries[i])});
        }
    }

    void parse() {
        model::Group& changed = group();
        const std::string text = texts[choose(std::size(texts))];
        // A document of more bytes has pages of its own.
        const std::string parsed = fills_pages_ ? text + text + text + std::string(40000, ' ') : text;
        changed.real->set_text(core(parsed), CoreVersion(1.2), nullptr);
        take_in(changed, true);
    }

    void decode() {
        model::Group& changed = group();
        const CoreVector<char> bytes = group().real->get_binary(false);
        core_uint64 position = 0;
        check_.same("decoding", changed.real->set_binary(bytes, position) && position == bytes.get_count());
        take_in(changed, false);
    }

    void encode() {
        const model::Group& encoded = group();
        check_.same("bytes", bytes_of(encoded.real->get_binary(false)) ==
                                 binary_form::group(binary_form::entries_of(*encoded.real)));
    }

    void archive() {
        model::Group& changed = group();
        ParserArchive archive;
        ParserImpl::archive_group(*group().real, archive, false, nullptr);
        ParserImpl::group_set_archive(*changed.real, archive, nullptr);
        take_in(changed, true);
    }

    void encipher() {
        model::Group& changed = group();
        CoreArray<unsigned char> block;
        group().real->get_encrypted_text(block, "key", false, chance(), 1);
        check_.same("deciphering", changed.real->set_encrypted_text(block, "key"));
        take_in(changed, true);
    }

    void print() {
        CoreString text;
        group().real->get_text(text, chance(), chance(), 2);
        entry().real->get_value_text(text, chance(), 1);
        group().real->get_entries("a", true);
    }
};
