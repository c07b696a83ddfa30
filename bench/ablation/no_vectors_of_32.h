#pragma once

#include "core/text/core_avx2_impl.h"

#undef BK_USE_AVX2
