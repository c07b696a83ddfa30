#include "bench/walk.h"

#include <vector>

namespace bench {

namespace {

double read_value(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_BOOL:
        return entry.get_bool(i) ? 1.0 : 0.0;
    case ParserValue::TYPE_INT:
        return entry.get_int(i);
    case ParserValue::TYPE_DOUBLE:
        return entry.get_double(i);
    case ParserValue::TYPE_STRING:
        return entry.get_string(i).get_length();
    default:
        return 0.0;
    }
}

} // namespace

double walk(const ParserGroup& root) {
    double sum = 0.0;
    std::vector<const ParserGroup*> to_visit = {&root};
    while (!to_visit.empty()) {
        const ParserGroup& group = *to_visit.back();
        to_visit.pop_back();
        for (const ParserEntry* entry : group.get_entries()) {
            if (entry->is_group()) {
                to_visit.push_back(entry->get_group(0));
                continue;
            }
            for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                sum += read_value(*entry, i);
            }
        }
    }
    return sum;
}

} // namespace bench
