#include "document/load/entry_places_impl.h"

#include "document/load/document_state_impl.h"
#include "document/sources/byte_scan_impl.h"
#include "document/sources/path_text_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <utility>

namespace bk_parser {

EntryPlaces::EntryPlaces(SourceMap&& sources, CoreString&& text)
    : sources_(std::move(sources)), text_(std::move(text)) {
    const std::string_view view = text_.get_view();
    line_begin_.push_back(0);
    for (std::size_t i = find_line_end(view, 0); i < view.size(); i = find_line_end(view, i + 1)) {
        line_begin_.push_back(static_cast<std::uint32_t>(i + 1));
    }
}

EntryPlace EntryPlaces::find(const ParserEntry& entry) const {
    const std::string_view text = text_.get_view();
    const std::size_t line = entry.get_line();
    EntryPlace place;
    if (sources_.is_empty() || line == 0 || line > line_begin_.size()) {
        return place;
    }
    // The parser counts the column from 1 or from 0, depending on what ends the word. No word begins within a run of
    // characters.
    std::size_t begin = line_begin_[line - 1] + std::size_t{entry.get_column()};
    if (begin > line_begin_[line - 1] && begin <= text.size() &&
        !bk::is_char(text[begin - 1], bk::CHAR_ENDS_RUN)) {
        --begin;
    }
    if (begin >= text.size()) {
        return place;
    }
    const Spot spot = sources_.find(begin, 1);
    const SourceFile& file = sources_.file_of(spot);
    const Place found = file.text.place_of(spot.offset);
    place.file = path_of_text(file.name.shown);
    place.path = path_of_text(file.path);
    place.line = static_cast<unsigned int>(found.line);
    place.column = static_cast<unsigned int>(found.column);
    place.offset = spot.offset;
    return place;
}

EntryPlace place_of(const Document& document, const ParserEntry& entry) {
    const DocumentState& state = DocumentState::of(document);
    return state.places == nullptr ? EntryPlace() : state.places->find(entry);
}

} // namespace bk_parser
