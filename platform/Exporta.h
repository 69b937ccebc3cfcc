#pragma once

/// URDIMBRE_API marks what the shared library exports; everything else stays hidden.
#if defined(_WIN32)
#if defined(URDIMBRE_BUILDING)
#define URDIMBRE_API __declspec(dllexport)
#else
#define URDIMBRE_API __declspec(dllimport)
#endif
#else
#define URDIMBRE_API __attribute__((visibility("default")))
#endif
