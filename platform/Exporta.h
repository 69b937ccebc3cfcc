#pragma once

/// URDIMBRE_API marks what the shared library exports; everything else stays hidden.
#if defined(_WIN32)
#if defined(URDIMBRE_OBJETOS)  // the library's objects are linked themselves, as by its tests
#define URDIMBRE_API
#elif defined(URDIMBRE_BUILDING)
#define URDIMBRE_API __declspec(dllexport)
#else
#define URDIMBRE_API __declspec(dllimport)
#endif
#else
#define URDIMBRE_API __attribute__((visibility("default")))
#endif

/// Has the compiler compare the arguments behind a format of printf's with what it says.
#if defined(__GNUC__) && !defined(_WIN32)
#define URDIMBRE_FORMATO(formato, primero) __attribute__((format(printf, formato, primero)))
#elif defined(__GNUC__)  // where formats would be taken for those of another C library
#define URDIMBRE_FORMATO(formato, primero) __attribute__((format(gnu_printf, formato, primero)))
#else
#define URDIMBRE_FORMATO(formato, primero)
#endif
