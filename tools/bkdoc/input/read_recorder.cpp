#include "input/read_recorder.h"

namespace bkdoc {

void ReadRecorder::include_found(const unsigned int& offset, const unsigned int& length, const CoreString&) {
    directive_ = Spot{sources_.current(), offset, length};
}

void ReadRecorder::file_entered(const CoreString& name, const CoreString& path, const CoreString& text) {
    sources_.enter(naming_(name, path), path.get_view(), text.get_view(), directive_.value_or(Spot{}));
    directive_.reset();
}

void ReadRecorder::file_left() {
    sources_.leave();
}

void ReadRecorder::piece_copied(const unsigned int& offset, const unsigned int& length,
                                const unsigned int& expanded) {
    sources_.copy(offset, length, expanded);
}

void ReadRecorder::fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                               const CoreString& message) {
    faults_.push_back({fault, std::string(message.get_view()), sources_.find(expanded, length), expanded});
}

void ReadRecorder::directive_fault_found(const Fault& fault, const unsigned int& offset,
                                         const unsigned int& length, const CoreString& message) {
    faults_.push_back({fault, std::string(message.get_view()), Spot{sources_.current(), offset, length},
                       sources_.get_expanded_size()});
}

void LogCollector::log(const int&, const CoreLogStream& stream) {
    std::string_view message = stream.get_message().get_view();
    if (message.starts_with("ParserGroup.set_text: (") || message.starts_with("ParserGroup.add_entry: ")) {
        return;
    }
    while (message.ends_with('\n')) {
        message.remove_suffix(1);
    }
    messages_.emplace_back(message);
}

} // namespace bkdoc
