#include "parser/parser_read_observer.h"

ParserReadObserver::~ParserReadObserver() = default;

void ParserReadObserver::include_found(const unsigned int&, const unsigned int&, const CoreString&) {}

void ParserReadObserver::file_entered(const CoreString&, const CoreString&, const CoreString&) {}

void ParserReadObserver::file_left() {}

void ParserReadObserver::piece_copied(const unsigned int&, const unsigned int&, const unsigned int&) {}

void ParserReadObserver::fault_found(const Fault&, const unsigned int&, const unsigned int&,
                                     const CoreString&) {}

void ParserReadObserver::directive_fault_found(const Fault&, const unsigned int&, const unsigned int&,
                                               const CoreString&) {}
