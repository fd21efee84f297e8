#pragma once

/// Marks what the shared library offers to a host.
#if defined(_WIN32)
#define KARTIX_EXPORT
#else
#define KARTIX_EXPORT __attribute__((visibility("default")))
#endif
