// Export macro of the KesraEngine shared library.
//
// The library is built with hidden visibility; only what carries
// KESRA_ENGINE_API is part of its binary interface. The build of the library
// itself defines KESRA_ENGINE_BUILDING; a static build defines
// KESRA_ENGINE_STATIC for itself and its hosts, as there is nothing to export.
#pragma once

#if defined(KESRA_ENGINE_STATIC)
#  define KESRA_ENGINE_API
#elif defined(_WIN32)
#  if defined(KESRA_ENGINE_BUILDING)
#    define KESRA_ENGINE_API __declspec(dllexport)
#  else
#    define KESRA_ENGINE_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__) || defined(__clang__)
#  define KESRA_ENGINE_API __attribute__((visibility("default")))
#else
#  define KESRA_ENGINE_API
#endif
