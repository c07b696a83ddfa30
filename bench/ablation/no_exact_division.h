#pragma once

#include <cfloat>

// As if operations were more precise than doubles, which rules them out.
#undef FLT_EVAL_METHOD
#define FLT_EVAL_METHOD 2
