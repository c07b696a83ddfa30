#include "output/report.h"
#include "output/text_display.h"
#include "verbs/verbs.h"

#include <algorithm>

namespace bkdoc {

namespace {

ExitCode check_file(const std::string& file, const CheckOptions& options, Streams& streams,
                    StreamDevice& device, std::size_t& fault_count) {
    const Document document(file, options.open, device);
    if (!document.get_refusal().empty()) {
        complain(streams, document.get_refusal());
    }
    report(document, streams.out);
    fault_count += document.get_faults().size() + document.get_damage().size() +
                   (document.get_failed_directive() ? 1 : 0);
    return reading_result(document);
}

} // namespace

ExitCode run_check(const CheckOptions& options, Streams& streams, StreamDevice& device) {
    ExitCode worst = EXIT_CLEAN;
    std::size_t fault_count = 0;
    for (const std::string& file : options.files) {
        worst = std::max(worst, check_file(file, options, streams, device, fault_count));
    }
    if (fault_count != 0) {
        streams.out << counted(fault_count, "fault", "faults") << "\n";
    }
    return worst;
}

} // namespace bkdoc
