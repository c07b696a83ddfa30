#pragma once

#include "document/load/document_state_impl.h"

namespace bk_parser {

/// While it lives, puts the version entry back where it was read, if the document is stored in the form that it was read from.
/// That entry is not part of the content.
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
