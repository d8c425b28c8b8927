// What the library exports: WEXPOL_API marks a class or function of the public interface.

#ifndef WEXPOL_PLATFORM_EXPORT_H_
#define WEXPOL_PLATFORM_EXPORT_H_

// WEXPOL_BUILD: the library itself is compiled. WEXPOL_STATIC: it is linked into the program.
#if !defined(_WIN32)
#define WEXPOL_API __attribute__((visibility("default")))
#elif defined(WEXPOL_BUILD)
#define WEXPOL_API __declspec(dllexport)
#elif defined(WEXPOL_STATIC)
#define WEXPOL_API
#else
#define WEXPOL_API __declspec(dllimport)
#endif

#endif  // WEXPOL_PLATFORM_EXPORT_H_
