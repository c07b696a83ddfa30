// Times the steps in the life of a document with the library that it is linked with, in which one special case may be switched off. Prints
// a line for each step and corpus: the shortest time of many repetitions in nanoseconds a leaf, because other programs can only lengthen a
// time. The script `run` beside this file compares several builds.

#include "bench/peers/document.h"
#include "bench/peers/forms.h"
#include "bench/peers/json_source.h"

#include "bench/curves.h"
#include "bench/thread_time.h"
#include "bench/walk.h"
#include "core/core_version.h"
#include "parser/cipher/parser_keystream_impl.h"
#include "parser/parser_archive.h"
#include "parser/parser_group.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>

namespace {

using Tree = std::unique_ptr<ParserGroup>;

constexpr double most_seconds = 0.05;
constexpr unsigned int least_repetitions = 3;

/// Gets the results, so that the compiler cannot leave out the work.
volatile double kept_sum = 0.0;

struct Corpus {
    std::string name;
    CoreString text;
    double leaves;
};

Corpus make_corpus(const std::string& name, const bench::Document& document) {
    const std::string text = bench::write_text(document);
    return {name, CoreString(text), static_cast<double>(document.value_count())};
}

Tree parsed(const CoreString& text) {
    Tree tree = std::make_unique<ParserGroup>("root");
    tree->set_text(text, CoreVersion(1.2), nullptr);
    return tree;
}

Tree decoded(const CoreVector<char>& bytes) {
    Tree tree = std::make_unique<ParserGroup>("root");
    core_uint64 position = 0;
    tree->set_binary(bytes, position);
    return tree;
}

void grow_lists(ParserGroup& group) {
    for (ParserEntry* entry : group.get_entries()) {
        if (entry->is_group()) {
            grow_lists(*entry->get_group(0));
        } else {
            entry->add_int(7);
        }
    }
}

/// Makes an archive of each entry of the tree, as examples of small documents.
void pack_entries(ParserGroup& group) {
    for (ParserEntry* entry : group.get_entries()) {
        if (entry->is_group()) {
            pack_entries(*entry->get_group(0));
        } else {
            ParserArchive archive;
            ParserImpl::archive_entry(*entry, archive, nullptr);
            kept_sum = archive.indices.get_count();
        }
    }
}

class Steps {
public:
    Steps(const Corpus& corpus, std::string_view only) : corpus_(corpus), only_(only) {}

    void run() {
        read_steps();
        const Tree tree = parsed(corpus_.text);
        kept_sum = bench::walk(*tree);
        CoreVector<char> bytes;
        step(
            "encode", [] {}, [&] { bytes = tree->get_binary(false); });
        bytes = tree->get_binary(false);
        Tree other;
        step(
            "decode", [&] { other.reset(); }, [&] { other = decoded(bytes); });
        step(
            "destroy_decoded", [&] { other = decoded(bytes); }, [&] { other.reset(); });
        CoreString printed;
        step(
            "print", [&] { printed = CoreString(); }, [&] { tree->get_text(printed, false, false, 1); });
        other = decoded(bytes);
        step(
            "print_numbers", [&] { printed = CoreString(); },
            [&] { other->get_text(printed, false, false, 1); });
        step(
            "pack_small", [] {}, [&] { pack_entries(*tree); });
        step(
            "pack", [] {},
            [&] {
                ParserArchive archive;
                ParserImpl::archive_group(*tree, archive, false, nullptr);
            });
        keystream_step();
        step(
            "grow", [&] { other = parsed(corpus_.text); }, [&] { grow_lists(*other); });
    }

private:
    void read_steps() {
        Tree tree;
        step(
            "parse", [&] { tree.reset(); }, [&] { tree = parsed(corpus_.text); });
        step(
            "walk", [&] { tree = parsed(corpus_.text); }, [&] { kept_sum = bench::walk(*tree); });
        step(
            "destroy", [&] { tree = parsed(corpus_.text); }, [&] { tree.reset(); });
    }

    void keystream_step() {
        std::vector<unsigned char> bytes(corpus_.text.get_length());
        step(
            "keystream", [] {},
            [&] {
                bk::Keystream keystream(7);
                keystream.add_to(bytes.data(), bytes.data(), bytes.size() / 4);
            });
    }

    /// `prepare` is not timed.
    template <class Prepare, class Step>
    void step(std::string_view name, Prepare prepare, Step timed) {
        if (only_ != "all" && ("," + only_ + ",").find("," + std::string(name) + ",") == std::string::npos) {
            return;
        }
        double least = 1e9;
        const double begin = bench::thread_seconds();
        for (unsigned int i = 0; i < least_repetitions || bench::thread_seconds() < begin + most_seconds;
             ++i) {
            prepare();
            const double start = bench::thread_seconds();
            timed();
            least = std::min(least, bench::thread_seconds() - start);
        }
        std::printf("%s %s %.3f\n", std::string(name).c_str(), corpus_.name.c_str(),
                    least * 1e9 / corpus_.leaves);
        std::fflush(stdout);
    }

    const Corpus& corpus_;
    std::string only_;
};

} // namespace

int main(int argc, char** argv) {
    std::vector<Corpus> corpora;
    bench::Document scene;
    bench::make_scene(scene, 10000, 1);
    corpora.push_back(make_corpus("scene", scene));
    bench::Document large;
    bench::make_scene(large, 150000, 1);
    corpora.push_back(make_corpus("large", large));
    bench::Document curves;
    bench::make_curves(curves, 20000, 1);
    corpora.push_back(make_corpus("curves", curves));
    for (int i = 2; i < argc; ++i) {
        std::ifstream input(argv[i], std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(input), {}};
        bench::Document document;
        if (!bench::read_json(text, document)) {
            std::fprintf(stderr, "%s: not an object in JSON\n", argv[i]);
            return 2;
        }
        corpora.push_back(make_corpus(std::filesystem::path(argv[i]).stem().string(), document));
    }
    for (const Corpus& corpus : corpora) {
        Steps(corpus, argc > 1 ? argv[1] : "all").run();
    }
    return 0;
}
