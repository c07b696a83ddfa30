#include "document/save/proof/same_tree_impl.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <utility>
#include <vector>

namespace bk_parser {

namespace {

using GroupPair = std::pair<const ParserGroup*, const ParserGroup*>;

bool same_value(const bk::StoredValue& left, const bk::StoredValue& right, std::vector<GroupPair>& pending) {
    const ParserValue::Type type = left.type();
    if (type != right.type()) {
        return false;
    }
    switch (type) {
    case ParserValue::TYPE_GROUP:
        pending.emplace_back(left.group(), right.group());
        return pending.back().first != nullptr && pending.back().second != nullptr;
    case ParserValue::TYPE_STRING:
        return left.held_string() == right.held_string();
    case ParserValue::TYPE_BINARY_DATA:
        return left.bytes() == right.bytes();
    case ParserValue::TYPE_WORD:
        return true;
    default:
        return left.scalar_bits() == right.scalar_bits();
    }
}

bool same_entry(const ParserEntry& left, const ParserEntry& right, std::vector<GroupPair>& pending) {
    if (!(left.get_name() == right.get_name()) || left.get_type() != right.get_type() ||
        !(left.get_template() == right.get_template()) || left.get_array_count() != right.get_array_count() ||
        left.get_value_count() != right.get_value_count()) {
        return false;
    }
    for (unsigned int i = 0; i < left.get_value_count(); ++i) {
        if (!same_value(bk::EntryAccess::value(left, i), bk::EntryAccess::value(right, i), pending)) {
            return false;
        }
    }
    return true;
}

} // namespace

const ParserEntry* first_difference(const ParserGroup& left, const ParserGroup& right) {
    std::vector<GroupPair> pending{{&left, &right}};
    while (!pending.empty()) {
        const GroupPair groups = pending.back();
        pending.pop_back();
        const CoreVector<ParserEntry*>& ours = groups.first->get_entries();
        const CoreVector<ParserEntry*>& theirs = groups.second->get_entries();
        unsigned int other = 0;
        for (const ParserEntry* const entry : ours) {
            if (entry == nullptr) {
                continue;
            }
            while (other < theirs.get_count() && theirs[other] == nullptr) {
                ++other;
            }
            if (other == theirs.get_count() || !same_entry(*entry, *theirs[other], pending)) {
                return entry;
            }
            ++other;
        }
        if (other < theirs.get_count()) {
            return theirs[other];
        }
    }
    return nullptr;
}

} // namespace bk_parser
