#pragma once

#include "document/load/document_state_impl.h"
#include "document/sources/byte_facts_impl.h"
#include "parser/files/parser_source_host_impl.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace bk_parser {

/// Lists the files and include directives of a document while it is read. Lists a file that is read again only once.
class IncludeRecord {
public:
    explicit IncludeRecord(DocumentState& state) noexcept : state_(state) {}

    /// Notes the stored size of the file that is entered next.
    void read(std::size_t stored_size) noexcept { stored_size_ = stored_size; }
    /// `facts` describe the file's text, if they are known.
    void entered(const bk::SourceEntered& file, const std::optional<ByteFacts>& facts);
    void left() { open_.pop_back(); }
    /// Notes a directive of the innermost file. Takes time linear in the distance to the directive before it.
    void found(const bk::SourcePiece& piece);
    /// The file of the last directive is not included.
    void failed(const bk::SourceFailure& failure, std::string_view code);

private:
    struct Open {
        std::string_view text;
        std::size_t file; // position in the list of files
        bool is_new;
        std::size_t line = 1; // that holds `counted`
        std::size_t line_begin = 0;
        std::size_t counted = 0;
    };

    Include* pending() noexcept;
    static void count_to(Open& open, std::size_t offset) noexcept;

    DocumentState& state_;
    std::vector<Open> open_;
    std::unordered_set<std::string> known_; // absolute paths
    std::size_t stored_size_ = 0;
    bool is_pending_ = false; // the last include was found, and its file is not entered yet
};

} // namespace bk_parser
