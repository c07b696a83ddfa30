#include "document/recover/archive_salvage_impl.h"

#include "core/text/core_bytes_impl.h"
#include "document/load/failure_text_impl.h"
#include "parser/archive/parser_archive_impl.h"

#include <algorithm>
#include <bit>
#include <optional>

namespace bk_parser {

namespace {

constexpr std::size_t count_width = 4;
constexpr std::size_t strings_begin = bk::archive_magic.size() + bk::archive_reserved_size + count_width;

std::uint32_t count_at(std::string_view bytes, std::size_t place) noexcept {
    return bk::load_le32(reinterpret_cast<const unsigned char*>(bytes.data() + place));
}

/// Where the strings of an archive may end, and how many there are up to there.
struct Strings {
    std::uint32_t count;
    std::size_t end;
};

/// Whether the number of words after these strings fits the rest of the file.
bool fits_file(std::string_view bytes, const Strings& strings) noexcept {
    const std::size_t rest = bytes.size() - strings.end;
    return rest >= count_width &&
           std::uint64_t{count_at(bytes, strings.end)} * bk::archive_index_width(strings.count) ==
               rest - count_width;
}

/// Whether damage may have turned one number into the other: one flipped bit, or one byte 00 more or fewer in the strings.
bool is_near(std::uint32_t first, std::uint32_t second) noexcept {
    return std::has_single_bit(first ^ second) || first - second == 1 || second - first == 1;
}

/// Chooses the place where the strings end: one after which the rest of the file fits. Of several takes the one whose number of
/// strings is nearest to the announced one, because a few bytes may fit by chance.
std::optional<Strings> find_strings(std::string_view bytes, std::uint32_t announced) noexcept {
    constexpr std::uint32_t sure_words = 16;
    std::optional<Strings> best;
    const auto distance = [announced](std::uint32_t count) {
        return count < announced ? announced - count : count - announced;
    };
    Strings strings{0, strings_begin};
    while (bytes.size() - strings.end >= count_width) {
        const std::uint32_t words = count_at(bytes, strings.end);
        const bool is_likely = words >= sure_words || (words > 0 && is_near(strings.count, announced));
        if (is_likely && fits_file(bytes, strings) &&
            (!best || distance(strings.count) < distance(best->count))) {
            best = strings;
        }
        const std::size_t nul = bytes.find('\0', strings.end);
        if (nul == std::string_view::npos) {
            break;
        }
        strings = {strings.count + 1, nul + 1};
    }
    return best;
}

/// Takes as many strings as the number says, as far as there are any.
Strings announced_strings(std::string_view bytes, std::uint32_t announced) noexcept {
    Strings strings{0, strings_begin};
    while (strings.count < announced) {
        const std::size_t nul = bytes.find('\0', strings.end);
        if (nul == std::string_view::npos) {
            break;
        }
        strings = {strings.count + 1, nul + 1};
    }
    return strings;
}

class ArchiveSalvage {
public:
    ArchiveSalvage(std::string_view bytes, ParserArchive& archive, LostParts& lost)
        : bytes_(bytes), archive_(archive), lost_(lost) {}

    void run() {
        if (bytes_.size() < strings_begin) {
            lost_.cut_off(bytes_.size(), bk::archive_frame_size - bytes_.size());
            return;
        }
        const std::uint32_t announced = count_at(bytes_, strings_begin - count_width);
        Strings strings = announced_strings(bytes_, announced);
        if (strings.count != announced || !fits_file(bytes_, strings)) {
            if (const auto found = find_strings(bytes_, announced)) {
                strings = *found;
            }
        }
        take_strings(strings);
        if (strings.count + 1 == announced) {
            split_joined(announced);
        }
        if (archive_.strings.get_count() != announced && fits_file(bytes_, strings)) {
            lost_.add(strings_begin - count_width, count_width,
                      "the number of strings, which says " + grouped_number(announced) +
                          ", or the end of one; " + grouped_number(strings.count) +
                          " are there, and words may have moved");
        }
        take_words(strings, std::max(announced, strings.count));
    }

private:
    void take_strings(const Strings& strings) {
        std::size_t place = strings_begin;
        for (std::uint32_t i = 0; i < strings.count; ++i) {
            const std::size_t nul = bytes_.find('\0', place);
            add_string(bytes_.substr(place, nul - place));
            place = nul + 1;
        }
    }

