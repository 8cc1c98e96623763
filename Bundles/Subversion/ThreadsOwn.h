#pragma once

/// Before a variable that each thread has of its own, and that is asked for with every value or byte that is read:
/// nothing is looked up to find it. There is room for few bundles' so.
#ifdef HSVN_STANDS_IN_FRONT
#define HSVN_THREADS_OWN [[gnu::tls_model("initial-exec")]] thread_local
#else
#define HSVN_THREADS_OWN thread_local
#endif
