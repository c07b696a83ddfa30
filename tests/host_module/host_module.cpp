#include "tests/host_module/host_module.h"

#include <string>
#include <vector>

namespace host_module {
namespace {

int alive = 0;

/// Memory that the module allocates, and that only its own destructor frees.
class Belongings {
public:
    Belongings() : marks_(1000, 7) { ++alive; }
    ~Belongings() { --alive; }
    Belongings(const Belongings&) = delete;
    Belongings& operator=(const Belongings&) = delete;
    int mark() const { return marks_.back(); }

private:
    std::vector<int> marks_;
};

class Group : public ParserGroup {
public:
    using ParserGroup::ParserGroup;
    Belongings belongings;
};

class Entry : public ParserEntry {
public:
    explicit Entry(const char* name) : ParserEntry(name, TYPE_ENTRY, 1, 2) {}
    Belongings belongings;
};

class LargeEntry : public Entry {
public:
    using Entry::Entry;
    char room[5000] = {};
};

class LogHandler : public CoreLogHandler {
public:
    void log(const int&, const CoreLogStream& stream) override {
        messages.emplace_back(stream.get_message().get_view());
    }
    std::vector<std::string> messages;
    Belongings belongings;
};

class ProgressBar : public AppProgressBar {
public:
    void set_value(const float&) override { ++calls; }
    int calls = 0;
    Belongings belongings;
};

} // namespace

int living() {
    return alive;
}

ParserGroup* make_group(const char* name) {
    return new Group(name);
}
ParserEntry* make_entry(const char* name) {
    return new Entry(name);
}
ParserEntry* make_large_entry(const char* name) {
    return new LargeEntry(name);
}
CoreLogHandler* make_log_handler() {
    auto* const handler = new LogHandler;
    handler->set_verbosity(CoreLogHandler::level_warning);
    return handler;
}
AppProgressBar* make_progress_bar() {
    return new ProgressBar;
}

int mark_of(const ParserGroup& group) {
    const auto* const own = dynamic_cast<const Group*>(&group);
    return own == nullptr ? -1 : own->belongings.mark();
}
int mark_of(const ParserEntry& entry) {
    const auto* const own = dynamic_cast<const Entry*>(&entry);
    return own == nullptr ? -1 : own->belongings.mark();
}
int count_messages(const CoreLogHandler& handler) {
    const auto* const own = dynamic_cast<const LogHandler*>(&handler);
    return own == nullptr ? -1 : static_cast<int>(own->messages.size());
}
int count_calls(const AppProgressBar& progress) {
    const auto* const own = dynamic_cast<const ProgressBar*>(&progress);
    return own == nullptr ? -1 : own->calls;
}

void destroy(ParserGroup* group) {
    delete group;
}
void destroy(ParserEntry* entry) {
    delete entry;
}
void destroy(CoreLogHandler* handler) {
    delete handler;
}
void destroy(AppProgressBar* progress) {
    delete progress;
}

} // namespace host_module
