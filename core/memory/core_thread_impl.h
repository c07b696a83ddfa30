#pragma once

/// Reaching a thread's own variable is a matter of one instruction when its place is settled at load time.
#if defined(__GNUC__) && !defined(_WIN32)
#define BK_TLS_MODEL __attribute__((tls_model("initial-exec")))
#else
#define BK_TLS_MODEL
#endif
