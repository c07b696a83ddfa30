#pragma once

#include <sys/mman.h>

#undef MADV_HUGEPAGE
