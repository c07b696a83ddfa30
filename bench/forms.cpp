// Times the stored forms of a scene. Every round also times what a form is compared with: memcpy of as many bytes, and printing or parsing
// the same tree as text. The counters are medians over the rounds, so that the ratios are the same on a busy machine.

#include "bench/scene_text.h"
#include "core/core_version.h"
#include "parser/cipher/parser_cipher_impl.h"
#include "parser/parser_archive.h"
#include "parser/parser_group.h"
#include "tests/support/scratch_folder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using Document = std::unique_ptr<ParserGroup>;
/// Runs one step and returns the seconds that it took, without the preparation and the clean-up.
using Timed = std::function<double()>;

const CoreString key = "lantern";

template <class Step>
double seconds_of(Step step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

Document new_document() {
    return std::make_unique<ParserGroup>("root");
}

Document parsed(const CoreString& text) {
    Document document = new_document();
    document->set_text(text, CoreVersion(1.2), nullptr);
    return document;
}

Document decoded(const CoreVector<char>& binary) {
    Document document = new_document();
    core_uint64 position = 0;
    document->set_binary(binary, position);
    return document;
}

/// A scene in every form.
struct Scene {
    explicit Scene(unsigned int count) : value_count(count), text(bench::make_scene_text(count, 1)) {
        const Document document = parsed(text);
        binary = document->get_binary(false);
        document->get_encrypted_text(enciphered, key, false, true, 1);
        ParserImpl::archive_group(*document, archive, false, nullptr);
    }

    unsigned int value_count;
    CoreString text;
    CoreVector<char> binary;
    CoreArray<unsigned char> enciphered;
    ParserArchive archive;
};

const Scene& scene_of(unsigned int value_count) {
    static std::map<unsigned int, Scene> scenes;
    return scenes.try_emplace(value_count, value_count).first->second;
}

double time_print(const ParserGroup& group) {
    CoreString out;
    return seconds_of([&] { group.get_text(out, false, true, 1); });
}

double time_parse(const CoreString& text) {
    const Document document = new_document();
    return seconds_of([&] { document->set_text(text, CoreVersion(1.2), nullptr); });
}

double time_encode(const ParserGroup& group) {
    CoreVector<char> out;
    return seconds_of([&] { out = group.get_binary(false); });
}

/// The median; 0 when there are no samples.
double median(std::vector<double> samples) {
    if (samples.empty()) {
        return 0.0;
    }
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

/// Copies bytes between two blocks whose pages are in memory already: the highest speed that memcpy reaches.
class Copy {
public:
    explicit Copy(std::size_t size) : from_(size, 'a'), to_(size, 'b') {}

    double run() {
        return seconds_of([&] {
            std::memcpy(to_.data(), from_.data(), from_.size());
            benchmark::ClobberMemory();
        });
    }

private:
    std::vector<char> from_;
    std::vector<char> to_;
};

/// Times a form of `bytes` bytes and what it is compared with. When `text` is empty, there is no comparison with text.
void race(benchmark::State& state, const Scene& scene, std::size_t bytes, const Timed& form,
          const Timed& text = {}) {
    Copy copy(bytes);
    std::vector<double> of_form;
    std::vector<double> of_copy;
    std::vector<double> of_text;
    for ([[maybe_unused]] auto round : state) {
        of_form.push_back(form());
        of_copy.push_back(copy.run());
        if (text) {
            of_text.push_back(text());
        }
        state.SetIterationTime(of_form.back());
    }
    const double seconds = median(of_form);
    state.counters["bytes/s"] = static_cast<double>(bytes) / seconds;
    state.counters["values/s"] = scene.value_count / seconds;
    state.counters["memcpy_bytes/s"] = static_cast<double>(bytes) / median(of_copy);
    state.counters["of_memcpy"] = median(of_copy) / seconds;
    if (text) {
        state.counters["times_text"] = median(of_text) / seconds;
    }
}

/// Encodes a tree that was just read from text, and so converts every number. Printing only copies the spellings.
void encode_first(benchmark::State& state, const Scene& scene) {
    race(
        state, scene, scene.binary.get_count(), [&] { return time_encode(*parsed(scene.text)); },
        [&] { return time_print(*parsed(scene.text)); });
}

void encode_again(benchmark::State& state, const Scene& scene) {
    const Document document = parsed(scene.text);
    time_encode(*document);
    race(
        state, scene, scene.binary.get_count(), [&] { return time_encode(*document); },
        [&] { return time_print(*document); });
}

/// Encodes a tree that has numbers without spellings, as a program makes it.
void encode_numbers(benchmark::State& state, const Scene& scene) {
    const Document document = decoded(scene.binary);
    race(
        state, scene, scene.binary.get_count(), [&] { return time_encode(*document); },
        [&] { return time_print(*document); });
}

void decode(benchmark::State& state, const Scene& scene) {
    const Timed form = [&] {
        const Document document = new_document();
        core_uint64 position = 0;
        return seconds_of([&] { document->set_binary(scene.binary, position); });
    };
    race(state, scene, scene.binary.get_count(), form, [&] { return time_parse(scene.text); });
}

/// Times the cipher alone, on the scene's text.
void encipher(benchmark::State& state, const Scene& scene) {
    std::vector<unsigned char> block(bk::cipher_block_size(scene.text.get_length()));
    race(state, scene, block.size(), [&] {
        return seconds_of([&] {
            bk::encipher(scene.text.get_view(), key.get_view(), block.data());
            benchmark::ClobberMemory();
        });
    });
}

void decipher(benchmark::State& state, const Scene& scene) {
    std::string block(bk::cipher_block_size(scene.text.get_length()), '\0');
    bk::encipher(scene.text.get_view(), key.get_view(), reinterpret_cast<unsigned char*>(block.data()));
    race(state, scene, block.size(), [&] {
        CoreString text;
        return seconds_of([&] { benchmark::DoNotOptimize(bk::decipher(block, key.get_view(), text)); });
    });
}

void print_enciphered(benchmark::State& state, const Scene& scene) {
    const Document document = parsed(scene.text);
    const Timed form = [&] {
        CoreArray<unsigned char> out;
        return seconds_of([&] { document->get_encrypted_text(out, key, false, true, 1); });
    };
    race(state, scene, scene.enciphered.get_count(), form, [&] { return time_print(*document); });
}

void parse_enciphered(benchmark::State& state, const Scene& scene) {
    const Timed form = [&] {
        const Document document = new_document();
        return seconds_of([&] { document->set_encrypted_text(scene.enciphered, key); });
    };
    race(state, scene, scene.enciphered.get_count(), form, [&] { return time_parse(scene.text); });
}

std::size_t archive_file_size(const Scene& scene) {
    const ScratchFolder folder;
    ParserImpl::save_archive(scene.archive, folder.core_path("scene.kwaf"), nullptr);
    return std::filesystem::file_size(folder.path("scene.kwaf"));
}

void archive_build(benchmark::State& state, const Scene& scene) {
    const Document document = parsed(scene.text);
    const Timed form = [&] {
        ParserArchive archive;
        return seconds_of([&] { ParserImpl::archive_group(*document, archive, false, nullptr); });
    };
    race(state, scene, archive_file_size(scene), form, [&] { return time_print(*document); });
}

void archive_restore(benchmark::State& state, const Scene& scene) {
    const Timed form = [&] {
        const Document document = new_document();
        return seconds_of([&] { ParserImpl::group_set_archive(*document, scene.archive, nullptr); });
    };
    race(state, scene, archive_file_size(scene), form, [&] { return time_parse(scene.text); });
}

/// Includes the flush to the disk.
void archive_save(benchmark::State& state, const Scene& scene) {
    const ScratchFolder folder;
    race(state, scene, archive_file_size(scene), [&] {
        return seconds_of(
            [&] { ParserImpl::save_archive(scene.archive, folder.core_path("scene.kwaf"), nullptr); });
    });
}

void archive_load(benchmark::State& state, const Scene& scene) {
    const ScratchFolder folder;
    const CoreString path = folder.core_path("scene.kwaf");
    ParserImpl::save_archive(scene.archive, path, nullptr);
    race(state, scene, archive_file_size(scene), [&] {
        ParserArchive archive;
        return seconds_of([&] { ParserImpl::load_archive(archive, path, nullptr); });
    });
}

struct Form {
    const char* name;
    void (*run)(benchmark::State& state, const Scene& scene);
};

constexpr Form forms[] = {{"encode_first", encode_first},
                          {"encode_again", encode_again},
                          {"encode_numbers", encode_numbers},
                          {"decode", decode},
                          {"encipher", encipher},
                          {"decipher", decipher},
                          {"print_enciphered", print_enciphered},
                          {"parse_enciphered", parse_enciphered},
                          {"archive_build", archive_build},
                          {"archive_save", archive_save},
                          {"archive_load", archive_load},
                          {"archive_restore", archive_restore}};

bool register_forms() {
    for (const Form& form : forms) {
        for (const auto& [load, value_count] : {std::pair("small", 1000u), std::pair("large", 1000000u)}) {
            const std::string name = std::string("form_") + form.name + "/" + load;
            const auto run = [&form, count = value_count](benchmark::State& state) {
                form.run(state, scene_of(count));
            };
            benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Unit(benchmark::kMillisecond);
        }
    }
    return true;
}

[[maybe_unused]] const bool are_registered = register_forms();

} // namespace
