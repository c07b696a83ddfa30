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

void save_enciphered() {
    auto lamp = bk_parser::load("lamp.bkd");
    bk_parser::SaveOptions options;
    options.form = bk_parser::Form::enciphered;
    options.key = "not a secret"; // the cipher hides text from a casual eye and is not security
    std::cout << (bk_parser::save(lamp.document, "lamp.kwbf", options).ok() ? "saved\n" : "not saved\n");

    bk_parser::LoadOptions with_key;
    with_key.key = options.key;
    const auto again = bk_parser::load("lamp.kwbf", with_key);
    std::cout << bk_parser::get_or(again.document.root(), "power", 0.0) << "\n";
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
    visit_every_entry();
    search_folders_for_includes();
    save_enciphered();
    see_what_a_save_would_change();
}
