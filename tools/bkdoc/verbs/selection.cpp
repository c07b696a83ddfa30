#include "verbs/selection.h"

#include "document/access.h"

#include <memory>

namespace bkdoc {

Selection::Selection(const Arguments& arguments, Streams& streams) {
    const auto text = arguments.value("--path");
    if (!text) {
        return;
    }
    path_.emplace(*text);
    if (const bk_parser::PathError* const error = path_->error()) {
        streams.out.flush();
        streams.err << "bkdoc: --path: " << bk_parser::to_text(*error, *text);
    }
}

const ParserGroup* Selection::of(const OpenedDocument& document, Streams& streams) {
    if (!path_) {
        return &document.root();
    }
    found_.emplace(CoreString());
    for (const ParserEntry& entry : bk_parser::find_all(document.root(), *path_)) {
        bk_parser::insert(*found_, found_->get_entries().get_count(), std::make_unique<ParserEntry>(entry));
    }
    if (found_->get_entries().is_empty()) {
        complain(streams, document.name() + ": nothing matches " + std::string(path_->text()));
        return nullptr;
    }
    return &*found_;
}

} // namespace bkdoc
