#include "core/reports/core_guard_impl.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace bk {

void report_out_of_memory(const char* operation) {
    if (!is_reported(CoreLogHandler::level_error)) {
        return;
    }
    static constexpr std::string_view ending = ": out of memory\n";
    char text[96];
    const std::string_view name = std::string_view(operation).substr(0, std::size(text) - ending.size() - 1);
    char* const end = std::copy(ending.begin(), ending.end(), std::copy(name.begin(), name.end(), text));
    *end = '\0';
    try {
        const CoreLogStream stream(text, static_cast<unsigned int>(end - text));
        CoreLogHandler::s_main_log_handler->log(CoreLogHandler::level_error, stream);
    } catch (const std::bad_alloc&) {
        // The caller still learns of it from the operation's result.
    }
}

} // namespace bk
