#include "parser/parser_archive.h"

#include "parser/archive/parser_word_lookup_impl.h"

#include <utility>

ParserArchive::ParserArchive() = default;

ParserArchive::ParserArchive(const ParserArchive& other) = default;

ParserArchive::ParserArchive(ParserArchive&& other) noexcept
    : lookup_(std::move(other.lookup_)), known_words_(std::exchange(other.known_words_, 0)),
      strings(std::move(other.strings)), indices(std::move(other.indices)) {}

ParserArchive& ParserArchive::operator=(const ParserArchive& other) {
    return *this = ParserArchive(other); // copying may throw, so it comes before any change
}

ParserArchive& ParserArchive::operator=(ParserArchive&& other) noexcept {
    ParserArchive taken(std::move(other));
    lookup_.swap(taken.lookup_);
    std::swap(known_words_, taken.known_words_);
    strings.swap(taken.strings);
    indices.swap(taken.indices);
    return *this;
}

ParserArchive::~ParserArchive() = default;

void ParserArchive::operator+=(const CoreString& word) {
    bk::WordLookup lookup(lookup_, known_words_, strings);
    lookup.catch_up();
    indices.make_room(1);
    const unsigned int index = lookup.find_or_cover(word.get_view());
    if (index == strings.get_count()) {
        strings.add(word);
    }
    indices.add(index);
}
