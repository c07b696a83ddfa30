#pragma once

#include "document/load/document_state_impl.h"
#include "document/load/meter_impl.h"
#include "document/problems/list/problem_list_impl.h"
#include "document/recover/lost_parts_impl.h"
#include "document/sources/file_bytes_impl.h"
#include "document/sources/source_map_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/parser_archive.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace bk_parser {

constexpr std::size_t binary_head_size = bk::binary_tag.size() + sizeof(std::uint64_t);

/// One load: from bytes in any form to a document and its problems.
class Loader {
public:
    explicit Loader(const LoadOptions& options);

    LoadResult load(const std::filesystem::path& path);
    LoadResult parse(std::string_view text);
    /// Goes on after damaged parts, and records them in `lost`.
    void keep_lost(LostParts& lost) noexcept { lost_ = &lost; }

private:
    void read_any(CoreString&& bytes, const Meter::Range& range);
    void read_text(CoreString&& bytes, const Meter::Range& range);
    std::optional<bk::BinaryDamage> decode_binary(std::string_view bytes, const Meter::Range& range,
                                                  core_uint64& end);
    void read_binary(std::string_view bytes, const Meter::Range& range);
    void read_archive(std::string_view bytes, const Meter::Range& range);
    void read_words(CoreString&& text, const Meter::Range& range);
    void salvage(CoreString&& bytes, const Meter::Range& range);
    void salvage_binary(std::string_view bytes, const Meter::Range& range);
    void salvage_archive_words(std::string_view bytes, const Meter::Range& range);
    void salvage_text(std::string_view bytes, const Meter::Range& range);
    void tell_lost();
    void forget_faults_of_a_cut();
    bool read_archive_text(ParserArchive&& archive, const std::string& name, const Meter::Range& range);
    void tell_nameless(const std::string& name, const ParserArchive& archive);
    void tell_rest(const std::string& name, core_uint64 present, core_uint64 used);
    bool has_comments() const;
    void parse_text(std::string_view text, const Meter::Range& range);
    void refuse_too_large(const FileBytes& file, core_uint64 most);
    void refuse(std::string_view code, std::string message);
    void tell_whole(std::string_view code, std::string message);
    std::string shown_name() const;
    void take_version_entry();
    CoreVector<CoreString> search_folders() const;
    void note_unread();
    LoadResult finish();

    const LoadOptions& options_;
    Meter meter_;
    std::unique_ptr<DocumentState> state_;
    std::string name_; // of the document as it was given; empty in memory
    std::string path_; // absolute
    SourceMap sources_;
    CoreString expanded_;            // the text that was parsed
    std::optional<ByteFacts> facts_; // of the document's bytes
    ProblemList problems_;
    LostParts* lost_ = nullptr;  // of a recovery
    bool lacks_version_ = false; // the line or entry that states the version is lost
};

} // namespace bk_parser
