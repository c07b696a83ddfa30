#include "core/core_log.h"
#include "document/strings.h"
#include "parser/parser_file.h"

#include <iostream>

/// Receives the library's messages in a handler of its own.
class Window : public CoreLogHandler {
public:
    void log(const int& level, const CoreLogStream& stream) override {
        std::cout << (level == level_error ? "error: " : "warning: ") << stream.get_message();
    }
};

int main() {
    Window window;
    CoreLogHandler* const before = CoreLogHandler::s_main_log_handler;
    CoreLogHandler::s_main_log_handler = &window;

    ParserGroup root("root");
    root.set_text("power 60 %\ncolour", default_parser_serial_version, nullptr);
    window.set_verbosity(CoreLogHandler::level_error); // warnings are no longer composed
    root.set_text("power 60 %\ncolour", default_parser_serial_version, nullptr);

    CoreLogHandler::s_main_log_handler = before; // before the window is destroyed
}
