#pragma once

#include <sys/mman.h>

#undef MREMAP_FIXED
