#include "lamp_entry.h"

namespace lamp_module {
namespace {

int alive = 0;

class LampEntry : public ParserEntry {
public:
    LampEntry(const char* name, double power) : ParserEntry(name, TYPE_ENTRY, 0, 0) {
        add_double(power);
        ++alive;
    }
    LampEntry(const LampEntry&) = delete;
    LampEntry& operator=(const LampEntry&) = delete;
    ~LampEntry() override { --alive; }
    double yearly_cost() const { return get_double(0) * 24 * 365 / 1000 * 0.3; }
};

} // namespace

void add_lamp(ParserGroup& group, const char* name, double power) {
    group.add_entry(*new LampEntry(name, power));
}

double yearly_cost(const ParserEntry& entry) {
    const auto* lamp = dynamic_cast<const LampEntry*>(&entry);
    return lamp == nullptr ? -1.0 : lamp->yearly_cost();
}

int living() {
    return alive;
}

} // namespace lamp_module
