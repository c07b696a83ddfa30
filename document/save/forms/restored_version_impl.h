#pragma once

#include "document/load/document_state_impl.h"

namespace bk_parser {

/// Puts the entry that states the version back to where it was read, as long as this lives, when the document is stored in the form that it
/// was read from. The entry is no part of what the document says.
class RestoredVersion {
public:
    RestoredVersion(DocumentState& state, Form form);
    ~RestoredVersion();
    RestoredVersion(const RestoredVersion&) = delete;
    RestoredVersion& operator=(const RestoredVersion&) = delete;

private:
    DocumentState& state_;
    unsigned int position_ = 0;
    bool is_there_ = false;
};

} // namespace bk_parser
