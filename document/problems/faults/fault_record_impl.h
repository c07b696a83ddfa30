#pragma once

#include "parser/parser_read_observer.h"
#include "parser/text/parser_word_stream_impl.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Something that the grammar did not accept. Which mistake caused it is determined after the whole text was read.
struct FaultRecord {
    /// One of ParserReadObserver::Fault, or one of these.
    static constexpr unsigned int misspelled_include = 1000;
    static constexpr unsigned int misspelled_version = 1001;

    unsigned int kind;
    std::uint32_t start; // of the word, in the expanded text
    std::uint32_t length;
    std::uint32_t head_start; // of the name of the entry that was begun last
    std::uint32_t head_length;
    std::uint32_t epoch; // increases at each name and at the begin and end of each group
};

/// Collects the faults of one parse. It is also the observer of the tree's sink, which tells it the faults that the sink finds.
class FaultRecorder final : public ParserReadObserver {
public:
    explicit FaultRecorder(std::string_view text) noexcept : text_(text), head_(text.substr(0, 0)) {}

    void begin_entry(std::string_view name) noexcept {
        head_ = name;
        ++epoch_;
    }
    void begin_or_end_group() noexcept { ++epoch_; }
    void add(unsigned int kind, std::size_t start, std::size_t length) {
        records_.push_back({kind, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(length),
                            static_cast<std::uint32_t>(head_.data() - text_.data()),
                            static_cast<std::uint32_t>(head_.size()), epoch_});
    }
    void fault_found(const Fault& fault, const unsigned int& expanded, const unsigned int& length,
                     const CoreString&) override {
        add(fault, expanded, length);
    }

    const std::vector<FaultRecord>& get_records() const noexcept { return records_; }
    /// The name of the entry that was begun last.
    std::string_view get_head() const noexcept { return head_; }
    std::string_view get_text() const noexcept { return text_; }
    bool has_any_in_epoch() const noexcept { return !records_.empty() && records_.back().epoch == epoch_; }

private:
    std::string_view text_;
    std::string_view head_;
    std::uint32_t epoch_ = 0;
    std::vector<FaultRecord> records_;
};

} // namespace bk_parser
