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

/// The same of a template's instances that the library makes, in their declaration and before their definition. Most
/// compilers want the first alone to say it; Microsoft's, in the library itself, the second alone; and GCC on Windows
/// exports no function that stands in its class, so that who uses the library makes those for himself.
#if defined(_WIN32) && defined(__GNUC__) && !defined(URDIMBRE_BUILDING) && !defined(URDIMBRE_OBJETOS)
#define URDIMBRE_INSTANCIA_DE(clase) static_assert(true)
#define URDIMBRE_API_INSTANCIA
#elif defined(_MSC_VER) && defined(URDIMBRE_BUILDING)
#define URDIMBRE_INSTANCIA_DE(clase) extern template class clase
#define URDIMBRE_API_INSTANCIA URDIMBRE_API
#else
#define URDIMBRE_INSTANCIA_DE(clase) extern template class URDIMBRE_API clase
#define URDIMBRE_API_INSTANCIA
#endif

/// For the few small functions that a hot loop cannot do without in its own code.
#if defined(_MSC_VER)
#define URDIMBRE_EN_LINEA __forceinline
#else
#define URDIMBRE_EN_LINEA __attribute__((always_inline)) inline
#endif

/// Has the compiler compare the arguments behind a format of printf's with what it says.
#if defined(__GNUC__) && !defined(_WIN32)
#define URDIMBRE_FORMATO(formato, primero) __attribute__((format(printf, formato, primero)))
#elif defined(__GNUC__)  // where formats would be taken for those of another C library
#define URDIMBRE_FORMATO(formato, primero) __attribute__((format(gnu_printf, formato, primero)))
#else
#define URDIMBRE_FORMATO(formato, primero)
#endif
