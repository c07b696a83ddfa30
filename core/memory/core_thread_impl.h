#pragma once

/// Initial-exec TLS: reading a thread's variable is one load. It uses static TLS space when the library is loaded by dlopen.
#if defined(__GNUC__) && !defined(_WIN32)
#define BK_TLS_MODEL __attribute__((tls_model("initial-exec")))
#else
#define BK_TLS_MODEL
#endif
