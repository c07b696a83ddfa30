#pragma once

#include <cfloat>

// Pretends that operations are more precise than doubles, so that the library does not use them.
#undef FLT_EVAL_METHOD
#define FLT_EVAL_METHOD 2
