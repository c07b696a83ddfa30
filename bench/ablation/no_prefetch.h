#pragma once

#define __builtin_prefetch(address) static_cast<void>(address)
