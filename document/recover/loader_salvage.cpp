#include "document/load/failure_text_impl.h"
#include "document/load/form_impl.h"
#include "document/load/loader_impl.h"
#include "document/recover/archive_salvage_impl.h"
#include "document/recover/binary_salvage_impl.h"
#include "document/recover/cipher_salvage_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/files/parser_document_impl.h"

#include <utility>

// The part of Loader that reads stored forms that may be damaged anywhere.

namespace bk_parser {

namespace {

/// Whether the text states its version, with a number after the point.
bool states_version(std::string_view text) noexcept {
    const std::size_t keyword = text.rfind(bk::version_keyword);
    if (keyword == std::string_view::npos) {
        return false;
    }
    const std::string_view rest = text.substr(keyword + bk::version_keyword.size());
    const std::size_t point = rest.find('.');
    return point != std::string_view::npos && point + 1 < rest.size();
}

} // namespace

void Loader::salvage(CoreString&& bytes, const Meter::Range& range) {
    if (form_of(bytes.get_view()) == Form::text) {
        lost_->add(0, bk::binary_tag.size(), "the word that names the form");
    }
    switch (state_->form) {
    case Form::binary:
        salvage_binary(bytes.get_view(), range);
        break;
    case Form::archive:
        salvage_archive_words(bytes.get_view(), range);
        break;
    case Form::enciphered:
    case Form::text:
        salvage_text(bytes.get_view(), range);
        break;
    }
    tell_lost();
}

/// Decodes first as a load does, to find out whether all sizes fit each other. The salvage then builds the tree, because it also mends
/// names that no text can have.
void Loader::salvage_binary(std::string_view bytes, const Meter::Range& range) {
    core_uint64 end = 0;
    const bool is_sound = bytes.size() >= binary_head_size &&
                          !decode_binary(bytes, range.part(0, 0.5), end) && end == bytes.size();
    state_->root->clear();
    meter_.start(range.part(0.5, 1), bytes.size());
    BinarySalvage(bytes, is_sound, options_.limits.nesting_depth, *lost_, meter_).run(*state_->root);
    meter_.stop(bytes.size());
}

void Loader::salvage_archive_words(std::string_view bytes, const Meter::Range& range) {
    ParserArchive archive;
    salvage_archive(bytes, archive, *lost_);
    if (read_archive_text(std::move(archive), shown_name(), range) && lost_->is_cut_off()) {
        forget_faults_of_a_cut();
    }
}

void Loader::salvage_text(std::string_view bytes, const Meter::Range& range) {
    if (options_.key.empty()) {
        refuse(codes::no_key, shown_name() + " is encrypted, and no key is given");
        return;
    }
    CoreString text;
    if (!salvage_cipher(bytes, options_.key, text, *lost_)) {
        refuse(codes::wrong_key, shown_name() + ": wrong key, or a damaged file");
        return;
    }
    lacks_version_ = !lost_->is_empty() && !states_version(text.get_view());
    read_text(std::move(text), range);
}

/// Marks the document as not read whole, so that a save does not replace the file.
void Loader::tell_lost() {
    if (lost_->is_empty()) {
        return;
    }
    const bool is_cut = lost_->is_only_cut_off();
    const std::uint64_t count = lost_->count();
    tell_whole(is_cut ? codes::cut_off : codes::damaged,
               shown_name() + (is_cut ? " is cut off"
                                      : " is damaged: " + grouped_number(count) +
                                            (count == 1 ? " part is" : " parts are") + " lost"));
}

} // namespace bk_parser
