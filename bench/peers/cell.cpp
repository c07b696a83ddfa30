#include "bench/peers/cell.h"

#include "bench/thread_time.h"

#include <algorithm>
#include <cstdio>
#include <malloc.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr std::size_t most_repetitions = 301;
constexpr double least_seconds = 0.3;

double resident_bytes() {
    long total_pages = 0;
    long resident_pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &total_pages, &resident_pages) != 2) {
            resident_pages = 0;
        }
        std::fclose(file);
    }
    return static_cast<double>(resident_pages) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

bool load(const std::string& path, std::string& text) {
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        return false;
    }
    std::fseek(file, 0, SEEK_END);
    text.resize(static_cast<std::size_t>(std::ftell(file)));
    std::rewind(file);
    const bool is_read = std::fread(text.data(), 1, text.size(), file) == text.size();
    std::fclose(file);
    return is_read;
}

bool load_source(const PeerKind& kind, const std::string& corpus, Source& source) {
    return load(corpus + "." + form_name(kind.form), source.text) &&
           (kind.form != Form::xml || load(corpus + ".kinds", source.kinds));
}

/// The rounds of one operation. Each prepares the step, times it and cleans up.
class Cell {
public:
    Cell(const PeerKind& kind, Operation operation, const Source& source, std::size_t repetitions)
        : peer_(kind.make(source)), operation_(operation), least_(repetitions) {}

    bool run() {
        if (!begin()) {
            return false;
        }
        double total = 0.0;
        const std::size_t rounds = operation_ == Operation::first ? 1 : most_repetitions;
        while (result_.samples.size() < rounds &&
               (result_.samples.size() < least_ || total < least_seconds)) {
            if (!round()) {
                return false;
            }
            total += result_.samples.back();
        }
        return true;
    }

    CellResult& result() { return result_; }

private:
    bool parse_anew() {
        peer_->prepare();
        return peer_->parse();
    }

    template <class Step>
    auto timed(Step step) {
        const double start = thread_seconds();
        const auto outcome = step();
        result_.samples.push_back(thread_seconds() - start);
        return outcome;
    }

    void walk_timed() {
        result_.sum = timed([&] { return peer_->walk(); });
        result_.was_walked = true;
    }

    /// What is prepared once for all rounds.
    bool begin() {
        switch (operation_) {
        case Operation::walk_again:
        case Operation::print_pretty:
        case Operation::print_compact:
        case Operation::built_pretty:
        case Operation::built_compact:
        case Operation::encode:
        case Operation::decode_walk:
            break;
        default:
            return true;
        }
        if (!parse_anew()) {
            return false;
        }
        if (operation_ == Operation::built_pretty || operation_ == Operation::built_compact) {
            return peer_->build();
        }
        if (operation_ == Operation::walk_again || operation_ == Operation::encode) {
            result_.sum = peer_->walk();
        }
        return operation_ != Operation::decode_walk || peer_->encode() != 0;
    }

    bool round() {
        switch (operation_) {
        case Operation::parse:
        case Operation::first:
            return parse_round();
        case Operation::parse_walk:
            return parse_walk_round();
        case Operation::walk:
            return parse_anew() && (walk_timed(), peer_->destroy(), true);
        case Operation::walk_again:
            return walk_timed(), true;
        case Operation::edit:
            return edit_round();
        case Operation::print_pretty:
        case Operation::built_pretty:
            return print_round(true);
        case Operation::print_compact:
        case Operation::built_compact:
            return print_round(false);
        case Operation::encode:
            return (result_.amount = timed([&] { return peer_->encode(); })) != 0;
        case Operation::decode_walk:
            return decode_round();
        case Operation::destroy:
            return parse_anew() && timed([&] { return peer_->destroy(), true; });
        case Operation::load_walk_close:
            return whole_round();
        case Operation::memory:
            break;
        }
        return false;
    }

    bool parse_round() {
        peer_->prepare();
        const bool is_read = timed([&] { return peer_->parse(); });
        peer_->destroy();
        return is_read;
    }

    bool parse_walk_round() {
        peer_->prepare();
        const bool is_read = timed([&] { return peer_->parse() && (result_.sum = peer_->walk(), true); });
        result_.was_walked = true;
        peer_->destroy();
        return is_read;
    }

    bool whole_round() {
        peer_->prepare();
        result_.was_walked = true;
        return timed([&] {
            const bool is_read = peer_->parse();
            if (is_read) {
                result_.sum = peer_->walk();
            }
            peer_->destroy();
            return is_read;
        });
    }

    bool edit_round() {
        if (!parse_anew()) {
            return false;
        }
        result_.amount = timed([&] { return peer_->edit(); });
        peer_->destroy();
        return result_.amount != 0;
    }

    bool print_round(bool pretty) {
        result_.amount = timed([&] { return peer_->print(pretty); });
        peer_->forget();
        return result_.amount != 0;
    }

    bool decode_round() {
        peer_->destroy();
        const bool is_read = timed([&] { return peer_->decode() && (result_.sum = peer_->walk(), true); });
        result_.was_walked = true;
        return is_read;
    }

    std::unique_ptr<Peer> peer_;
    Operation operation_;
    std::size_t least_;
    CellResult result_;
};

/// Makes enough documents that the size of a page does not matter.
constexpr std::size_t least_text = 20'000'000;

/// How much the resident memory grows when documents are kept, together with their texts if the peer needs these.
std::optional<CellResult> measure_memory(const PeerKind& kind, const std::string& corpus) {
    malloc_trim(0);
    const double before = resident_bytes();
    std::vector<std::unique_ptr<Source>> sources;
    std::vector<std::unique_ptr<Peer>> documents;
    std::size_t text_size = 0;
    std::size_t kinds_size = 0;
    while (text_size < least_text) {
        auto source = std::make_unique<Source>();
        if (!load_source(kind, corpus, *source)) {
            return std::nullopt;
        }
        text_size += source->text.size();
        documents.push_back(kind.make(*source));
        documents.back()->prepare();
        if (!documents.back()->parse()) {
            return std::nullopt;
        }
        documents.back()->drop_text();
        kinds_size += source->kinds.size();
        source->text = std::string();
        sources.push_back(std::move(source));
    }
    malloc_trim(0);
    CellResult result;
    const double grown = resident_bytes() - before - static_cast<double>(kinds_size);
    result.samples.push_back(grown / static_cast<double>(documents.size()));
    return result;
}

} // namespace

double median(std::vector<double> samples) {
    if (samples.empty()) {
        return 0.0;
    }
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

std::optional<CellResult> run_cell(const PeerKind& kind, Operation operation, const std::string& corpus,
                                   std::size_t repetitions) {
    if (operation == Operation::memory) {
        return measure_memory(kind, corpus);
    }
    Source source;
    if (!load_source(kind, corpus, source)) {
        return std::nullopt;
    }
    Cell cell(kind, operation, source, repetitions);
    if (!cell.run()) {
        return std::nullopt;
    }
    return std::move(cell.result());
}

} // namespace bench
