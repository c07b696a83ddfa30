#pragma once

#include "bench/peers/report.h"

namespace bench {

/// What bk_parser is to reach over a corpus, with what it reaches. A target whose peer is missing is not told.
void print_targets(const Corpus& corpus, const Results& results);

/// The keystream of the cipher, which no peer has.
void print_keystream_target();

} // namespace bench