    void add_string(std::string_view stored) {
        CoreString string;
        std::transform(stored.begin(), stored.end(), string.resize(static_cast<unsigned int>(stored.size())),
                       [](char byte) {
                           return static_cast<char>(static_cast<unsigned char>(byte) + bk::archive_shift);
                       });
        archive_.strings.add(string);
    }

    /// There is one string too few, so one byte 00 has changed. A control character, which no word has, shows where.
    void split_joined(std::uint32_t announced) {
        std::size_t place = strings_begin;
        for (unsigned int i = 0; i + 1 < announced; ++i) {
            const std::string_view whole = archive_.strings[i].get_view();
            for (std::size_t at = 1; at + 1 < whole.size(); ++at) {
                if (static_cast<unsigned char>(whole[at]) >= 0x20) {
                    continue;
                }
                const CoreString first(whole.substr(0, at));
                const CoreString second(whole.substr(at + 1));
                lost_.add(place + at, 1, "the end of a string");
                archive_.strings[i] = first;
                archive_.strings.add(second);
                for (unsigned int to = archive_.strings.get_count() - 1; to > i + 1; --to) {
                    archive_.strings[to] = archive_.strings[to - 1];
                }
                archive_.strings[i + 1] = second;
                return;
            }
            place += whole.size() + 1;
        }
    }

    void take_words(const Strings& strings, std::uint32_t announced_strings) {
        const std::size_t rest = bytes_.size() - strings.end;
        if (strings.count < announced_strings && !fits_file(bytes_, strings)) {
            if (rest != 0) {
                lost_.add(strings.end, rest, "the beginning of a string");
            }
            lost_.cut_off(bytes_.size(), 0);
            return;
        }
        if (rest < count_width) {
            lost_.cut_off(bytes_.size(), count_width - rest);
            return;
        }
        const std::size_t width = bk::archive_index_width(strings.count);
        const std::uint64_t announced = count_at(bytes_, strings.end);
        const std::size_t begin = strings.end + count_width;
        const std::uint64_t present = (rest - count_width) / width;
        std::uint64_t count = std::min(announced, present);
        if (announced < present && are_words(begin, width, present)) {
            lost_.add(strings.end, count_width,
                      "the number of words, which says " + grouped_number(announced) + "; " +
                          grouped_number(present) + " are there");
            count = present;
        }
        for (std::uint64_t i = 0; i < count; ++i) {
            take_word(begin + static_cast<std::size_t>(i) * width, width);
        }
        const std::size_t end = begin + static_cast<std::size_t>(count) * width;
        if (end < bytes_.size()) {
            lost_.add(end, bytes_.size() - end,
                      announced > present ? "a part of a word" : "after the end of the document");
        }
        if (announced > present) {
            lost_.cut_off(bytes_.size(), begin + announced * width - bytes_.size());
        }
    }

    std::uint64_t index_at(std::size_t place, std::size_t width) const noexcept {
        return bk::load_le(reinterpret_cast<const unsigned char*>(bytes_.data() + place), width);
    }

    bool are_words(std::size_t begin, std::size_t width, std::uint64_t count) const noexcept {
        for (std::uint64_t i = 0; i < count; ++i) {
            if (index_at(begin + static_cast<std::size_t>(i) * width, width) >=
                archive_.strings.get_count()) {
                return false;
            }
        }
        return true;
    }

    void take_word(std::size_t place, std::size_t width) {
        const std::uint64_t index = index_at(place, width);
        if (index < archive_.strings.get_count()) {
            archive_.indices.add(static_cast<unsigned int>(index));
        } else {
            lost_.add(place, width,
                      "word " + grouped_number(index) + ", which is not in the list of strings");
        }
    }

    std::string_view bytes_;
    ParserArchive& archive_;
    LostParts& lost_;
};

} // namespace

void salvage_archive(std::string_view bytes, ParserArchive& archive, LostParts& lost) {
    ArchiveSalvage(bytes, archive, lost).run();
}

} // namespace bk_parser
