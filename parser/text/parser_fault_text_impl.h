#pragma once

#include "core/core_string.h"
#include "parser/parser_read_observer.h"

namespace bk {

/// Whether the fault is logged. The others are told only to observers.
bool is_logged_fault(ParserReadObserver::Fault fault) noexcept;

/// The message for a fault at this word, without place and line end.
CoreString fault_text(ParserReadObserver::Fault fault, const CoreString& word);

} // namespace bk
