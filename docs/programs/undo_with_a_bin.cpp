#include "document/document.h"

#include <iostream>
#include <vector>

/// Removes entries into a bin, and puts them back. The entries themselves move: pointers to them stay good.
class Undo {
public:
    void remove(ParserGroup& group, unsigned int position) {
        steps_.push_back({&group, position});
        group.move_entry(position, bin_); // to the end of the bin
    }
    void undo() {
        const Step step = steps_.back();
        steps_.pop_back();
        std::unique_ptr<ParserEntry> entry = bk_parser::take(bin_, bin_.get_entries().get_count() - 1);
        bk_parser::insert(*step.group, step.position, std::move(entry));
    }

private:
    struct Step {
        ParserGroup* group;
        unsigned int position;
    };
    ParserGroup bin_{"bin"};
    std::vector<Step> steps_;
};

int main() {
    bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    ParserGroup& root = lamp.document.root();
    const ParserEntry* power = bk_parser::find(root, "power");
    Undo undo;
    undo.remove(root, 2);
    std::cout << (bk_parser::find(root, "power") == nullptr ? "removed\n" : "still there\n");
    undo.undo();
    std::cout << (bk_parser::find(root, "power") == power ? "the same entry is back\n" : "lost\n");
}
