#pragma once

#include "parser/files/parser_source_host_impl.h"
#include "parser/parser_read_observer.h"

namespace bk {

/// Reads files from the current SysDevice, logs failures at level 2, and tells an observer of everything else.
class LogHost final : public SourceHost {
public:
    /// `observer` may be null.
    LogHost(unsigned int search_path_count, ParserReadObserver* observer) noexcept
        : search_path_count_(search_path_count), observer_(observer) {}

    SourceRead read(const CoreString& path, core_uint64 most, CoreString& bytes) override;
    bool read_as_text(const CoreString& path, CoreString& text) override;
    bool accepts_deciphered(const CoreString&) override { return true; }
    void failed(const SourceFailure& failure) override;
    void include_found(const SourcePiece& piece) override;
    void version_found(const SourcePiece& piece, double version) override;
    void entered(const SourceEntered& file) override;
    void left(CoreString&& text) override;
    void copied(const SourcePiece& piece, unsigned int expanded) override;

private:
    void report_not_found(const CoreString& name) const;
    void report_open_include(const SourcePiece& piece);

    unsigned int search_path_count_;
    ParserReadObserver* observer_;
};

} // namespace bk
