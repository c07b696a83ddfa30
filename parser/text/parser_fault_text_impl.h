#pragma once

#include "core/core_string.h"
#include "parser/parser_read_observer.h"

namespace bk {

/// Whether the fault is logged; one that is not is told to observers alone.
bool is_logged_fault(ParserReadObserver::Fault fault) noexcept;

/// What a fault at this word says, without place and line end.
CoreString fault_text(ParserReadObserver::Fault fault, const CoreString& word);

} // namespace bk
