#pragma once

#include "document/load/document_state_impl.h"
#include "document/sources/source_map_impl.h"
#include "parser/files/parser_source_host_impl.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bk_parser {

/// New bytes of files by absolute path. A file with several paths is listed under one of them.
using NewBytes = std::unordered_map<std::string, std::string>;

/// Null when there is none with this absolute path.
const ReadFile* find_file(const std::vector<ReadFile>& files, std::string_view path) noexcept;

/// The files of a document, read again in the same way as in the load, and the text that they expand to.
class SaveSources final : public bk::SourceHost {
public:
    /// `replaced` overrides files on the disk. The arguments must outlive this object.
    SaveSources(const DocumentState& state, const NewBytes& replaced);
    /// Overrides one more file. The caller keeps the bytes.
    void replace(const std::string& path, std::string_view bytes);

    /// Reads the document at this absolute path with all its includes. Returns false when a file has changed; the reason says
    /// which.
    bool read(const std::string& path);

    const std::string& reason() const noexcept { return reason_; }
    std::string_view text() const noexcept { return text_.get_view(); }
    /// Whether text() is a part of the text of the document's own file, not a copy.
    bool shows_document() const noexcept { return text_.is_borrowed(); }
    /// Moves the text of the document's own file to the caller. If text() is a part of it, the caller keeps it alive and unchanged as long
    /// as text() is used.
    CoreString take_document() noexcept { return map_.get_files().front()->text.take(); }
    double version() const noexcept { return version_; }
    const SourceMap& map() const noexcept { return map_; }
    /// The files that were read, the document first.
    const std::vector<ReadFile>& files() const noexcept { return files_; }
    const std::vector<std::string>& included() const noexcept { return included_; }
    /// The directives of includes that failed or, without `LoadOptions::follow_includes`, of all includes.
    const std::vector<Spot>& left_out() const noexcept { return left_out_; }
    /// One message "the include 'NAME' is found from the working folder alone" for each such include.
    const std::vector<std::string>& found_from_working_folder() const noexcept {
        return from_working_folder_;
    }
    bool follows_includes() const noexcept { return state_.follow_includes; }
    bool is_enciphered(std::string_view path) const noexcept;
    /// "FILE:LINE" of a byte of the text.
    std::string place_of(std::size_t expanded) const;

    bk::SourceRead read(const CoreString& path, core_uint64 most, CoreString& bytes) override;
    bool read_as_text(const CoreString&, CoreString&) override { return true; }
    bool accepts_deciphered(const CoreString& text) override;
    void failed(const bk::SourceFailure& failure) override;
    void include_found(const bk::SourcePiece& piece) override;
    void version_found(const bk::SourcePiece&, double) override {}
    void entered(const bk::SourceEntered& file) override;
    void left(CoreString&& text) override { map_.leave(std::move(text)); }
    void copied(const bk::SourcePiece& piece, unsigned int expanded) override {
        map_.copy(piece.offset, piece.text.size(), expanded);
    }

private:
    bool can_be_read(const std::string& path) const;
    bool load(const std::string& path, CoreString& bytes);
    bool load_stored(const std::string& path, CoreString& bytes, ReadFile& file);
    bool check_all_read(const std::string& path);

    const DocumentState& state_;
    std::unordered_map<std::string, std::string_view> replaced_; // by path and by resolved path
    std::string reason_;
    CoreString text_;
    double version_ = 0;
    SourceMap map_;
    Spot directive_;
    std::vector<ReadFile> files_;
    std::vector<std::string> included_;
    std::vector<Spot> left_out_;
    std::vector<std::string> from_working_folder_;
};

} // namespace bk_parser
