#pragma once

#include "core/core_log.h"
#include "input/source_map.h"
#include "parser/parser_read_observer.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// A fault of the document.
struct DocumentFault {
    ParserReadObserver::Fault kind;
    std::string message;
    Spot spot;
    std::size_t expanded; // where in the expanded text
};

/// Watches a reading and keeps what a report needs.
class ReadRecorder : public ParserReadObserver {
public:
    /// How a file that was found at `path`, as `name`, is called in reports.
    using Naming = std::function<SourceName(const CoreString& name, const CoreString& path)>;

    explicit ReadRecorder(Naming naming) : naming_(std::move(naming)) {}

    SourceMap& get_sources() noexcept { return sources_; }
    std::vector<DocumentFault>& get_faults() noexcept { return faults_; }
    /// The directive whose file has been looked for and not entered.
    const std::optional<Spot>& get_open_directive() const noexcept { return directive_; }

    void include_found(const unsigned int& offset, const unsigned int& length,
                       const CoreString& name) override;
    void file_entered(const CoreString& name, const CoreString& path, const CoreString& text) override;
    void file_left() override;
    void piece_copied(const unsigned int& offset, const unsigned int& length,
                      const unsigned int& expanded) override;
    void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                     const CoreString& message) override;
    void directive_fault_found(const Fault& fault, const unsigned int& offset, const unsigned int& length,
                               const CoreString& message) override;

private:
    Naming naming_;
    SourceMap sources_;
    std::vector<DocumentFault> faults_;
    std::optional<Spot> directive_;
};

/// Collects what the library logs while it lives, in place of the handler that was there.
class LogCollector : public CoreLogHandler {
public:
    LogCollector() : replaced_(s_main_log_handler) { s_main_log_handler = this; }
    ~LogCollector() override { s_main_log_handler = replaced_; }
    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;

    void log(const int& level, const CoreLogStream& stream) override;

    /// The messages without their line ends, those left out that the observer of a reading gets as faults.
    std::vector<std::string>& get_messages() noexcept { return messages_; }

private:
    CoreLogHandler* replaced_;
    std::vector<std::string> messages_;
};

} // namespace bkdoc
