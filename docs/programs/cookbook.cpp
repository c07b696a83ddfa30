#include "document/document.h"

#include <iostream>

namespace {

void read_a_list() {
    const auto result = bk_parser::parse("weights 1 2.5 4\n");
    double sum = 0.0;
    for (const double weight :
         bk_parser::values<double>(*bk_parser::find(result.document.root(), "weights"))) {
        sum += weight;
    }
    std::cout << "sum " << sum << "\n";
}

void find_by_a_condition() {
    const auto result = bk_parser::parse("lamp \"desk\" { lit yes } lamp \"hall\" { lit no }\n");
    for (const ParserEntry& lamp : bk_parser::find_all(result.document.root(), "lamp[lit=yes]")) {
        std::cout << "lit: " << lamp.get_string(0) << "\n";
    }
}

void remove_while_searching() {
    auto result = bk_parser::parse("lamp 1 lamp 2 lamp 3 hall { lamp 4 }\n");
    ParserGroup& root = result.document.root();
    for (const bk_parser::Visit& visit : bk_parser::find_visits(root, "**/lamp")) {
        if (bk_parser::get_or(visit.entry(), 0, 0) != 3) {
            bk_parser::take(visit.parent(), visit.position()); // the entry that the search has come to
        }
    }
    std::cout << bk_parser::remove_all(root, "**/lamp") << " lamp was left\n";
}

void visit_every_entry() {
    const auto result = bk_parser::parse("a { b 1 c { d 2 } }\n");
    for (const bk_parser::Visit& visit : bk_parser::walk(result.document.root())) {
        std::cout << std::string(visit.depth(), '-') << visit.entry().get_name() << "\n";
    }
}

void search_folders_for_includes() {
    bk_parser::LoadOptions options;
    options.search = {"project/library", "project/shots"};
    const auto harbour = bk_parser::load("project/harbour.bkd", options);
    std::cout << harbour.document.dependencies().size() << " files included\n";
}

void save_in_every_form() {
    using bk_parser::Form;
    for (const Form form : {Form::text, Form::binary, Form::enciphered, Form::archive}) {
        auto lamp = bk_parser::load("lamp.bkd");
        bk_parser::SaveOptions options;
        options.form = form;
        options.key = "not a secret"; // for Form::enciphered; the cipher is not security
        if (!bk_parser::save(lamp.document, "lamp.copy", options).ok()) {
            std::cout << "not saved\n";
        }

        bk_parser::LoadOptions with_key;
        with_key.key = options.key;
        const auto again = bk_parser::load("lamp.copy", with_key); // finds the form by the first bytes
        std::cout << bk_parser::get_or(again.document.root(), "power", 0.0) << "\n";
    }
}

void save_with_losses() {
    auto result = bk_parser::parse("light<spot> \"key\" { power 60.0 }\n");
    bk_parser::SaveOptions options;
    options.form = bk_parser::Form::binary;
    for (const bk_parser::Problem& loss : bk_parser::save(result.document, "light.udfs", options).losses) {
        std::cout << loss.message << "\n"; // and nothing was saved
    }
    options.lossy = true;
    std::cout << (bk_parser::save(result.document, "light.udfs", options).ok() ? "saved\n" : "not saved\n");
}

void see_what_a_save_would_change() {
    auto lamp = bk_parser::load("lamp.bkd");
    bk_parser::set(lamp.document.root(), "power", 45.0);
    for (const bk_parser::FileChange& change : bk_parser::preview_save(lamp.document).changes) {
        std::cout << change.path.filename().string() << ": " << change.before.size() << " bytes, then "
                  << change.after.size() << "\n";
    }
}

} // namespace

int main() {
    read_a_list();
    find_by_a_condition();
    remove_while_searching();
    visit_every_entry();
    search_folders_for_includes();
    save_in_every_form();
    save_with_losses();
    see_what_a_save_would_change();
}
