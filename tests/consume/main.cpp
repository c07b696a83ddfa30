#include "core/core_log.h"
#include "parser/parser_file.h"

#include <cstdio>
#include <cstring>

// A program that uses the library as an outside user does. It uses functions, virtual tables and templates of
// the library. It returns 0 when all of them work.

namespace {

class Counter : public CoreLogHandler {
public:
    void log(const int&, const CoreLogStream&) override { ++count; }
    int count = 0;
};

} // namespace

int main() {
    Counter counter;
    CoreLogHandler::s_main_log_handler = &counter;
    ParserGroup group("root");
    group.set_text("power 40.5 colour 0.93 0.9 0.82 ??", default_parser_serial_version, nullptr);
    if (counter.count != 1 || group.get_entries().get_count() != 2) {
        return 1;
    }
    ParserEntry* const power = group.get_entry("power");
    power->set_double(power->get_double(0) * 2.0, 0);
    CoreString text;
    group.get_text(text, false, false, 1);
    std::printf("%s\n", text.get_data());
    return std::strcmp(text.get_data(), " power 81.0 colour 0.93 0.9 0.82") == 0 ? 0 : 2;
}
