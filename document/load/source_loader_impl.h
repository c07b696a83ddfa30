#pragma once

#include "document/load/document_state_impl.h"
#include "document/load/include_record_impl.h"
#include "document/load/meter_impl.h"
#include "document/problems/list/problem_list_impl.h"
#include "document/sources/source_map_impl.h"
#include "parser/files/parser_source_host_impl.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace bk_parser {

/// Reads the files of a text for the preprocessor. Records which file each byte of the expanded text came from, and what was wrong
/// with files and directives.
class SourceLoader final : public bk::SourceHost {
public:
    /// The caller keeps the arguments alive as long as the loader. The range covers all of the preprocessing; the document's own bytes
    /// are read already.
    SourceLoader(DocumentState& state, SourceMap& sources, ProblemList& problems, Meter& meter,
                 const Meter::Range& range, const std::optional<ByteFacts>& facts)
        : state_(state), sources_(sources), problems_(problems), meter_(meter), range_(range),
          includes_(state), has_key_(!state.key.empty()), facts_(facts) {}

    bk::SourceRead read(const CoreString& path, core_uint64 most, CoreString& bytes) override;
    bool read_as_text(const CoreString& path, CoreString& text) override;
    bool accepts_deciphered(const CoreString& text) override;
    void failed(const bk::SourceFailure& failure) override;
    void include_found(const bk::SourcePiece& piece) override;
    void version_found(const bk::SourcePiece& piece, double version) override;
    void entered(const bk::SourceEntered& file) override;
    void left(CoreString&& text) override;
    void copied(const bk::SourcePiece& piece, unsigned int expanded) override;

private:
    /// An open file and its part of the progress.
    struct Open {
        Meter::Range range;
        std::size_t size;
        std::size_t done;
        bool is_clean;
    };

    void tell(std::string_view code, std::string message);
    void tell_rest(const bk::SourceEntered& file);
    std::string circle_text(const bk::SourceFailure& failure) const;
    void resume();

    DocumentState& state_;
    SourceMap& sources_;
    ProblemList& problems_;
    Meter& meter_;
    Meter::Range range_; // of the file that is entered next
    IncludeRecord includes_;
    bool has_key_;
    std::vector<Open> open_;
    std::unordered_set<std::string> read_paths_;
    Spot directive_;     // of the include that is looked for
    std::string reason_; // why it was not read
    std::string_view reason_code_;
    core_uint64 size_ = 0;           // of one that is too large
    core_uint64 most_ = 0;           // that could be read of it
    std::optional<ByteFacts> facts_; // of the file that is entered next, as it is stored
    char last_ = ' ';                // of the expanded text
};

} // namespace bk_parser
