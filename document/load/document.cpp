#include "document/load/document_state_impl.h"

#include "document/load/entry_places_impl.h"

#include <utility>

namespace bk_parser {

Document::Document() : state_(std::make_unique<DocumentState>()) {}

Document::Document(std::unique_ptr<DocumentState> state) noexcept : state_(std::move(state)) {}

Document::Document(Document&& other) noexcept = default;

Document& Document::operator=(Document&& other) noexcept = default;

Document::~Document() = default;

ParserGroup& Document::
    root() & { // NOLINT(readability-make-member-function-const): a constant document has a constant tree
    return *DocumentState::of(*this).root;
}

const ParserGroup& Document::root() const& {
    return *DocumentState::of(*this).root;
}

Form Document::form() const {
    return DocumentState::of(*this).form;
}

const std::filesystem::path& Document::path() const& {
    return DocumentState::of(*this).path;
}

// These four move from a temporary document, so they are not const.
// NOLINTBEGIN(readability-make-member-function-const)
std::filesystem::path Document::path() && {
    return std::move(DocumentState::of(*this).path);
}

const std::vector<std::filesystem::path>& Document::dependencies() const& {
    return DocumentState::of(*this).dependencies;
}

std::vector<std::filesystem::path> Document::dependencies() && {
    return std::move(DocumentState::of(*this).dependencies);
}

const std::vector<Include>& Document::includes() const& {
    return DocumentState::of(*this).includes;
}

std::vector<Include> Document::includes() && {
    return std::move(DocumentState::of(*this).includes);
}

const std::vector<DocumentFile>& Document::files() const& {
    return DocumentState::of(*this).document_files;
}

std::vector<DocumentFile> Document::files() && {
    return std::move(DocumentState::of(*this).document_files);
}
// NOLINTEND(readability-make-member-function-const)

std::uint64_t Document::expanded_size() const {
    return DocumentState::of(*this).expanded_size;
}

double Document::version() const {
    return DocumentState::of(*this).version.get_value();
}

DocumentState::DocumentState() = default;

DocumentState::DocumentState(DocumentState&& other) noexcept = default;

DocumentState::~DocumentState() = default;

/// A moved-from document gets a new state when it is used again.
DocumentState& DocumentState::of(const Document& document) {
    if (document.state_ == nullptr) {
        document.state_ = std::make_unique<DocumentState>();
    }
    return *document.state_;
}

Document DocumentState::document(std::unique_ptr<DocumentState> state) noexcept {
    return Document(std::move(state));
}

} // namespace bk_parser
